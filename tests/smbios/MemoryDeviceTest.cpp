// Type 17: memory devices, whose sizes are added up.
#include <gtest/gtest.h>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable17;

int MegabytesOf(std::initializer_list<uint16_t> sizes) {
    SERVER_INFORMATION record;
    for (const uint16_t size : sizes) {
        Decode(record, kDecoder, Structure(17, 0x1B).Word(0x0C, size).String(0x10, "DIMM"));
    }
    return record.GetMemorySizeInMB();
}

TEST(MemoryDevice, SizeIsInMegabytes) {
    EXPECT_EQ(MegabytesOf({0x0200}), 512);
    EXPECT_EQ(MegabytesOf({0x0001}), 1);
}

TEST(MemoryDevice, TopBitMeansKilobytes) {
    EXPECT_EQ(MegabytesOf({0x8400}), 1);
    EXPECT_EQ(MegabytesOf({0xC000}), 16);
}

TEST(MemoryDevice, KilobytesAreTruncatedToMegabytes) {
    EXPECT_EQ(MegabytesOf({0x83FF}), 0);
    EXPECT_EQ(MegabytesOf({0x8001}), 0);
    EXPECT_EQ(MegabytesOf({0x87FF}), 1);
}

TEST(MemoryDevice, SizesAreAddedUp) {
    EXPECT_EQ(MegabytesOf({0x0200, 0x8400}), 513);
    EXPECT_EQ(MegabytesOf({4096, 4096, 2048, 0, 1024}), 11264);
}

TEST(MemoryDevice, EmptySocketAddsNothing) {
    EXPECT_EQ(MegabytesOf({0x0000}), 0);
}

TEST(MemoryDevice, UnknownSizeAdds31Megabytes) {
    EXPECT_EQ(MegabytesOf({0xFFFF}), 31);
}

TEST(MemoryDevice, SizeThatRefersToTheExtendedOneIsTakenAsItStands) {
    EXPECT_EQ(MegabytesOf({0x7FFF}), 32767);
}

TEST(MemoryDevice, AddsToWhatTheRecordHolds) {
    SERVER_INFORMATION record;
    record.SetMemorySizeInMB(100);
    Decode(record, kDecoder, Structure(17, 0x1B).Word(0x0C, 28));
    EXPECT_EQ(record.GetMemorySizeInMB(), 128);
}

TEST(MemoryDevice, SumWrapsAs32Bits) {
    SERVER_INFORMATION record;
    record.SetMemorySizeInMB(2147483647);
    Decode(record, kDecoder, Structure(17, 0x1B).Word(0x0C, 2));
    EXPECT_EQ(record.GetMemorySizeInMB(), -2147483647);
}

// --- The next structure -------------------------------------------------------------------------

std::ptrdiff_t NextAfter(const Structure& structure) {
    SERVER_INFORMATION record;
    return Decode(record, kDecoder, structure);
}

TEST(MemoryDevice, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(17, 0x1B).String(0x10, "DIMM 1").String(0x11, "Bank 0");
    EXPECT_EQ(NextAfter(structure), SizeOf(structure));
}

TEST(MemoryDevice, EmptySetIsSteppedOverExactly) {
    EXPECT_EQ(NextAfter(Structure(17, 0x1B)), 0x1B + 2);
}

TEST(MemoryDevice, LengthByteIsSigned) {
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, Bytes{17, 0x80}), -128 + 2);
}

}  // namespace
