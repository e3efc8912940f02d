// Steps from structure to structure: DSP0134 6.1.
#include "machine/StructureWalk.h"

#include <algorithm>
#include <optional>

namespace machine {

namespace {

constexpr size_t kLength = 0x01;
constexpr size_t kHeaderSize = 4;
constexpr uint8_t kTypeEndOfTable = 127;
constexpr size_t kClosingNuls = 2;

/// Behind the two NULs that close the set of strings.
std::optional<size_t> EndOfStrings(const Bytes& table, size_t strings) {
    for (size_t end = strings + kClosingNuls; end <= table.size(); ++end) {
        if (table[end - 2] == 0 && table[end - 1] == 0) {
            return end;
        }
    }
    return std::nullopt;
}

bool HasHeaderAt(const Bytes& table, size_t offset) {
    return offset + kHeaderSize <= table.size() && table[offset + kLength] >= kHeaderSize;
}

std::optional<StructureSpan> StructureAt(const Bytes& table, size_t offset) {
    if (!HasHeaderAt(table, offset)) {
        return std::nullopt;
    }
    const size_t strings = offset + table[offset + kLength];
    const std::optional<size_t> end = EndOfStrings(table, strings);
    if (!end && table[offset] == kTypeEndOfTable && strings <= table.size()) {
        return StructureSpan{offset, strings, table.size()};  // nothing follows that it could close
    }
    return end ? std::optional(StructureSpan{offset, strings, *end}) : std::nullopt;
}

}  // namespace

size_t StructureWalk::Longest() const {
    size_t longest = 0;
    for (const StructureSpan& structure : structures) {
        longest = std::max(longest, structure.end - structure.offset);
    }
    return longest;
}

bool BeginsWithAStructure(const Bytes& table) {
    return HasHeaderAt(table, 0);
}

StructureWalk WalkStructures(const Bytes& table) {
    StructureWalk walk;
    while (!walk.reachesEndOfTable) {
        const std::optional<StructureSpan> next = StructureAt(table, walk.End());
        if (!next) {
            break;
        }
        walk.structures.push_back(*next);
        walk.reachesEndOfTable = table[next->offset] == kTypeEndOfTable;
    }
    return walk;
}

}  // namespace machine
