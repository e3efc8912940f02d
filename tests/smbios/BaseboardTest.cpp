// Type 2: baseboard information, which names the blade's slot.
#include <gtest/gtest.h>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable2;

short SlotOf(const Structure& structure) {
    SERVER_INFORMATION record;
    Decode(record, kDecoder, structure);
    return record.GetBladeSlot();
}

TEST(Baseboard, LocationGivesTheBladeSlot) {
    EXPECT_EQ(SlotOf(Structure(2, 0x0F)
                         .String(0x04, "QEV")
                         .String(0x05, "QBRD-2040")
                         .String(0x06, "1")
                         .String(0x07, "B0001234")
                         .String(0x08, "tag 55")
                         .String(0x0A, "Bay 14")),
              14);
}

TEST(Baseboard, WithoutAssetTagTheFifthStringIsTheLocation) {
    EXPECT_EQ(SlotOf(Structure(2, 0x0F)
                         .String(0x04, "QEV 91")
                         .String(0x05, "QBRD 92")
                         .String(0x06, "93")
                         .String(0x07, "94")
                         .String(0x0A, "Bay 14")
                         .Text("Bay 77")),
              14);
}

TEST(Baseboard, FieldsThatAreZeroSkipNoString) {
    EXPECT_EQ(SlotOf(Structure(2, 0x0F).String(0x0A, "Bay 14").Text("99")), 14);
    for (const uint8_t field : machine::Bytes{0x04, 0x05, 0x06, 0x07, 0x08}) {
        EXPECT_EQ(SlotOf(Structure(2, 0x0F)
                             .String(field, "skipped 99")
                             .String(0x0A, "Bay 14")
                             .Text("Bay 77")),
                  14)
            << int{field};
    }
}

TEST(Baseboard, WithoutLocationNumberTheSlotStaysUnknown) {
    EXPECT_EQ(SlotOf(Structure(2, 0x0F)
                         .String(0x04, "QEV")
                         .String(0x05, "QBRD")
                         .String(0x06, "1")
                         .String(0x07, "B1")
                         .String(0x08, "tag")
                         .Text("Bay 14")),
              -1);
}

TEST(Baseboard, NumbersAreNoIndexes) {
    EXPECT_EQ(
        SlotOf(
            Structure(2, 0x0F).Byte(0x04, 2).Byte(0x08, 3).Byte(0x0A, 1).Text("91").Text("92").Text(
                "Bay 13")),
        13);
}

TEST(Baseboard, FeatureFlagsAndContainedObjectsAreNotLookedAt) {
    EXPECT_EQ(SlotOf(Structure(2, 0x11)
                         .Byte(0x09, 0xFF)
                         .Byte(0x0B, 0xFF)
                         .Byte(0x0C, 0xFF)
                         .Byte(0x0D, 0xFF)
                         .Byte(0x0E, 0xFF)
                         .Byte(0x0F, 0xFF)
                         .String(0x0A, "Bay 14")),
              14);
}

TEST(Baseboard, LocationThatIsMissingLeavesTheSlotUnknown) {
    EXPECT_EQ(SlotOf(Structure(2, 0x0F).Byte(0x0A, 1)), -1);
}

TEST(Baseboard, LaterBoardWithALocationWins) {
    SERVER_INFORMATION record;
    Decode(record, kDecoder, Structure(2, 0x0F).String(0x0A, "Bay 14"));
    Decode(record, kDecoder, Structure(2, 0x0F).String(0x0A, "Bay 03"));
    Decode(record, kDecoder, Structure(2, 0x0F));
    EXPECT_EQ(record.GetBladeSlot(), 3);
}

TEST(Baseboard, FieldsBehindAShortStructureAreReadFromItsStrings) {
    // 'E' stands where the asset tag's number is looked for, '1' where the location's is.
    EXPECT_EQ(SlotOf(Structure(2, 0x08).String(0x04, "EV1 99").Text("tag").Text("Bay 07")), 7);
}

TEST(Baseboard, LengthByteIsUnsigned) {
    const Structure structure = Structure(2, 0xFF).String(0x0A, "Bay 14");
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, structure), SizeOf(structure));
    EXPECT_EQ(record.GetBladeSlot(), 14);
}

TEST(Baseboard, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(2, 0x0F)
                                    .String(0x04, "QEV")
                                    .String(0x05, "QBRD-2040")
                                    .String(0x06, "1")
                                    .String(0x07, "B0001234")
                                    .String(0x08, "tag")
                                    .String(0x0A, "Bay 14")
                                    .Text("more");
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, structure), SizeOf(structure));
}

TEST(Baseboard, MissingLocationDoesNotMoveTheNextStructure) {
    const Structure structure = Structure(2, 0x0F).String(0x04, "QEV").Byte(0x08, 2).Byte(0x0A, 3);
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, structure), SizeOf(structure));
}

TEST(Baseboard, EmptySetEndsOneByteEarly) {
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, Structure(2, 0x0F)), 0x0F + 1);
}

}  // namespace
