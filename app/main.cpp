// Where the program starts: runs the operation that the command line selects, tells what it
// printed in vain, and ends with the answer.
#include <cstdio>

#include "app/systally.h"
#include "util/ErrorHandler.h"

namespace {

int ExplainUsage(const char* error) {
    std::printf("%s\n", error);
    printUsage();
    return kFailure;
}

int RunSelectedOperation() {
    switch (query_mode) {
        case QPCI_VALUE:
            return static_cast<int>(static_cast<uint32_t>(qPCI()) + addValue);
        case QMACHTYPE_VALUE:
            return qMachType();
        case DUMP_INI_VALUE:
        case DUMP_PROP_VALUE:
            if (is64bit() != 0) {
                x64 = "FALSE";
            }
            return dumpAll();
        case QSERV_TYPE_VALUE:
            return qServType();
        case DUMP_TABLES_VALUE:
            return dumpTables();
        case QX64_VALUE:
            return is64bit();
        default:
            // Switches that select nothing, such as /add: alone, end without a word.
            return kFailure;
    }
}

/// The operation's status, unless what it printed could not be written: a report that is lost or
/// cut off is a failure. Other statuses are answers of their own, and stay.
int StatusAfterOutput(int status) {
    const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (written) {
        return status;
    }
    char where[] = "standard output";
    CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE, CErrorHandler::FILE_WRITE_ERROR,
                                 where);
    const bool isReport = query_mode == DUMP_INI_VALUE || query_mode == DUMP_PROP_VALUE;
    return isReport ? kFailure : status;
}

int Run(int argc, char** argv) {
    if (argc == 1) {
        printUsage();
        return kFailure;
    }
    CCLParams table;
    setupParams(table);
    switch (table.Parse(argc, argv, false)) {
        case 1:
            return ExplainUsage("Syntax Error.");
        case 2:
            return ExplainUsage("Internal error.");
        default:
            break;
    }
    if (parseParams(table) != 0) {
        return ExplainUsage("Syntax Error.");
    }
    return RunSelectedOperation();
}

}  // namespace

int main(int argc, char** argv) {
    // A report leaves in few writes, as large as a pipe takes them.
    static char output[65536];
    std::setvbuf(stdout, output, _IOFBF, sizeof output);
    return StatusAfterOutput(Run(argc, argv));
}
