// Writes machine folders: the memory image and the PCI tree.
#include "machine/MachineBuilder.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "machine/EntryPoint.h"
#include "machine/Files.h"
#include "machine/MemoryImage.h"

namespace machine {

namespace {

constexpr uint8_t kTypeEndOfTable = 127;

void PutNumber(Bytes& bytes, size_t offset, uint64_t value, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

[[noreturn]] void ThrowSystemError(const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), file.string());
}

void WriteNewFile(const std::filesystem::path& path, const Bytes& contents) {
    if (!CreateFileWith(AT_FDCWD, path, contents)) {
        ThrowSystemError(path);
    }
}

std::string Hex(unsigned number) {
    char text[sizeof "ffffffff"];
    std::snprintf(text, sizeof text, "%02x", number);
    return text;
}

Bytes EncodeConfiguration(const PciFunction& function) {
    constexpr size_t kHeaderSize = 0x40;  // PCI Local Bus standard, 6.1
    Bytes bytes(std::max(function.configurationSize, kHeaderSize));
    PutNumber(bytes, 0x00, function.vendorId, 2);
    PutNumber(bytes, 0x02, function.deviceId, 2);
    PutNumber(bytes, 0x08, function.revision, 1);
    PutNumber(bytes, 0x09, function.classCode, 3);
    PutNumber(bytes, 0x0E, function.headerType, 1);
    PutNumber(bytes, 0x2C, function.subVendorId, 2);
    PutNumber(bytes, 0x2E, function.subDeviceId, 2);
    bytes.resize(function.configurationSize);
    return bytes;
}

}  // namespace

MachineBuilder& MachineBuilder::Add(const Structure& structure) {
    const Bytes bytes = structure.Encode(m_structureCount);
    m_table.insert(m_table.end(), bytes.begin(), bytes.end());
    ++m_structureCount;
    return *this;
}

MachineBuilder& MachineBuilder::AddRaw(const Bytes& bytes) {
    m_table.insert(m_table.end(), bytes.begin(), bytes.end());
    m_writesEndOfTable = false;
    return *this;
}

MachineBuilder& MachineBuilder::Add(const PciFunction& function) {
    m_functions.push_back(function);
    return *this;
}

MachineBuilder& MachineBuilder::TableAt(uint32_t address) {
    m_tableAddress = address;
    return *this;
}

MachineBuilder& MachineBuilder::EntryPointAt(uint32_t address) {
    m_entryPointAddress = address;
    return *this;
}

MachineBuilder& MachineBuilder::LegacyEntryPoint() {
    m_legacy = true;
    return *this;
}

MachineBuilder& MachineBuilder::NoEntryPoint() {
    m_hasEntryPoint = false;
    return *this;
}

MachineBuilder& MachineBuilder::AnnounceCount(uint16_t structures) {
    m_announcedCount = structures;
    return *this;
}

MachineBuilder& MachineBuilder::AnnounceLength(uint16_t bytes) {
    m_announcedLength = bytes;
    return *this;
}

MachineBuilder& MachineBuilder::Poke(uint32_t address, const Bytes& bytes) {
    m_pokes.emplace_back(address, bytes);
    return *this;
}

MachineBuilder& MachineBuilder::Poke(uint32_t address, const std::string& text) {
    return Poke(address, Bytes(text.begin(), text.end()));
}

Bytes MachineBuilder::EncodeTable() const {
    Bytes table = m_table;
    if (m_writesEndOfTable) {
        const Bytes end = Structure(kTypeEndOfTable, 4).Encode(m_structureCount);
        table.insert(table.end(), end.begin(), end.end());
    }
    return table;
}

Bytes MachineBuilder::EncodeEntryPoint() const {
    constexpr std::ptrdiff_t kIntermediate = 0x10;  // the legacy kind consists of what follows
    const auto length = static_cast<uint16_t>(EncodeTable().size());
    const auto count = static_cast<uint16_t>(m_structureCount + (m_writesEndOfTable ? 1 : 0));
    EntryPoint entry;
    entry.tableAddress = m_tableAddress;
    entry.tableLength = m_announcedLength.value_or(length);
    entry.structureCount = m_announcedCount.value_or(count);
    entry.largestStructure = length;  // no structure is longer than all of them
    Bytes bytes = machine::EncodeEntryPoint(entry);
    if (m_legacy) {
        bytes.erase(bytes.begin(), bytes.begin() + kIntermediate);
    }
    return bytes;
}

void MachineBuilder::WriteTo(const std::filesystem::path& folder) const {
    std::filesystem::create_directories(folder);
    WriteMemory(folder / "mem");
    WritePciTree(folder / "pci");
}

void MachineBuilder::WriteMemory(const std::filesystem::path& file) const {
    const Bytes table = EncodeTable();
    MemoryImage memory;
    memory.Put(m_tableAddress, table);
    if (m_hasEntryPoint) {
        memory.Put(m_entryPointAddress, EncodeEntryPoint());
    }
    for (const auto& [address, bytes] : m_pokes) {
        memory.Put(address, bytes);
    }
    memory.ReachTo(uint64_t{m_tableAddress} + m_announcedLength.value_or(0));
    const FileDescriptor opened = CreateFile(AT_FDCWD, file);
    if (!opened.IsOpen() || !memory.WriteTo(opened.Get())) {
        ThrowSystemError(file);
    }
}

void MachineBuilder::WritePciTree(const std::filesystem::path& folder) const {
    std::filesystem::create_directory(folder);
    WriteNewFile(folder / "devices", {});  // readers pass it over
    for (const PciFunction& function : m_functions) {
        const std::filesystem::path bus = folder / Hex(function.bus);
        std::filesystem::create_directory(bus);
        char functionNumber[sizeof "ffffffff"];
        std::snprintf(functionNumber, sizeof functionNumber, "%x", unsigned{function.function});
        const std::string name = Hex(function.device) + "." + functionNumber;
        WriteNewFile(bus / name, EncodeConfiguration(function));
    }
}

}  // namespace machine
