// Walks a raw structure table. Two zero bytes end each structure, with strings or without.
#include "vm/StructureTable.h"

#include <stdexcept>

namespace vm {

std::vector<RawStructure> RawStructures(const std::string& table) {
    constexpr unsigned char kEndOfTable = 127;
    std::vector<RawStructure> structures;
    for (size_t at = 0; ByteAt(table, at) != kEndOfTable;) {
        structures.push_back({ByteAt(table, at), at});
        const size_t end = table.find(std::string(2, '\0'), at + ByteAt(table, at + 1));
        if (end == std::string::npos) {
            throw std::out_of_range("a structure without end");
        }
        at = end + 2;
    }
    return structures;
}

}  // namespace vm
