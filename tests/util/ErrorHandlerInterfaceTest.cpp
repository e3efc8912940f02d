// Every operation of CErrorHandler with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <type_traits>

#include "util/ErrorHandler.h"
#include "util/Operation.h"

namespace {

using Code = CErrorHandler::ErrorCodeDef;

static_assert(HasConstructor<CErrorHandler>);
static_assert(std::has_virtual_destructor_v<CErrorHandler>);
static_assert(Has<void (CErrorHandler::*)(Code, Code, char*), &CErrorHandler::ErrorHandler>);

static_assert(CErrorHandler::ERROR_FATAL == 0);
static_assert(CErrorHandler::ERROR_CONTINUE == 1);
static_assert(CErrorHandler::ERROR_QUERY == 2);

static_assert(CErrorHandler::ERROR_NONE == 0);
static_assert(CErrorHandler::GENERAL_SYSTEM_ERROR == 1);
static_assert(CErrorHandler::GENERAL_PROGRAM_ERROR == 2);
static_assert(CErrorHandler::CUSTOM_ERROR == 3);
static_assert(CErrorHandler::MEMORY_ALLOCATION_ERROR == 4);
static_assert(CErrorHandler::FILE_OPEN_ERROR == 5);
static_assert(CErrorHandler::FILE_READ_ERROR == 6);
static_assert(CErrorHandler::FILE_WRITE_ERROR == 7);
static_assert(CErrorHandler::FILE_CLOSE_ERROR == 8);
static_assert(CErrorHandler::PARSE_ERROR == 9);
static_assert(CErrorHandler::TCPIP_ERROR == 10);

}  // namespace
