// One SMBIOS structure, written down field by field.
// Checks nothing: tests write malformed structures with it too.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "machine/Bytes.h"

namespace machine {

/// A structure in the making. Offsets count from the structure's first byte, as in the tables
/// of DSP0134. Each call returns the structure, so that one expression describes it.
class Structure {
  public:
    /// A formatted area of `length` bytes, the four of the header included, all 0 behind it.
    Structure(uint8_t type, uint8_t length);

    Structure& Byte(size_t offset, uint8_t value);
    Structure& Word(size_t offset, uint16_t value);
    Structure& Dword(size_t offset, uint32_t value);
    Structure& Data(size_t offset, const Bytes& data);
    /// Appends a string to the set and puts its number into the byte at `offset`.
    Structure& String(size_t offset, const std::string& text);
    /// Appends a string that no field refers to.
    Structure& Text(const std::string& text);

    /// The bytes as the firmware stores them: formatted area, string set, closing NULs.
    Bytes Encode(uint16_t handle) const;

  private:
    Bytes m_formatted;
    std::vector<std::string> m_strings;
};

}  // namespace machine
