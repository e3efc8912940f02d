// The firmware's SMBIOS table, from wherever this machine shows it.
// Takes what it is given as it stands; what systally needs of it is MachineMemory's business.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "machine/Bytes.h"
#include "machine/EntryPoint.h"
#include "machine/Outcome.h"

namespace machine {

struct FirmwareTables {
    std::string source;
    EntryPoint entry;
    Bytes table;
    /// With its entry point's place; empty for the kernel's copy, which tells of neither.
    Bytes biosArea;
    EntryPlace place;
    std::vector<std::string> losses;  ///< what the source has and these lack

    bool HasBiosArea() const { return !biosArea.empty(); }
    /// The entry point itself. Requires: there is a BIOS area.
    Bytes EntryBytes() const;
};

/// Where the table may come from, in the order of the attempts.
struct FirmwareSources {
    std::string memory = "/dev/mem";
    std::filesystem::path kernelsCopy = "/sys/firmware/dmi/tables";
};

/// The table that systally would find by itself, through its 32-bit or legacy entry point. The byte
/// behind it belongs to it, as systally copies that too.
Outcome<FirmwareTables> ReadThroughMemory(const std::string& device);

/// Whether a memory image reaches as far as the table that it announces, if any. The image of a
/// machine that was copied half-way does not.
bool HoldsItsTable(const std::string& image);

/// The kernel's copy, which it keeps whatever kind of entry point led it there.
Outcome<FirmwareTables> ReadKernelsCopy(const std::filesystem::path& directory);

struct FoundTables {
    std::optional<FirmwareTables> tables;
    std::vector<std::string> refusals;  ///< each source that did not serve, and why
};

/// What to say of a machine where no source served.
inline constexpr char kNoSource[] = "no source shows this machine's SMBIOS table";

FoundTables FindFirmwareTables(const FirmwareSources& sources = {});

}  // namespace machine
