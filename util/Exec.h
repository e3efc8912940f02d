// Runs a command through the system's interpreter or in place of this process.
// Prints nothing until it is asked for the last error.
#pragma once

#include <cstdint>

#include "util/CString.h"

/// A command and how its last attempt failed. May be used again and again.
class CExec {
  public:
    CExec();
    CExec(CString command);
    ~CExec();

    /// Empties the command and forgets the last error.
    void Initialize();
    /// Runs the command through the interpreter and waits for its end. True when it was run: its
    /// own exit status is not looked at.
    bool Run();
    bool Run(CString command);
    /// Replaces this process; returns, with false, only when that fails. A command with neither "/"
    /// nor ":" is the name of a program and its argument 0, blanks included. Otherwise both are the
    /// text behind the last "/", or behind the first ":" where there is no "/"; the arguments are
    /// the command without the first occurrence of that text, split at blanks.
    bool Execute();
    bool Execute(CString command);
    /// The system's error number of the last failure; 999 when there is no interpreter.
    int GetLastError() const;
    /// Reports the last failure on standard error; returns its number.
    int DisplayLastError() const;

  private:
    bool ExecuteBySearchPath();
    bool ExecuteWithArguments(CString command, const CString& name);
    bool FailedWithSystemError();

    int32_t m_nReserved = 0;
    int32_t m_nLastError = 0;
    int32_t m_nMode = 0;
    CString m_sCommand;
};
