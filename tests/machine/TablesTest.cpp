// Entry points, structures and strings, by bytes that are typed by hand.
#include <gtest/gtest.h>

#include <cerrno>

#include "machine/EntryPoint.h"
#include "machine/MachineMemory.h"
#include "machine/PhysicalMemory.h"
#include "machine/Secrets.h"
#include "machine/StructureWalk.h"

namespace {

using machine::Bytes;
using machine::EntryPlace;
using machine::EntryPoint;
using machine::StructureWalk;

// As a BIOS wrote it: version 2.4, 990 bytes and 24 structures at 0xE8000.
const Bytes kCurrent = {'_',  'S', 'M', '_',  0x14, 0x1F, 2,    4,   0x69, 0,   0,
                        0,    0,   0,   0,    0,    '_',  'D',  'M', 'I',  '_', 0xBD,
                        0xDE, 3,   0,   0x80, 0x0E, 0,    0x18, 0,   0x24};

TEST(EntryPoint, CurrentKindIsRead) {
    const std::optional<EntryPoint> entry = machine::DecodeEntryPoint(kCurrent);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->majorVersion, 2);
    EXPECT_EQ(entry->minorVersion, 4);
    EXPECT_EQ(entry->tableAddress, 0xE8000U);
    EXPECT_EQ(entry->tableLength, 990U);
    EXPECT_EQ(entry->structureCount, 24);
    EXPECT_EQ(entry->largestStructure, 105);
}

TEST(EntryPoint, LegacyKindIsRead) {
    const std::optional<EntryPoint> entry =
        machine::DecodeEntryPoint(Bytes(kCurrent.begin() + 16, kCurrent.end()));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->majorVersion, 2);
    EXPECT_EQ(entry->minorVersion, 4);
    EXPECT_EQ(entry->tableAddress, 0xE8000U);
    EXPECT_EQ(entry->tableLength, 990U);
    EXPECT_EQ(entry->structureCount, 24);
}

