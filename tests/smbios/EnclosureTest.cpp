// Type 3: system enclosures, one of which may name the chassis.
#include <gtest/gtest.h>

#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable3;
constexpr char kUUID[] = "9F3C0D5E6A7B41C2B8D0E1F203142536";

class Enclosure : public testing::Test {
  protected:
    std::ptrdiff_t Decode(const Structure& structure) {
        return ::Decode(m_record, kDecoder, structure);
    }
    void DecodeSerialNumber(const std::string& serial) {
        Decode(Structure(3, 0x0D).String(0x04, "QEV").String(0x06, "1").String(0x07, serial));
    }

    SERVER_INFORMATION m_record;
};

// --- Types --------------------------------------------------------------------------------------

TEST_F(Enclosure, LockBitIsCleared) {
    Decode(Structure(3, 0x0D).Byte(0x05, 0x17));
    Decode(Structure(3, 0x0D).Byte(0x05, 0x97));
    EXPECT_EQ(m_record.GetNumSystemEnclosures(), 2);
    EXPECT_EQ(m_record.GetSystemEnclosureType(0), 23);
    EXPECT_EQ(m_record.GetSystemEnclosureType(1), 23);
}

TEST_F(Enclosure, EveryTypeIsKept) {
    for (const int type : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        Decode(Structure(3, 0x0D).Byte(0x05, static_cast<uint8_t>(type)));
    }
    const int expected[] = {0x00, 0x01, 0x7F, 0x00, 0x7F};
    ASSERT_EQ(m_record.GetNumSystemEnclosures(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(m_record.GetSystemEnclosureType(i), expected[i]) << i;
    }
}

TEST_F(Enclosure, IndexOutsideTheCountGivesMinusOne) {
    Decode(Structure(3, 0x0D).Byte(0x05, 0x17));
    EXPECT_EQ(m_record.GetSystemEnclosureType(-1), -1);
    EXPECT_EQ(m_record.GetSystemEnclosureType(1), -1);
    EXPECT_EQ(m_record.GetSystemEnclosureType(2147483647), -1);
}

TEST_F(Enclosure, MoreThanTheNamedMaximumAreKept) {
    for (int i = 0; i < 100; ++i) {
        Decode(Structure(3, 0x0D).Byte(0x05, static_cast<uint8_t>(i)));
    }
    EXPECT_EQ(m_record.GetNumSystemEnclosures(), 100);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(m_record.GetSystemEnclosureType(i), i);
    }
    EXPECT_EQ(m_record.GetSystemEnclosureType(100), -1);
}

// --- Chassis UUID -------------------------------------------------------------------------------

TEST_F(Enclosure, BracketedSerialNumberGivesTheChassisUUID) {
    DecodeSerialNumber("-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-");
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

TEST_F(Enclosure, LabelMayStandAnywhereInTheCode) {
    DecodeSerialNumber("C123 -[Chassis UUID:9F3C0D5E6A7B41C2B8D0E1F203142536 x]- y");
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

TEST_F(Enclosure, SerialNumberWithoutBracketsIsPassedOver) {
    DecodeSerialNumber("UUID:9F3C0D5E6A7B41C2B8D0E1F203142536");
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
    DecodeSerialNumber("-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536");
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
}

TEST_F(Enclosure, CodeWithoutLabelIsPassedOver) {
    DecodeSerialNumber("-[9F3C0D5E6A7B41C2B8D0E1F203142536]-");
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
}

TEST_F(Enclosure, LabelOutsideTheCodeIsPassedOver) {
    DecodeSerialNumber("UUID:9F3C0D5E6A7B41C2B8D0E1F203142536 -[C123]-");
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
}

TEST_F(Enclosure, ShortChassisUUIDEndsWithTheCode) {
    DecodeSerialNumber("-[UUID:9F3C]- and more text behind the closing bracket");
    ASSERT_NE(m_record.GetChassisUUID(), nullptr);
    EXPECT_EQ(std::string(m_record.GetChassisUUID(), 33), "9F3C" + std::string(29, '\0'));
}

TEST_F(Enclosure, CodeThatExceedsTheScratchFieldIsPassedOver) {
    const std::string code = "UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-";
    DecodeSerialNumber("-[" + std::string(256 - code.size(), ' ') + code);
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
    DecodeSerialNumber("-[" + std::string(255 - code.size(), ' ') + code);
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

TEST_F(Enclosure, LaterChassisUUIDReplacesTheEarlier) {
    DecodeSerialNumber("-[UUID:00000000000000000000000000000000]-");
    DecodeSerialNumber("-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-");
    DecodeSerialNumber("C123");
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

// --- Strings in the order of their fields -------------------------------------------------------

TEST_F(Enclosure, WithoutMakerAndVersionTheFirstStringIsTheSerialNumber) {
    Decode(Structure(3, 0x0D).String(0x07, "-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-"));
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

TEST_F(Enclosure, MakerAndVersionAreSkippedOneByOne) {
    for (const uint8_t field : machine::Bytes{0x04, 0x06}) {
        SERVER_INFORMATION record;
        ::Decode(record, kDecoder,
                 Structure(3, 0x0D)
                     .String(field, "-[UUID:00000000000000000000000000000000]-")
                     .String(0x07, "-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-"));
        EXPECT_STREQ(record.GetChassisUUID(), kUUID) << int{field};
    }
}

TEST_F(Enclosure, WithoutSerialNumberNoStringIsLookedAt) {
    Decode(Structure(3, 0x0D)
               .String(0x04, "-[UUID:00000000000000000000000000000000]-")
               .String(0x06, "-[UUID:00000000000000000000000000000000]-")
               .String(0x08, "-[UUID:00000000000000000000000000000000]-"));
    EXPECT_EQ(m_record.GetChassisUUID(), nullptr);
}

// --- The next structure -------------------------------------------------------------------------

TEST_F(Enclosure, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(3, 0x0D)
                                    .String(0x04, "QEV")
                                    .String(0x06, "1")
                                    .String(0x07, "C123")
                                    .String(0x08, "tag")
                                    .Text("more");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(Enclosure, NumbersWithoutStringsLeadBehindTheSet) {
    EXPECT_EQ(Decode(Structure(3, 0x0D).Byte(0x04, 1).Byte(0x06, 2).Byte(0x07, 3).Byte(0x08, 4)),
              0x0D + 4 + 1);
}

TEST_F(Enclosure, EmptySetEndsOneByteEarly) {
    EXPECT_EQ(Decode(Structure(3, 0x0D)), 0x0D + 1);
}

TEST_F(Enclosure, LengthByteIsUnsigned) {
    const Structure structure =
        Structure(3, 0xC8).String(0x07, "-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
    EXPECT_STREQ(m_record.GetChassisUUID(), kUUID);
}

}  // namespace
