// What systally-export says to people, on standard error.
#pragma once

#include <string>

namespace report {

/// Says "systally-export: message". Returns `status`, so that callers can hand it on.
int Explain(const std::string& message, int status);

}  // namespace report
