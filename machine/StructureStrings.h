// The strings of one structure, read and replaced in place.
// Never changes a string's length.
#pragma once

#include <string>
#include <vector>

#include "machine/Bytes.h"
#include "machine/StructureWalk.h"

namespace machine {

class StructureStrings {
  public:
    /// Requires: the table outlives this and keeps its size.
    StructureStrings(Bytes& table, const StructureSpan& structure);

    size_t Count() const { return m_strings.size(); }
    /// In the table. Requires: number is from 1 to Count().
    size_t OffsetOf(size_t number) const { return m_strings[number - 1].offset; }
    std::string Get(size_t number) const;
    /// Requires: the text is as long as the one that it replaces.
    void Set(size_t number, const std::string& text);

  private:
    struct Place {
        size_t offset;
        size_t length;
    };

    Bytes& m_table;
    std::vector<Place> m_strings;
};

}  // namespace machine
