// Lays tables out in physical memory.
#include "machine/MachineMemory.h"

#include <algorithm>
#include <limits>

#include "machine/StructureWalk.h"

namespace machine {

namespace {

constexpr size_t kLongestTable = std::numeric_limits<uint16_t>::max();
constexpr uint64_t kLastAddress = std::numeric_limits<uint32_t>::max();
// 64 KiB, right below the BIOS area.
constexpr uint64_t kSpareAddress = 0xE0000;

MachineMemory KeepPlaces(const FirmwareTables& tables) {
    MachineMemory memory;
    memory.source = tables.source;
    memory.entry = tables.entry;
    memory.entryAddress = kBiosAreaAddress + tables.place.offset;
    memory.firmwaresAddress = tables.entry.tableAddress;
    memory.image.Put(kBiosAreaAddress, tables.biosArea);
    memory.image.Put(tables.entry.tableAddress, tables.table);
    // Last, for tables that announce themselves longer than they are and so reach over it.
    memory.image.Put(memory.entryAddress, tables.EntryBytes());
    return memory;
}

/// How many of the structures a table of the largest length can hold.
size_t CountThatFits(const StructureWalk& walk) {
    const auto tooFar =
        std::find_if(walk.structures.begin(), walk.structures.end(),
                     [](const StructureSpan& structure) { return structure.end > kLongestTable; });
    return static_cast<size_t>(tooFar - walk.structures.begin());
}

bool CanBeNamed(uint64_t address, size_t size) {
    const bool fits = address <= kLastAddress && size <= kLastAddress - address;
    const bool coversEntryPoint =
        address < kBiosAreaAddress + kEntryPointSize && address + size > kBiosAreaAddress;
    return fits && !coversEntryPoint;
}

/// Cuts the table to what the entry point can name, behind the last structure that it holds whole.
/// Requires: at least one structure fits.
void Cut(MachineMemory& memory, Bytes& table, const StructureWalk& walk) {
    const size_t all = walk.structures.size();
    const size_t kept = CountThatFits(walk);
    const size_t end = walk.structures[kept - 1].end;
    if (kept < all) {
        memory.losses.push_back("the table of " + std::to_string(table.size()) + " bytes and " +
                                std::to_string(all) + " structures is cut to " +
                                std::to_string(end) + " bytes and " + std::to_string(kept) +
                                " structures");
    }
    table.resize(end);
    memory.entry.structureCount = static_cast<uint16_t>(kept);
}

/// Without an announced count, the table must tell its end itself.
void CheckEnd(MachineMemory& memory, const StructureWalk& walk) {
    const size_t count = walk.structures.size();
    const size_t announced = memory.entry.structureCount.value_or(0);
    if (!walk.reachesEndOfTable && (announced == 0 || count < announced)) {
        memory.losses.push_back(count == 0 ? "the table breaks off within its first structure"
                                           : "the table breaks off after " + std::to_string(count) +
                                                 " structures");
    }
    if (!memory.entry.structureCount) {
        // Of a first structure that breaks off, too, what is there is shown.
        memory.entry.structureCount = static_cast<uint16_t>(std::max<size_t>(count, 1));
    }
}

/// Makes the entry point say what a 32-bit one can say of a table of this size.
void Adapt(EntryPoint& entry, size_t tableSize, const StructureWalk& walk) {
    entry.tableLength = static_cast<uint32_t>(tableSize);
    if (entry.largestStructure == 0) {
        entry.largestStructure = static_cast<uint16_t>(std::min(walk.Longest(), kLongestTable));
    }
    if (!CanBeNamed(entry.tableAddress, tableSize)) {
        entry.tableAddress = kSpareAddress;
    }
}

MachineMemory MakeEquivalent(const FirmwareTables& tables, const StructureWalk& walk) {
    MachineMemory memory;
    memory.source = tables.source;
    memory.entry = tables.entry;
    memory.entryAddress = kBiosAreaAddress;
    memory.firmwaresAddress = tables.entry.tableAddress;
    memory.losses = tables.losses;
    Bytes table = tables.table;
    CheckEnd(memory, walk);
    if (table.size() > kLongestTable) {
        Cut(memory, table, walk);
    }
    Adapt(memory.entry, table.size(), walk);
    memory.image.Put(memory.entryAddress, EncodeEntryPoint(memory.entry));
    memory.image.Put(memory.entry.tableAddress, table);
    return memory;
}

}  // namespace

Outcome<MachineMemory> MakeMachineMemory(const FirmwareTables& tables) {
    if (tables.HasBiosArea()) {
        return KeepPlaces(tables);
    }
    const StructureWalk walk = WalkStructures(tables.table);
    const bool isTooLong = tables.table.size() > kLongestTable;
    if (isTooLong ? CountThatFits(walk) == 0 : !BeginsWithAStructure(tables.table)) {
        return Failure{tables.source + (isTooLong ? ": the table's first structure is too long"
                                                  : ": the table begins with no structure")};
    }
    return MakeEquivalent(tables, walk);
}

}  // namespace machine
