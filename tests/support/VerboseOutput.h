// What the operations on directories print at a verbose level.
// Leaves the level at 0, where it is in the beginning.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "util/CDir.h"

namespace support {

/// What is printed while `action` runs at a verbose level, which ends with it.
template <typename Action>
std::string PrintedAtLevel(int level, const Action& action) {
    testing::internal::CaptureStdout();
    CDir().SetVerboseLevel(level);
    action();
    CDir().SetVerboseLevel(0);
    return testing::internal::GetCapturedStdout();
}

}  // namespace support
