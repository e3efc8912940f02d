// Strings end with a NUL each; the first empty one ends the set.
#include "machine/StructureStrings.h"

#include <algorithm>

namespace machine {

StructureStrings::StructureStrings(Bytes& table, const StructureSpan& structure) : m_table(table) {
    size_t offset = structure.strings;
    while (offset < structure.end && m_table[offset] != 0) {
        const auto start = m_table.begin() + static_cast<std::ptrdiff_t>(offset);
        const auto end = m_table.begin() + static_cast<std::ptrdiff_t>(structure.end);
        const auto length = static_cast<size_t>(std::find(start, end, 0) - start);
        m_strings.push_back({offset, length});
        offset += length + 1;
    }
}

std::string StructureStrings::Get(size_t number) const {
    const Place& place = m_strings[number - 1];
    const auto start = m_table.begin() + static_cast<std::ptrdiff_t>(place.offset);
    return {start, start + static_cast<std::ptrdiff_t>(place.length)};
}

void StructureStrings::Set(size_t number, const std::string& text) {
    const Place& place = m_strings[number - 1];
    std::copy_n(text.begin(), std::min(text.size(), place.length),
                m_table.begin() + static_cast<std::ptrdiff_t>(place.offset));
}

}  // namespace machine
