// The raw SMBIOS structure table, found its way through as DSP0134 describes it.
#pragma once

#include <string>
#include <vector>

namespace vm {

struct RawStructure {
    int type;
    size_t offset;  ///< of the type byte in the table
};

/// The structures before the end-of-table one.
/// Throws std::out_of_range when the table has no end.
std::vector<RawStructure> RawStructures(const std::string& table);

inline unsigned char ByteAt(const std::string& table, size_t offset) {
    return static_cast<unsigned char>(table.at(offset));
}

}  // namespace vm
