// How an input of the table walk is laid out, for its target and for the seeds that it starts from:
//   length announced (2), count announced (2), offset in its page (2), flags (1), paragraph (1),
// then the table itself. Numbers are little-endian.
#pragma once

#include <cstdint>

namespace fuzz {

// What the flags of an input choose.
constexpr uint8_t kLegacyAnchor = 0x01;
constexpr uint8_t kEndOfArea = 0x02;  // the entry point stands in the last paragraphs
constexpr uint8_t kRawArea = 0x04;    // the table's bytes are laid over the entry point instead

}  // namespace fuzz
