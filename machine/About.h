// The file "about" of a captured machine: lines "key = value".
// Names neither the host nor anybody on it.
#pragma once

#include <string>

#include "machine/MachineMemory.h"
#include "machine/PciTree.h"

namespace machine {

std::string AboutText(const MachineMemory& memory, const PciTreeSummary& pci, bool sanitized);

/// "SMBIOS 2.8, 1377 bytes, 26 structures".
std::string Summary(const EntryPoint& entry);

}  // namespace machine
