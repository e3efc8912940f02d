// Where the structures of a table begin and end, by the standard's rules.
// Goes no further than every byte of a structure is there.
#pragma once

#include <cstddef>
#include <vector>

#include "machine/Bytes.h"

namespace machine {

/// One whole structure, by offsets from the table's first byte.
struct StructureSpan {
    size_t offset = 0;
    size_t strings = 0;  ///< where the formatted area ends and the string set begins
    size_t end = 0;      ///< behind the set's closing NULs
};

struct StructureWalk {
    std::vector<StructureSpan> structures;
    bool reachesEndOfTable = false;  ///< the last one is the end-of-table structure

    size_t End() const { return structures.empty() ? 0 : structures.back().end; }
    /// The length of the longest structure.
    size_t Longest() const;
};

/// Whether a table begins with the header of a structure, however much of the rest is there.
bool BeginsWithAStructure(const Bytes& table);

/// Walks to the end-of-table structure, or as far as whole structures go.
StructureWalk WalkStructures(const Bytes& table);

}  // namespace machine
