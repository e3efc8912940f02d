// What the ways to run a program have in common.
#pragma once

#include <functional>
#include <string>

#include "support/Program.h"

namespace support {

/// Runs `command`. `prepare` runs in the child before the program; an error text of its keeps the
/// program from starting.
Result RunPrepared(const Arguments& command, const std::function<std::string()>& prepare);

}  // namespace support
