// What systally-export says to people.
#include "export/Message.h"

#include <cstdio>

#include "export/Utf8.h"

namespace report {

int Explain(const std::string& message, int status) {
    std::fprintf(stderr, "systally-export: %s\n", Printable(message).c_str());
    return status;
}

}  // namespace report
