// Copies the kernel's PCI tree: one directory per bus, one file per function.
// Copies what may be read, and tells of the rest: an ordinary user gets the first 64 bytes of a
// function.
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
    std::vector<std::string> losses;  ///< each way in which the copy falls short of the tree
};

/// Changes a function's configuration bytes before they are written.
using ConfigurationFilter = std::function<void(Bytes&)>;

/// Copies the tree at `source` into the directory `target`, which is empty. Fails when there is no
/// tree, when the copy cannot be written, and when HeldSignals ask to end.
Outcome<PciTreeSummary> CopyPciTree(const std::string& source, int target,
                                    const ConfigurationFilter& filter);

}  // namespace machine
