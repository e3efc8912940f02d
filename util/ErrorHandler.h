// Reports a serious error to the person at the terminal and ends the process when it must.
// Allocates nothing: it also runs when memory is gone.
#pragma once

#include <cstdint>

/// The one place that prints errors for the library: a titled message on standard error,
/// an optional question, and exit status 1 when the error is fatal or the answer is no.
class CErrorHandler {
  public:
    /// One enumeration for both selectors of ErrorHandler(): a response when it stands first,
    /// an error kind when it stands second. Several enumerators therefore share a value.
    enum ErrorCodeDef : int32_t {
        ERROR_FATAL = 0,     ///< response: report, then exit with status 1
        ERROR_CONTINUE = 1,  ///< response: report and return; any value but 0 and 2 does the same
        ERROR_QUERY = 2,     ///< response: report, ask, exit with status 1 unless the answer is yes

        ERROR_NONE = 0,  ///< kind: neither title nor detail; kinds above 10 do the same
        GENERAL_SYSTEM_ERROR = 1,
        GENERAL_PROGRAM_ERROR = 2,
        CUSTOM_ERROR = 3,  ///< kind: the detail alone
        MEMORY_ALLOCATION_ERROR = 4,
        FILE_OPEN_ERROR = 5,
        FILE_READ_ERROR = 6,
        FILE_WRITE_ERROR = 7,
        FILE_CLOSE_ERROR = 8,
        PARSE_ERROR = 9,
        TCPIP_ERROR = 10
    };

    CErrorHandler();
    CErrorHandler(const CErrorHandler&) = default;
    CErrorHandler& operator=(const CErrorHandler&) = default;
    virtual ~CErrorHandler();

    /// Writes the message of `kind`, with `detail` where that kind shows one, to standard error.
    /// A message longer than 511 bytes is truncated.
    /// With ERROR_QUERY the answer is yes when the first non-blank character of standard input
    /// is y or Y; a second non-blank character is read and ignored, and end of input means no.
    /// Requires: detail is not null.
    void ErrorHandler(ErrorCodeDef response, ErrorCodeDef kind, char* detail);
};
