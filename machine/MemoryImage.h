// Physical memory as far as it matters: a few pages of a large, otherwise empty space.
// Holds bytes; what they mean is no concern of its.
#pragma once

#include <array>
#include <cstdint>
#include <map>

#include "machine/Bytes.h"

namespace machine {

class MemoryImage {
  public:
    /// Puts bytes at a physical address, over those that were there.
    void Put(uint64_t address, const Bytes& bytes);

    /// Makes the image long enough for whoever reads up to an address.
    void ReachTo(uint64_t end);

    /// Long enough for the BIOS area and for whoever maps the pages of all bytes and one more:
    /// touching a mapping behind the end of its file raises SIGBUS.
    uint64_t Size() const;

    /// Writes a sparse file; false, with errno, when that fails.
    bool WriteTo(int file) const;

  private:
    static constexpr uint64_t kPage = 4096;

    std::map<uint64_t, std::array<uint8_t, kPage>> m_pages;
    uint64_t m_end = 0;
};

}  // namespace machine
