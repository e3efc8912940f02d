// Runs a program under strace, which meddles with chosen system calls and writes down the others.
// Needs the Debian package strace.
#pragma once

#include "support/Program.h"

namespace support {

/// The command with strace's options before it. A sanitizer's search for leaks is left out: it
/// needs to trace the program itself.
inline Arguments Traced(const Arguments& options, const Arguments& command) {
    Arguments all = {"env", "ASAN_OPTIONS=detect_leaks=0", "strace", "-qq"};
    all.insert(all.end(), options.begin(), options.end());
    all.insert(all.end(), command.begin(), command.end());
    return all;
}

}  // namespace support
