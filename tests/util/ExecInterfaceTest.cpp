// Every operation of CExec with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <type_traits>

#include "util/Exec.h"
#include "util/Operation.h"

namespace {

static_assert(HasConstructor<CExec>);
static_assert(HasConstructor<CExec, CString>);
static_assert(std::is_destructible_v<CExec>);
static_assert(Has<void (CExec::*)(), &CExec::Initialize>);
static_assert(Has<bool (CExec::*)(), &CExec::Run>);
static_assert(Has<bool (CExec::*)(CString), &CExec::Run>);
static_assert(Has<bool (CExec::*)(), &CExec::Execute>);
static_assert(Has<bool (CExec::*)(CString), &CExec::Execute>);
static_assert(Has<int (CExec::*)() const, &CExec::GetLastError>);
static_assert(Has<int (CExec::*)() const, &CExec::DisplayLastError>);

}  // namespace
