// First physical memory, as systally reads it itself; then what the kernel has put aside.
#include "machine/FirmwareTables.h"

#include <utility>

#include "machine/Files.h"
#include "machine/PhysicalMemory.h"

namespace machine {

namespace {

// Real ones take a few kilobytes; the standard sets no bound below 4 GiB.
constexpr size_t kLargestTable = 16 << 20;
constexpr size_t kLargestEntryPoint = 256;

Outcome<Bytes> ReadWhole(const std::filesystem::path& file, size_t limit) {
    const FileDescriptor opened = OpenForReading(file);
    if (!opened.IsOpen()) {
        return Failure{WithReason(file)};
    }
    ReadBytes read = ReadToEnd(opened.Get(), limit);
    if (read.error != 0) {
        return Failure{WithReason(file, read.error)};
    }
    return std::move(read.bytes);
}

Bytes BytesAt(const Bytes& area, const EntryPlace& place) {
    const auto start = area.begin() + static_cast<std::ptrdiff_t>(place.offset);
    return {start, start + static_cast<std::ptrdiff_t>(place.size)};
}

/// What systally copies: the byte behind the table as well, which a file need not have.
Outcome<Bytes> ReadTable(const PhysicalMemory& memory, const EntryPoint& entry) {
    if (memory.EndsBefore(entry.tableAddress + entry.tableLength)) {
        return Failure{"the memory ends before it does"};
    }
    return memory.Read(entry.tableAddress, size_t{entry.tableLength} + 1);
}

}  // namespace

Bytes FirmwareTables::EntryBytes() const {
    return BytesAt(biosArea, place);
}

Outcome<FirmwareTables> ReadThroughMemory(const std::string& device) {
    const Outcome<PhysicalMemory> memory = PhysicalMemory::Open(device);
    if (!memory) {
        return Failure{device + ": " + memory.Reason()};
    }
    FirmwareTables found;
    found.source = device;
    ReadBytes area = memory->ReadBiosArea();
    found.biosArea = std::move(area.bytes);
    const std::optional<EntryPlace> place = FindEntryPoint(found.biosArea);
    if (!place) {
        return Failure{device + ": " +
                       (area.error == 0 ? "no anchor between 0xF0000 and 0xFFFFF"
                                        : ExplainMemoryError(area.error))};
    }
    found.place = *place;
    found.entry = DecodeEntryPoint(found.EntryBytes()).value_or(EntryPoint());
    Outcome<Bytes> table = ReadTable(*memory, found.entry);
    if (!table) {
        return Failure{device + ": the table at " + AddressText(found.entry.tableAddress) +
                       " cannot be read: " + table.Reason()};
    }
    found.table = std::move(*table);
    return found;
}

bool HoldsItsTable(const std::string& image) {
    const Outcome<PhysicalMemory> memory = PhysicalMemory::Open(image);
    if (!memory) {
        return true;
    }
    const Bytes area = memory->ReadBiosArea().bytes;
    const std::optional<EntryPlace> place = FindEntryPoint(area);
    const std::optional<EntryPoint> entry =
        place ? DecodeEntryPoint(BytesAt(area, *place)) : std::nullopt;
    return !entry || ReadTable(*memory, *entry);
}

Outcome<FirmwareTables> ReadKernelsCopy(const std::filesystem::path& directory) {
    const std::filesystem::path entryFile = directory / "smbios_entry_point";
    const Outcome<Bytes> entryBytes = ReadWhole(entryFile, kLargestEntryPoint);
    if (!entryBytes) {
        return Failure{entryBytes.Reason()};
    }
    const std::optional<EntryPoint> entry = DecodeEntryPoint(*entryBytes);
    if (!entry) {
        return Failure{entryFile.string() + ": no entry point of a kind that is known"};
    }
    if (!HasRightChecksums(*entryBytes)) {
        return Failure{entryFile.string() + ": an entry point with a wrong checksum"};
    }
    const std::filesystem::path tableFile = directory / "DMI";
    // One byte more tells whether there are more.
    Outcome<Bytes> table = ReadWhole(tableFile, kLargestTable + 1);
    if (!table) {
        return Failure{table.Reason()};
    }
    FirmwareTables found;
    found.source = directory;
    found.entry = *entry;
    found.table = std::move(*table);
    if (found.table.size() > kLargestTable) {
        found.table.resize(kLargestTable);
        found.losses.push_back("only the first " + std::to_string(kLargestTable) + " bytes of " +
                               tableFile.string() + " are read");
    }
    return found;
}

FoundTables FindFirmwareTables(const FirmwareSources& sources) {
    FoundTables found;
    Outcome<FirmwareTables> tables = ReadThroughMemory(sources.memory);
    if (!tables) {
        found.refusals.push_back(tables.Reason());
        tables = ReadKernelsCopy(sources.kernelsCopy);
    }
    if (tables) {
        found.tables = std::move(*tables);
    } else {
        found.refusals.push_back(tables.Reason());
    }
    return found;
}

}  // namespace machine
