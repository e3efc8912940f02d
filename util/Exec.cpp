// Process launcher: through the interpreter, or in place of this process.
// Keeps the last failure as a number; words it only on demand.
#include "util/Exec.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>

#include "util/CDir.h"
#include "util/CStringInternals.h"
#include "util/ErrorHandler.h"

namespace {

using string_internals::Trimmed;

constexpr int kNoInterpreter = 999;

// How the last attempt was made.
constexpr int kThroughInterpreter = 1;
constexpr int kInPlaceOfProcess = 2;

const char* StartOfMessage(int mode) {
    switch (mode) {
        case kThroughInterpreter:
            return "System call failed.  Unable to run ";
        case kInPlaceOfProcess:
            return "Exec call failed.  Unable to run ";
        default:
            return "";
    }
}

CString TextOfError(int error) {
    switch (error) {
        case ENOENT:
            return "Path or file name not found.";
        case E2BIG:
            return "Arg list too long.";
        case ENOEXEC:
            return "Exec format error.";
        case ENOMEM:
            return "Not enough memory.";
        case EINVAL:
            return "Invalid argument.";
        case kNoInterpreter:
            return CString("Command interpreter not found.\n\nCOMSPEC = ") + std::getenv("COMSPEC");
        default:
            return "";
    }
}

}  // namespace

CExec::CExec() {
    Initialize();
}

CExec::CExec(CString command) {
    Initialize();
    m_sCommand = command;
}

CExec::~CExec() = default;

void CExec::Initialize() {
    m_sCommand.Empty();
    m_nReserved = 0;
    m_nLastError = 0;
    m_nMode = 0;
}

bool CExec::Run(CString command) {
    m_sCommand = command;
    return Run();
}

bool CExec::Run() {
    m_nMode = kThroughInterpreter;
    if (m_sCommand.IsEmpty()) {
        return false;
    }
    if (std::system(nullptr) == 0) {
        m_nLastError = kNoInterpreter;
        return false;
    }
    return std::system(m_sCommand.GetBuffer()) != -1 || FailedWithSystemError();
}

bool CExec::Execute(CString command) {
    m_sCommand = command;
    return Execute();
}

bool CExec::Execute() {
    m_nMode = kInPlaceOfProcess;
    if (m_sCommand.IsEmpty()) {
        return false;
    }
    const CString command = Trimmed(m_sCommand);
    const CString name = CDir(command).GetName();
    return name == command ? ExecuteBySearchPath() : ExecuteWithArguments(command, name);
}

bool CExec::ExecuteBySearchPath() {
    const char* program = m_sCommand.GetBuffer();
    return execlp(program, program, nullptr) != -1 || FailedWithSystemError();
}

bool CExec::ExecuteWithArguments(CString command, const CString& name) {
    command -= name;
    command = Trimmed(command);
    const auto count = static_cast<size_t>(command.GetNumberTokens(" "));
    const std::unique_ptr<char*[]> arguments(new (std::nothrow) char*[count + 2]);
    if (arguments == nullptr) {
        return false;
    }
    arguments[0] = name.GetCharString();
    for (size_t i = 1; i <= count; ++i) {
        const CString token = i == 1 ? command.StrTok(" ") : command.StrTok();
        arguments[i] = Trimmed(token).GetCharString();
    }
    arguments[count + 1] = nullptr;
    const bool executed = execvp(name.GetBuffer(), arguments.get()) != -1;
    const bool result = executed || FailedWithSystemError();
    // The last argument is not freed.
    for (size_t i = 0; i < count; ++i) {
        delete[] arguments[i];
    }
    return result;
}

/// Keeps the system's error number; false, for the caller to return.
bool CExec::FailedWithSystemError() {
    m_nLastError = errno;
    return false;
}

int CExec::GetLastError() const {
    return m_nLastError;
}

int CExec::DisplayLastError() const {
    CString message = StartOfMessage(m_nMode);
    message += m_sCommand;
    message += "\n\n";
    message += TextOfError(m_nLastError);
    message += "\n";
    CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE, CErrorHandler::GENERAL_SYSTEM_ERROR,
                                 message.GetBuffer());
    return m_nLastError;
}
