// Makes the kernel refuse a system call to a program, as it may at any time.
// The program itself knows nothing of it: the kernel's own filter (seccomp) does it.
#pragma once

#include <cstdint>
#include <filesystem>

#include "support/Program.h"

namespace support {

/// A call that fails: each one of that number or, with an argument, those whose argument has the
/// bits of `mask` set as in `value`.
struct RefusedCall {
    int number = 0;
    int error = 0;
    int argument = -1;
    uint32_t mask = 0;
    uint32_t value = 0;
};

/// Runs `command` on the machine of a folder without that call.
Result RunOnMachineRefusing(const std::filesystem::path& folder, const RefusedCall& call,
                            const Arguments& command);

}  // namespace support