TEST(EntryPoint, Kind64IsReadAndSaysNoCount) {
    const std::optional<EntryPoint> entry = machine::DecodeEntryPoint(
        {'_',  'S',  'M',  '3',  '_',  0,    0x18, 3,    7,    1,    1,    0,
         0x78, 0x56, 0x34, 0x12, 0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->majorVersion, 3);
    EXPECT_EQ(entry->minorVersion, 7);
    EXPECT_EQ(entry->tableAddress, 0x0123456789ABCDEFU);
    EXPECT_EQ(entry->tableLength, 0x12345678U);
    EXPECT_EQ(entry->structureCount, std::nullopt);
}

TEST(EntryPoint, IsWrittenAsABiosWritesIt) {
    const std::optional<EntryPoint> entry = machine::DecodeEntryPoint(kCurrent);
    ASSERT_TRUE(entry);
    EXPECT_EQ(machine::EncodeEntryPoint(*entry), kCurrent);
}

TEST(EntryPoint, IsFoundAtTheFirstParagraphThatHasOne) {
    Bytes area(0x10000, 0xFF);
    EXPECT_FALSE(machine::FindEntryPoint(area));
    std::copy_n("_SM_", 4, area.begin() + 0x1238);  // between two paragraphs
    EXPECT_FALSE(machine::FindEntryPoint(area));
    std::copy_n("_DMI_", 5, area.begin());  // its fields would begin outside the area
    EXPECT_FALSE(machine::FindEntryPoint(area));
    std::copy_n("_SM_", 4, area.begin() + 0xFFF0);  // its fields would end outside
    EXPECT_FALSE(machine::FindEntryPoint(area));
    std::copy_n("_DMI_", 5, area.begin() + 0xFFE0);
    ASSERT_TRUE(machine::FindEntryPoint(area));
    EXPECT_EQ(machine::FindEntryPoint(area)->offset, 0xFFE0U);
    EXPECT_EQ(machine::FindEntryPoint(area)->size, 15U);
    std::copy_n("_SM_", 4, area.begin() + 0x5000);
    EXPECT_EQ(machine::FindEntryPoint(area)->offset, 0x5000U);
    EXPECT_EQ(machine::FindEntryPoint(area)->size, 31U);
}

TEST(AddressText, HasEightDigitsOrMore) {
    EXPECT_EQ(machine::AddressText(0xF59F0), "0x000F59F0");
    EXPECT_EQ(machine::AddressText(0x1234567890), "0x1234567890");
}

// --- The walk -----------------------------------------------------------------------------------

TEST(WalkStructures, StepsOverStringsToTheEndOfTheTable) {
    const StructureWalk walk = machine::WalkStructures(
        {1, 5, 0, 0, 9, 'a', 0, 'b', 0, 0, 2, 4, 1, 0, 0, 0, 127, 4, 2, 0, 0, 0, 7, 7});
    ASSERT_EQ(walk.structures.size(), 3U);
    EXPECT_EQ(walk.structures[0].strings, 5U);
    EXPECT_EQ(walk.structures[0].end, 10U);
    EXPECT_EQ(walk.structures[1].end, 16U);
    EXPECT_EQ(walk.End(), 22U);
    EXPECT_EQ(walk.Longest(), 10U);
    EXPECT_TRUE(walk.reachesEndOfTable);
}

TEST(WalkStructures, EndsBeforeWhatIsNotWhole) {
    // Strings without their end, a formatted area that reaches too far, a length of 3.
    for (const Bytes& broken : {Bytes{1, 4, 0, 0, 'a', 'b', 0}, Bytes{1, 40, 0, 0, 0, 0},
                                Bytes{1, 3, 0, 0, 0, 0}, Bytes{1, 4, 0}, Bytes{}}) {
        Bytes table = {9, 4, 0, 0, 0, 0};
        for (const uint8_t byte : broken) {
            table.push_back(byte);
        }
        const StructureWalk walk = machine::WalkStructures(table);
        EXPECT_EQ(walk.structures.size(), 1U);
        EXPECT_EQ(walk.End(), 6U);
        EXPECT_FALSE(walk.reachesEndOfTable);
    }
}

TEST(WalkStructures, EndOfTheTableNeedsNoClosingNuls) {
    const StructureWalk walk = machine::WalkStructures({127, 4, 0, 0});
    EXPECT_TRUE(walk.reachesEndOfTable);
    EXPECT_EQ(walk.End(), 4U);
}

// --- Words --------------------------------------------------------------------------------------

TEST(PlaceholderFor, KeepsMarksAndTheLengthAlone) {
    EXPECT_EQ(machine::PlaceholderFor("QS-0012 (b)"), "XX-XXXX (X)");
    EXPECT_EQ(machine::PlaceholderFor("-[UUID:9F3c-12]-"), "-[UUID:0000-00]-");
    EXPECT_EQ(machine::PlaceholderFor("S\xE9\x01z"), "XXXX");
    EXPECT_EQ(machine::PlaceholderFor(""), "");
}

TEST(ExplainMemoryError, NamesTheLockdownThatTheKernelAdmits) {
    EXPECT_EQ(machine::ExplainMemoryError(EPERM, "none [integrity] confidentiality\n"),
              "Operation not permitted; the kernel is locked down: integrity");
    EXPECT_EQ(machine::ExplainMemoryError(EPERM, "[none] integrity confidentiality\n"),
              "Operation not permitted");
    EXPECT_EQ(machine::ExplainMemoryError(EPERM, ""),
              "Operation not permitted; the kernel may be locked down");
    EXPECT_EQ(machine::ExplainMemoryError(EACCES, "none [integrity] confidentiality\n"),
              "Permission denied");
    EXPECT_EQ(machine::ExplainMemoryError(ENOENT, ""), "No such file or directory");
}

}  // namespace
