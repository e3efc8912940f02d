// Writes a machine folder: what one server's firmware and kernel show, as plain files.
// Describes a machine only; Overlay.h makes a program see it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "machine/Structure.h"

namespace machine {

/// A PCI function's place and the registers of its configuration header that identify it.
struct PciFunction {
    uint16_t bus = 0;
    uint16_t device = 0;
    uint16_t function = 0;
    uint16_t vendorId = 0;
    uint16_t deviceId = 0;
    uint32_t classCode = 0;  ///< base class, sub-class, programming interface: 0x060400
    uint8_t revision = 0;
    uint8_t headerType = 0;
    uint16_t subVendorId = 0;
    uint16_t subDeviceId = 0;
    size_t configurationSize = 256;  ///< bytes of the file; a shorter file cuts the header
};

/// A machine folder holds
///   mem   a sparse image of physical memory: the entry point, the structure table
///   pci/  a tree like the kernel's /proc/bus/pci: one directory per bus, one file per function
class MachineBuilder {
  public:
    /// Appends a structure to the table. Handles count up from 0x0000.
    MachineBuilder& Add(const Structure& structure);
    /// Appends bytes to the table as they stand. From then on no end-of-table structure is
    /// written behind the table.
    MachineBuilder& AddRaw(const Bytes& bytes);
    MachineBuilder& Add(const PciFunction& function);

    /// Where the table lies; 0x000E0000 unless given. Any 32-bit address will do.
    MachineBuilder& TableAt(uint32_t address);
    /// Where the entry point lies; 0x000F59F0 unless given.
    MachineBuilder& EntryPointAt(uint32_t address);
    /// Writes the legacy kind of entry point, which begins with "_DMI_", alone.
    MachineBuilder& LegacyEntryPoint();
    MachineBuilder& NoEntryPoint();
    /// Announces these numbers instead of the true ones.
    MachineBuilder& AnnounceCount(uint16_t structures);
    MachineBuilder& AnnounceLength(uint16_t bytes);
    /// Puts bytes anywhere into physical memory, over everything else.
    MachineBuilder& Poke(uint32_t address, const Bytes& bytes);
    MachineBuilder& Poke(uint32_t address, const std::string& text);

    /// The table as it will stand in memory.
    Bytes EncodeTable() const;

    /// Writes the folder, which must not exist yet.
    /// Throws std::system_error or std::filesystem::filesystem_error when that fails.
    void WriteTo(const std::filesystem::path& folder) const;

  private:
    Bytes EncodeEntryPoint() const;
    void WriteMemory(const std::filesystem::path& file) const;
    void WritePciTree(const std::filesystem::path& folder) const;

    Bytes m_table;
    uint16_t m_structureCount = 0;
    bool m_writesEndOfTable = true;
    uint32_t m_tableAddress = 0x000E0000;
    uint32_t m_entryPointAddress = 0x000F59F0;
    bool m_legacy = false;
    bool m_hasEntryPoint = true;
    std::optional<uint16_t> m_announcedCount;
    std::optional<uint16_t> m_announcedLength;
    std::vector<std::pair<uint32_t, Bytes>> m_pokes;
    std::vector<PciFunction> m_functions;
};

}  // namespace machine
