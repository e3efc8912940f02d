// SMBIOS entry points of every kind, read and written.
// Decodes whatever its checksum: what the program ignores is no reason to refuse a machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "machine/Bytes.h"

namespace machine {

// Where a 32-bit entry point lies: DSP0134 5.2.1.
inline constexpr uint64_t kBiosAreaAddress = 0xF0000;
inline constexpr size_t kBiosAreaSize = 0x10000;
inline constexpr size_t kEntryPointSize = 0x1F;

/// What an entry point says of its table.
struct EntryPoint {
    uint8_t majorVersion = 2;
    uint8_t minorVersion = 8;
    uint64_t tableAddress = 0;
    uint32_t tableLength = 0;                ///< "_SM3_": the largest length that it may have
    std::optional<uint16_t> structureCount;  ///< "_SM3_" does not say it
    uint16_t largestStructure = 0;           ///< 0 where the entry point does not say it
};

/// Reads an entry point that begins with "_SM_", "_DMI_" or "_SM3_"; none when it is cut short or
/// begins otherwise.
std::optional<EntryPoint> DecodeEntryPoint(const Bytes& bytes);

/// Whether the checksums are right of an entry point that the kernel's file of it holds, which is
/// what the kernel itself asks for before it shows one.
/// Requires: DecodeEntryPoint reads it.
bool HasRightChecksums(const Bytes& bytes);

/// The 31 bytes of a 32-bit entry point, "_SM_" and "_DMI_", with both checksums. The legacy kind
/// is "_DMI_" alone.
/// Requires: address and length fit 32 and 16 bits, and the count is known.
Bytes EncodeEntryPoint(const EntryPoint& entry);

/// An entry point's place in the BIOS area.
struct EntryPlace {
    size_t offset = 0;
    size_t size = 0;
};

/// The entry point that systally uses: the first anchor, whatever its checksum.
std::optional<EntryPlace> FindEntryPoint(const Bytes& biosArea);

/// "0x000F59F0".
std::string AddressText(uint64_t address);

}  // namespace machine
