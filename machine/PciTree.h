// Copies the kernel's PCI tree: one directory per bus, one file per function.
// Copies what may be read: an ordinary user gets the first 64 bytes of a function.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "machine/Bytes.h"
#include "machine/Outcome.h"

namespace machine {

struct PciTreeSummary {
    size_t functions = 0;
    size_t bytes = 0;
    std::vector<std::string> losses;  ///< each function whose file could not be opened
};

/// Changes a function's configuration bytes before they are written.
using ConfigurationFilter = std::function<void(Bytes&)>;

/// Copies the tree at `source` into the directory `target`, which is empty.
Outcome<PciTreeSummary> CopyPciTree(const std::string& source, int target,
                                    const ConfigurationFilter& filter);

}  // namespace machine
