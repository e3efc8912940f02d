// The memory image that shows systally a machine's table, whatever showed it to us.
// Loses nothing without saying so.
#pragma once

#include <string>
#include <vector>

#include "machine/FirmwareTables.h"
#include "machine/MemoryImage.h"
#include "machine/Outcome.h"

namespace machine {

struct MachineMemory {
    MemoryImage image;
    std::string source;
    EntryPoint entry;  ///< as it stands in the image
    uint64_t entryAddress = 0;
    uint64_t firmwaresAddress = 0;    ///< where the firmware keeps the table
    std::vector<std::string> losses;  ///< each way in which the image falls short of the firmware
};

/// Tables with a BIOS area keep it and their places, to the byte. The kernel's copy gets an
/// equivalent 32-bit entry point at 0xF0000, the first place where systally looks; it is cut
/// at the end of a structure when that entry point cannot name its length, and moved when it cannot
/// name its address.
Outcome<MachineMemory> MakeMachineMemory(const FirmwareTables& tables);

}  // namespace machine
