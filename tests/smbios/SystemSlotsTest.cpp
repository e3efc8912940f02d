// Type 9: system slots, whose kinds make up the list of buses.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable9;

std::string BusesOf(const Bytes& slotTypes) {
    SERVER_INFORMATION record;
    for (const uint8_t type : slotTypes) {
        Decode(record, kDecoder, Structure(9, 0x0D).String(0x04, "Slot").Byte(0x05, type));
    }
    return record.GetBuses();
}

struct SlotType {
    uint8_t code;
    const char* name;
};

void PrintTo(const SlotType& type, std::ostream* stream) {
    *stream << type.name;
}

class SlotTypeTest : public testing::TestWithParam<SlotType> {};

TEST_P(SlotTypeTest, HasItsName) {
    EXPECT_EQ(BusesOf({GetParam().code}), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Named, SlotTypeTest,
    testing::Values(SlotType{0x01, "Other"}, SlotType{0x02, "Unknown"}, SlotType{0x03, "ISA"},
                    SlotType{0x04, "MCA"}, SlotType{0x05, "EISA"}, SlotType{0x06, "PCI"},
                    SlotType{0x07, "PCMCIA"}, SlotType{0x08, "VL_VESA"},
                    SlotType{0x09, "Proprietary"}, SlotType{0x0A, "Processor"},
                    SlotType{0x0B, "Proprietary-Memory"}, SlotType{0x0C, "I/O-Riser"},
                    SlotType{0x0D, "NuBus"}, SlotType{0x0E, "PCI-66"}, SlotType{0x0F, "AGP"},
                    SlotType{0x10, "AGP-2X"}, SlotType{0x11, "AGP-4X"}, SlotType{0xA0, "PC-98/C20"},
                    SlotType{0xA1, "PC-98/C24"}, SlotType{0xA2, "PC-98/E"},
                    SlotType{0xA3, "PC-98/Local"}, SlotType{0xA4, "PC-98/Card"}));

TEST(SystemSlots, EveryOtherCodeIsNamedDefault) {
    for (int code = 0; code < 256; ++code) {
        const bool isNamed = (code >= 0x01 && code <= 0x11) || (code >= 0xA0 && code <= 0xA4);
        if (!isNamed) {
            EXPECT_EQ(BusesOf({static_cast<uint8_t>(code)}), "Default") << code;
        }
    }
}

TEST(SystemSlots, EachKindIsListedOnceInTheOrderFirstMet) {
    EXPECT_EQ(BusesOf({0x06, 0x0E, 0x06}), "PCI,PCI-66");
    EXPECT_EQ(BusesOf({0x03, 0xA5, 0x06, 0xFF, 0x03}), "ISA,Default,PCI");
}

TEST(SystemSlots, KindWhoseNameIsPartOfAListedOneIsNotAdded) {
    EXPECT_EQ(BusesOf({0x0E, 0x06}), "PCI-66");
    EXPECT_EQ(BusesOf({0x05, 0x03}), "EISA");
    EXPECT_EQ(BusesOf({0x11, 0x0F}), "AGP-4X");
    EXPECT_EQ(BusesOf({0x0B, 0x09}), "Proprietary-Memory");
}

TEST(SystemSlots, AllKindsTogetherFitIntoTheList) {
    Bytes codes;
    for (int code = 0x01; code <= 0x11; ++code) {
        codes.push_back(static_cast<uint8_t>(code));
    }
    for (int code = 0xA0; code <= 0xA5; ++code) {
        codes.push_back(static_cast<uint8_t>(code));
    }
    EXPECT_EQ(BusesOf(codes),
              "Other,Unknown,ISA,MCA,EISA,PCI,PCMCIA,VL_VESA,Proprietary,Processor,"
              "Proprietary-Memory,I/O-Riser,NuBus,PCI-66,AGP,AGP-2X,AGP-4X,PC-98/C20,PC-98/C24,"
              "PC-98/E,PC-98/Local,PC-98/Card,Default");
}

// --- The next structure -------------------------------------------------------------------------

std::ptrdiff_t NextAfter(const Structure& structure) {
    SERVER_INFORMATION record;
    return Decode(record, kDecoder, structure);
}

TEST(SystemSlots, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(9, 0x0D).String(0x04, "Slot 1").Text("more");
    EXPECT_EQ(NextAfter(structure), SizeOf(structure));
}

TEST(SystemSlots, EmptySetWithoutDesignationEndsOneByteEarly) {
    EXPECT_EQ(NextAfter(Structure(9, 0x0D)), 0x0D + 1);
}

TEST(SystemSlots, DesignationIsSkippedEvenWhenTheSetIsEmpty) {
    EXPECT_EQ(NextAfter(Structure(9, 0x0D).Byte(0x04, 1)), 0x0D + 1 + 1);
}

TEST(SystemSlots, StringWithoutDesignationNumberIsSkippedToo) {
    const Structure structure = Structure(9, 0x0D).Text("Slot 1");
    EXPECT_EQ(NextAfter(structure), SizeOf(structure));
}

TEST(SystemSlots, LengthByteIsSigned) {
    const Bytes bytes = {'a', 0, 'b', 0, 0, 0, 0, 0, 9, 0xF8, 0, 0, 0, 0x06};
    SERVER_INFORMATION record;
    EXPECT_EQ(Decode(record, kDecoder, bytes, 8), 5);
    EXPECT_STREQ(record.GetBuses(), "PCI");
    EXPECT_EQ(Decode(record, kDecoder, Bytes{9, 0x80}), -128 + 1);
}

}  // namespace
