// The machine that a program finds itself on: what it shows of itself, and what it withholds.
// Shows nothing of the host's own firmware.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "machine/MachineBuilder.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace support {

/// Has physical memory and a PCI tree, but no copy of the firmware's tables.
class MachineAtHand {
  public:
    explicit MachineAtHand(const machine::MachineBuilder& machine);

    /// No /dev/mem, as on a kernel without it. Of /dev nothing else is there either.
    MachineAtHand& WithoutMemory();
    /// A /dev/mem that the program may not open.
    MachineAtHand& WithUnreadableMemory();
    MachineAtHand& WithoutPciTree();
    MachineAtHand& WithoutSysfs();
    /// The kernel shows these below /sys/firmware/dmi/tables.
    MachineAtHand& WithKernelsCopy(const machine::Bytes& entryPoint, const machine::Bytes& table);
    /// Something more, inside the private namespace.
    MachineAtHand& With(const Preparation& more);

    Result Run(const Arguments& command) const;

    /// The folder of what it shows: mem and pci.
    std::filesystem::path Folder() const { return m_folder.path() / "machine"; }

  private:
    std::string Prepare() const;
    std::string ShowSysfs() const;
    std::string ForbidMemory() const;

    TemporaryFolder m_folder;
    bool m_hasMemory = true;
    bool m_hasPciTree = true;
    bool m_hasSysfs = true;
    bool m_isMemoryReadable = true;
    std::optional<machine::Bytes> m_entryPoint;
    machine::Bytes m_table;
    std::vector<Preparation> m_more;
};

/// A 64-bit entry point, "_SM3_", of version 3.2.
machine::Bytes EntryPoint64(uint64_t tableAddress, uint32_t largestLength);

/// Makes a directory of /dev/mem, as containers without the device may have it; a text when that
/// fails. Requires: there is no /dev/mem.
std::string MakeMemoryADirectory();

/// Mounts an empty directory over one; a text when that fails.
std::string Cover(const std::filesystem::path& directory, const std::string& options = "mode=755");

}  // namespace support
