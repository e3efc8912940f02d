// Writes machine folders: the memory image and the PCI tree.
#include "machine/MachineBuilder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <numeric>
#include <system_error>

namespace machine {

namespace {

constexpr uint8_t kTypeEndOfTable = 127;
constexpr uint64_t kFirstMegabyte = 0x100000;
constexpr uint64_t kPage = 4096;

// DSP0134 5.2.1: the entry point and, 16 bytes into it, the intermediate one, which the legacy
// kind consists of.
constexpr size_t kEntryPointSize = 0x1F;
constexpr size_t kIntermediate = 0x10;
constexpr size_t kChecksum = 0x04;
constexpr size_t kIntermediateChecksum = 0x15;

void Put(Bytes& bytes, size_t offset, const std::string& text) {
    std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

void PutNumber(Bytes& bytes, size_t offset, uint64_t value, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

/// The byte that makes the bytes from `first` on sum up to 0.
uint8_t ChecksumFrom(const Bytes& bytes, size_t first) {
    const int sum =
        std::accumulate(bytes.begin() + static_cast<std::ptrdiff_t>(first), bytes.end(), 0);
    return static_cast<uint8_t>(-sum);
}

[[noreturn]] void ThrowSystemError(const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), file.string());
}

/// A file that is written at any offset, so that the gaps take no room.
class SparseFile {
  public:
    explicit SparseFile(const std::filesystem::path& path)
        : m_path(path), m_fd(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644)) {
        if (m_fd < 0) {
            ThrowSystemError(m_path);
        }
    }
    SparseFile(const SparseFile&) = delete;
    SparseFile& operator=(const SparseFile&) = delete;
    ~SparseFile() { close(m_fd); }

    void WriteAt(uint64_t offset, const Bytes& bytes) {
        size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t count = pwrite(m_fd, bytes.data() + done, bytes.size() - done,
                                         static_cast<off_t>(offset + done));
            if (count < 0) {
                ThrowSystemError(m_path);
            }
            done += static_cast<size_t>(count);
        }
    }
    void Resize(uint64_t size) {
        if (ftruncate(m_fd, static_cast<off_t>(size)) != 0) {
            ThrowSystemError(m_path);
        }
    }

  private:
    std::filesystem::path m_path;
    int m_fd;
};

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
    const auto length = static_cast<uint16_t>(EncodeTable().size());
    const auto count = static_cast<uint16_t>(m_structureCount + (m_writesEndOfTable ? 1 : 0));
    Bytes entry(kEntryPointSize);
    Put(entry, 0x00, "_SM_");
    PutNumber(entry, 0x05, kEntryPointSize, 1);
    PutNumber(entry, 0x06, 2, 1);  // version 2.8
    PutNumber(entry, 0x07, 8, 1);
    PutNumber(entry, 0x08, length, 2);  // no structure is longer than all of them
    Put(entry, kIntermediate, "_DMI_");
    PutNumber(entry, 0x16, m_announcedLength.value_or(length), 2);
    PutNumber(entry, 0x18, m_tableAddress, 4);
    PutNumber(entry, 0x1C, m_announcedCount.value_or(count), 2);
    PutNumber(entry, 0x1E, 0x28, 1);
    entry[kIntermediateChecksum] = ChecksumFrom(entry, kIntermediate);
    entry[kChecksum] = ChecksumFrom(entry, 0);
    if (m_legacy) {
        entry.erase(entry.begin(), entry.begin() + kIntermediate);
    }
    return entry;
}

void MachineBuilder::WriteTo(const std::filesystem::path& folder) const {
    std::filesystem::create_directories(folder);
    WriteMemory(folder / "mem");
    WritePciTree(folder / "pci");
}

void MachineBuilder::WriteMemory(const std::filesystem::path& file) const {
    const Bytes table = EncodeTable();
    SparseFile memory(file);
    memory.WriteAt(m_tableAddress, table);
    if (m_hasEntryPoint) {
        memory.WriteAt(m_entryPointAddress, EncodeEntryPoint());
    }
    for (const auto& [address, bytes] : m_pokes) {
        memory.WriteAt(address, bytes);
    }
    // Readers map whole pages and one more: those must exist, or touching them raises SIGBUS.
    const uint64_t tableEnd =
        uint64_t{m_tableAddress} + std::max<uint64_t>(table.size(), m_announcedLength.value_or(0));
    memory.Resize(std::max(kFirstMegabyte, (tableEnd / kPage + 2) * kPage));
}

void MachineBuilder::WritePciTree(const std::filesystem::path& folder) const {
    std::filesystem::create_directory(folder);
    SparseFile devices(folder / "devices");  // readers pass it over
    for (const PciFunction& function : m_functions) {
        const std::filesystem::path bus = folder / Hex(function.bus);
        std::filesystem::create_directory(bus);
        char functionNumber[sizeof "ffffffff"];
        std::snprintf(functionNumber, sizeof functionNumber, "%x", unsigned{function.function});
        const std::string name = Hex(function.device) + "." + functionNumber;
        SparseFile file(bus / name);
        file.WriteAt(0, EncodeConfiguration(function));
    }
}

}  // namespace machine
