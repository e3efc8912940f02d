// The command line of systally-export.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "export/Shape.h"

namespace report {

// What the program ends with.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kUsageError = 2;

struct Options;

struct ShapeOption {
    const char* name;  ///< of the option, without its hyphens
    /// Null, with `failure`, when an option of this shape is in the way.
    std::unique_ptr<Shape> (*make)(const Options& options, std::string& failure);
};

struct Options {
    const ShapeOption* shape = nullptr;
    std::string output;
    std::string pciIds;
    std::vector<std::string> inputs;
};

/// All shapes, one option each.
std::span<const ShapeOption> Shapes();

/// Fills `options`. Returns -1 when there is work to do, and otherwise the status to end with.
[[nodiscard]] int ParseCommandLine(int argc, char** argv, Options& options);

}  // namespace report
