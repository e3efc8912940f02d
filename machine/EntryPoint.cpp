// The three layouts of an entry point: DSP0134 5.2.1 and 5.2.2.
#include "machine/EntryPoint.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <string_view>

namespace machine {

namespace {

constexpr std::string_view kAnchor = "_SM_";
constexpr std::string_view kIntermediateAnchor = "_DMI_";
constexpr std::string_view kAnchor64 = "_SM3_";

// "_SM_"; the intermediate entry point stands 16 bytes into it, and may stand alone.
constexpr size_t kChecksum = 0x04;
constexpr size_t kSize = 0x05;
constexpr size_t kMajorVersion = 0x06;
constexpr size_t kMinorVersion = 0x07;
constexpr size_t kLargestStructure = 0x08;
constexpr size_t kIntermediate = 0x10;
constexpr size_t kIntermediateChecksum = 0x05;
constexpr size_t kTableLength = 0x06;
constexpr size_t kTableAddress = 0x08;
constexpr size_t kStructures = 0x0C;
constexpr size_t kVersionInDecimal = 0x0E;
constexpr size_t kIntermediateSize = kEntryPointSize - kIntermediate;

// "_SM3_".
constexpr size_t kSize64 = 0x06;
constexpr size_t kMajorVersion64 = 0x07;
constexpr size_t kMinorVersion64 = 0x08;
constexpr size_t kTableLength64 = 0x0C;
constexpr size_t kTableAddress64 = 0x10;
constexpr size_t kEntryPointSize64 = 0x18;

// What systally reads of the BIOS area: its last byte is not part of it.
constexpr size_t kSearchedSize = 0xFFFF;
constexpr size_t kParagraph = 16;
constexpr size_t kFieldsEnd = 0x1E;  // behind the structure count

template <typename Number>
Number Get(const Bytes& bytes, size_t offset) {
    uint64_t number = 0;
    for (size_t i = sizeof(Number); i-- > 0;) {
        number = number << 8 | bytes[offset + i];
    }
    return static_cast<Number>(number);
}

template <typename Number>
void Put(Bytes& bytes, size_t offset, Number value) {
    for (size_t i = 0; i < sizeof value; ++i) {
        bytes[offset + i] = static_cast<uint8_t>(uint64_t{value} >> (8 * i));
    }
}

void PutText(Bytes& bytes, size_t offset, std::string_view text) {
    std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

bool HasAnchor(const Bytes& bytes, size_t offset, std::string_view anchor) {
    return offset + anchor.size() <= bytes.size() &&
           std::equal(anchor.begin(), anchor.end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

/// The byte that makes the bytes from `first` on sum up to 0.
uint8_t ChecksumFrom(const Bytes& bytes, size_t first) {
    const int sum =
        std::accumulate(bytes.begin() + static_cast<std::ptrdiff_t>(first), bytes.end(), 0);
    return static_cast<uint8_t>(-sum);
}

/// Whether bytes are all there and sum up to 0.
bool SumsUp(const Bytes& bytes, size_t first, size_t size) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(first);
    return first + size <= bytes.size() &&
           std::accumulate(start, start + static_cast<std::ptrdiff_t>(size), 0) % 256 == 0;
}

EntryPoint DecodeIntermediate(const Bytes& bytes, size_t offset) {
    const auto version = bytes[offset + kVersionInDecimal];
    EntryPoint entry;
    entry.majorVersion = version >> 4;
    entry.minorVersion = version & 0x0F;
    entry.tableAddress = Get<uint32_t>(bytes, offset + kTableAddress);
    entry.tableLength = Get<uint16_t>(bytes, offset + kTableLength);
    entry.structureCount = Get<uint16_t>(bytes, offset + kStructures);
    return entry;
}

EntryPoint DecodeCurrent(const Bytes& bytes) {
    EntryPoint entry = DecodeIntermediate(bytes, kIntermediate);
    entry.majorVersion = bytes[kMajorVersion];
    entry.minorVersion = bytes[kMinorVersion];
    entry.largestStructure = Get<uint16_t>(bytes, kLargestStructure);
    return entry;
}

EntryPoint Decode64(const Bytes& bytes) {
    EntryPoint entry;
    entry.majorVersion = bytes[kMajorVersion64];
    entry.minorVersion = bytes[kMinorVersion64];
    entry.tableAddress = Get<uint64_t>(bytes, kTableAddress64);
    entry.tableLength = Get<uint32_t>(bytes, kTableLength64);
    return entry;
}

}  // namespace

std::optional<EntryPoint> DecodeEntryPoint(const Bytes& bytes) {
    if (HasAnchor(bytes, 0, kAnchor) && bytes.size() >= kFieldsEnd) {
        Bytes whole = bytes;
        whole.resize(std::max(bytes.size(), kEntryPointSize));
        return DecodeCurrent(whole);
    }
    if (HasAnchor(bytes, 0, kIntermediateAnchor) && bytes.size() >= kIntermediateSize) {
        return DecodeIntermediate(bytes, 0);
    }
    if (HasAnchor(bytes, 0, kAnchor64) && bytes.size() >= kEntryPointSize64) {
        return Decode64(bytes);
    }
    return std::nullopt;
}

bool HasRightChecksums(const Bytes& bytes) {
    if (HasAnchor(bytes, 0, kAnchor64)) {
        return bytes[kSize64] >= kEntryPointSize64 && SumsUp(bytes, 0, bytes[kSize64]);
    }
    if (HasAnchor(bytes, 0, kIntermediateAnchor)) {
        return SumsUp(bytes, 0, kIntermediateSize);
    }
    // The standard's version 2.1 gave the size one too small. The byte that is then missing is 0.
    Bytes whole = bytes;
    whole.resize(std::max(bytes.size(), kEntryPointSize));
    return bytes[kSize] >= kFieldsEnd && bytes[kSize] <= kEntryPointSize &&
           SumsUp(bytes, 0, bytes[kSize]) && HasAnchor(bytes, kIntermediate, kIntermediateAnchor) &&
           SumsUp(whole, kIntermediate, kIntermediateSize);
}

Bytes EncodeEntryPoint(const EntryPoint& entry) {
    Bytes bytes(kEntryPointSize);
    PutText(bytes, 0, kAnchor);
    Put(bytes, kSize, static_cast<uint8_t>(kEntryPointSize));
    Put(bytes, kMajorVersion, entry.majorVersion);
    Put(bytes, kMinorVersion, entry.minorVersion);
    Put(bytes, kLargestStructure, entry.largestStructure);
    PutText(bytes, kIntermediate, kIntermediateAnchor);
    Put(bytes, kIntermediate + kTableLength, static_cast<uint16_t>(entry.tableLength));
    Put(bytes, kIntermediate + kTableAddress, static_cast<uint32_t>(entry.tableAddress));
    Put(bytes, kIntermediate + kStructures, entry.structureCount.value_or(0));
    Put(bytes, kIntermediate + kVersionInDecimal,
        static_cast<uint8_t>(entry.majorVersion << 4 | (entry.minorVersion & 0x0F)));
    bytes[kIntermediate + kIntermediateChecksum] = ChecksumFrom(bytes, kIntermediate);
    bytes[kChecksum] = ChecksumFrom(bytes, 0);
    return bytes;
}

/// The rule of FindEntryPoint in smbios/srvinfo_memory.cpp, which machine/ does not link: with
/// another one, --this and captures would show systally a table that it does not find by itself.
std::optional<EntryPlace> FindEntryPoint(const Bytes& biosArea) {
    for (size_t offset = 0; offset < std::min(biosArea.size(), kSearchedSize);
         offset += kParagraph) {
        const size_t left = kSearchedSize - offset;
        if (HasAnchor(biosArea, offset, kAnchor) && left >= kFieldsEnd) {
            return EntryPlace{offset, std::min(left, kEntryPointSize)};
        }
        // systally counts the fields from 16 bytes before this anchor.
        if (HasAnchor(biosArea, offset, kIntermediateAnchor) && offset >= kIntermediate) {
            return EntryPlace{offset, kIntermediateSize};
        }
    }
    return std::nullopt;
}

std::string AddressText(uint64_t address) {
    char text[sizeof "0xFFFFFFFFFFFFFFFF"];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(address));
    return text;
}

}  // namespace machine
