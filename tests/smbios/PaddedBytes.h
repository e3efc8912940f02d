// A structure as the decoders require it: with zero bytes before and behind it.
// Knows nothing of the walk: a test hands it to one decoder.
#pragma once

#include <algorithm>
#include <cstddef>

#include "machine/Structure.h"
#include "smbios/srvinfo.h"

/// Bytes between two kilobytes of zeros.
class PaddedBytes {
  public:
    explicit PaddedBytes(const machine::Bytes& bytes) : m_bytes(bytes.size() + 2 * kPadding) {
        std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + kPadding);
    }
    explicit PaddedBytes(const machine::Structure& structure) : PaddedBytes(structure.Encode(0)) {}

    unsigned char* At(std::ptrdiff_t offset) { return m_bytes.data() + kPadding + offset; }
    std::ptrdiff_t OffsetOf(const unsigned char* position) {
        return position - (m_bytes.data() + kPadding);
    }

  private:
    static constexpr std::ptrdiff_t kPadding = 1024;

    machine::Bytes m_bytes;
};

using Decoder = unsigned char* (SERVER_INFORMATION::*)(unsigned char*);

/// Decodes the structure at `offset` of `bytes`; returns the offset where the next one begins.
inline std::ptrdiff_t Decode(SERVER_INFORMATION& record, Decoder decoder,
                             const machine::Bytes& bytes, std::ptrdiff_t offset = 0) {
    PaddedBytes padded(bytes);
    return padded.OffsetOf((record.*decoder)(padded.At(offset)));
}

inline std::ptrdiff_t Decode(SERVER_INFORMATION& record, Decoder decoder,
                             const machine::Structure& structure) {
    return Decode(record, decoder, structure.Encode(0));
}

/// The number of bytes of a structure with its string set.
inline std::ptrdiff_t SizeOf(const machine::Structure& structure) {
    return static_cast<std::ptrdiff_t>(structure.Encode(0).size());
}
