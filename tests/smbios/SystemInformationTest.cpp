// Type 1: system information.
#include <gtest/gtest.h>

#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable1;

class SystemInformation : public testing::Test {
  protected:
    std::ptrdiff_t Decode(const Structure& structure) {
        return ::Decode(m_record, kDecoder, structure);
    }
    void DecodeProduct(const std::string& product) {
        Decode(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, product));
    }
    void DecodeUUID(const Bytes& uuid) { Decode(Structure(1, 0x1B).Data(0x08, uuid)); }
    void ExpectProduct(const char* name, const char* type, const char* model) const {
        EXPECT_STREQ(m_record.GetProductName(), name);
        EXPECT_STREQ(m_record.GetMachineType(), type);
        EXPECT_STREQ(m_record.GetModelNumber(), model);
    }

    SERVER_INFORMATION m_record;
};

TEST_F(SystemInformation, TextsAreTakenInTheOrderOfTheFields) {
    Decode(Structure(1, 0x1B)
               .String(0x04, "QEV")
               .String(0x05, "Arlo 2 -[771200X]-")
               .String(0x06, "03")
               .String(0x07, "QS0012345"));
    EXPECT_STREQ(m_record.GetManufacturer(), "QEV");
    ExpectProduct("Arlo 2 ", "7712", "00X");
    EXPECT_STREQ(m_record.GetMachineSerialNumber(), "QS0012345");
}

// --- Structures without a UUID ------------------------------------------------------------------

TEST_F(SystemInformation, LengthOf0x18OrLessSetsNothing) {
    for (const uint8_t length : {uint8_t{0x08}, uint8_t{0x17}, uint8_t{0x18}}) {
        const Structure structure = Structure(1, length)
                                        .String(0x04, "QEV")
                                        .String(0x05, "Arlo 2 -[771200X]-")
                                        .String(0x06, "03")
                                        .String(0x07, "QS0012345");
        EXPECT_EQ(Decode(structure), SizeOf(structure));
        EXPECT_STREQ(m_record.GetManufacturer(), "");
        ExpectProduct("", "", "");
        EXPECT_STREQ(m_record.GetMachineSerialNumber(), "");
        EXPECT_EQ(m_record.GetUUID(), nullptr);
    }
}

TEST_F(SystemInformation, ShortStructureIsSkippedOverBothNuls) {
    EXPECT_EQ(Decode(Structure(1, 0x18)), 0x18 + 2);
}

TEST_F(SystemInformation, LengthOf0x19IsDecoded) {
    Decode(Structure(1, 0x19).String(0x04, "QEV").String(0x05, "Arlo 2"));
    EXPECT_STREQ(m_record.GetManufacturer(), "QEV");
}

TEST_F(SystemInformation, LengthByteIsUnsigned) {
    const Structure structure = Structure(1, 0x80).String(0x04, "QEV").String(0x05, "Arlo 2");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
    EXPECT_STREQ(m_record.GetManufacturer(), "QEV");
    EXPECT_STREQ(m_record.GetProductName(), "Arlo 2");
}

// --- Product name, machine type, model number
// -----------------------------------------------------

TEST_F(SystemInformation, CodeGivesTypeAndModel) {
    DecodeProduct("Arlo 2 -[771200X]-");
    ExpectProduct("Arlo 2 ", "7712", "00X");
}

TEST_F(SystemInformation, ModelHasThreeCharactersAtMost) {
    DecodeProduct("Arlo 2 -[771200XYZ]-");
    ExpectProduct("Arlo 2 ", "7712", "00X");
}

TEST_F(SystemInformation, ModelNeedsFiveCharacters) {
    DecodeProduct("-[771200]-");
    ExpectProduct("", "7712", "00");
    DecodeProduct("-[77120]-");
    ExpectProduct("", "7712", "0");
    DecodeProduct("-[7712]-");
    ExpectProduct("", "7712", "");
}

TEST_F(SystemInformation, ShortCodeIsTheMachineType) {
    DecodeProduct("-[77]-");
    ExpectProduct("", "77", "");
}

TEST_F(SystemInformation, EmptyCodeGivesNeither) {
    DecodeProduct("Arlo 2 -[]-");
    ExpectProduct("Arlo 2 ", "", "");
}

TEST_F(SystemInformation, NameWithoutCodeIsTakenApartItself) {
    DecodeProduct("Arlo 2");
    ExpectProduct("Arlo 2", "Arlo", " 2");
    DecodeProduct("Arlo 2 -[771200X");
    ExpectProduct("Arlo 2 ", "Arlo", " 2 ");
}

TEST_F(SystemInformation, LeadingBlankEmptiesTypeAndModel) {
    DecodeProduct("Arlo 2 -[771200X]-");
    DecodeProduct("Arlo 2 -[ 71200X]-");
    ExpectProduct("Arlo 2 ", "", "");
    DecodeProduct(" Arlo 2");
    ExpectProduct(" Arlo 2", "", "");
}

TEST_F(SystemInformation, BlankElsewhereIsACharacter) {
    DecodeProduct("-[7 12 0X]-");
    ExpectProduct("", "7 12", " 0X");
}

TEST_F(SystemInformation, EightBitBytesAreKept) {
    DecodeProduct(
        "Arl\xF6 -[\xFF\x80"
        "12\xE9]-");
    ExpectProduct("Arl\xF6 ",
                  "\xFF\x80"
                  "12",
                  "\xE9");
}

// --- Which strings are taken --------------------------------------------------------------------

TEST_F(SystemInformation, ManufacturerNumberDecidesOverTheProductNameToo) {
    Decode(Structure(1, 0x1B).Byte(0x04, 1).Byte(0x05, 0).Text("QEV").Text("Arlo 2"));
    EXPECT_STREQ(m_record.GetManufacturer(), "QEV");
    EXPECT_STREQ(m_record.GetProductName(), "Arlo 2");
}

TEST_F(SystemInformation, WithoutManufacturerNumberTheProductNameIsNotTaken) {
    Decode(Structure(1, 0x1B).String(0x05, "Arlo 2 -[771200X]-").String(0x07, "QS0012345"));
    EXPECT_STREQ(m_record.GetManufacturer(), "");
    ExpectProduct("", "", "");
    EXPECT_STREQ(m_record.GetMachineSerialNumber(), "Arlo 2 -[771200X]-");
}

TEST_F(SystemInformation, WithoutVersionNumberNoStringIsSkipped) {
    Decode(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2").String(0x07, "QS1"));
    EXPECT_STREQ(m_record.GetMachineSerialNumber(), "QS1");
}

TEST_F(SystemInformation, WithoutSerialNumberNoneIsSet) {
    Decode(Structure(1, 0x1B)
               .String(0x04, "QEV")
               .String(0x05, "Arlo 2")
               .String(0x06, "03")
               .Text("QS1"));
    EXPECT_STREQ(m_record.GetMachineSerialNumber(), "");
}

TEST_F(SystemInformation, NumbersAreNoIndexes) {
    Decode(Structure(1, 0x1B)
               .Byte(0x04, 2)
               .Byte(0x05, 1)
               .Byte(0x07, 9)
               .Text("first")
               .Text("second")
               .Text("third"));
    EXPECT_STREQ(m_record.GetManufacturer(), "first");
    EXPECT_STREQ(m_record.GetProductName(), "second");
    EXPECT_STREQ(m_record.GetMachineSerialNumber(), "third");
}

TEST_F(SystemInformation, LongTextsAreTruncatedToTheirFields) {
    Decode(Structure(1, 0x1B)
               .String(0x04, std::string(300, 'm'))
               .String(0x05, std::string(300, 'p'))
               .String(0x07, std::string(300, 's')));
    EXPECT_EQ(m_record.GetManufacturer(), std::string(127, 'm'));
    EXPECT_EQ(m_record.GetProductName(), std::string(127, 'p'));
    EXPECT_EQ(m_record.GetMachineSerialNumber(), std::string(127, 's'));
}

// --- UUID ---------------------------------------------------------------------------------------

TEST_F(SystemInformation, UUIDIsWrittenInStoredOrderInUpperCase) {
    DecodeUUID({0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x0F, 0xED, 0xCB, 0xA9, 0x87, 0x65,
                0x43, 0x21});
    EXPECT_STREQ(m_record.GetUUID(), "123456789ABCDEF00FEDCBA987654321");
}

TEST_F(SystemInformation, UUIDThatBeginsWithAZeroByteIsNotRecorded) {
    DecodeUUID({0x00, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x0F, 0xED, 0xCB, 0xA9, 0x87, 0x65,
                0x43, 0x21});
    EXPECT_EQ(m_record.GetUUID(), nullptr);
}

TEST_F(SystemInformation, OtherZeroBytesOfTheUUIDAreDigits) {
    DecodeUUID({0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_STREQ(m_record.GetUUID(), "01000000000000000000000000000000");
}

TEST_F(SystemInformation, UUIDOfOnesIsRecorded) {
    DecodeUUID(Bytes(16, 0xFF));
    EXPECT_STREQ(m_record.GetUUID(), "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF");
}

TEST_F(SystemInformation, LaterUUIDReplacesTheEarlierUnlessItBeginsWithZero) {
    DecodeUUID(Bytes(16, 0x11));
    DecodeUUID(Bytes(16, 0x22));
    EXPECT_STREQ(m_record.GetUUID(), "22222222222222222222222222222222");
    DecodeUUID(Bytes(16, 0x00));
    EXPECT_STREQ(m_record.GetUUID(), "22222222222222222222222222222222");
}

// --- The next structure -------------------------------------------------------------------------

TEST_F(SystemInformation, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(1, 0x1B)
                                    .String(0x04, "QEV")
                                    .String(0x05, "Arlo 2")
                                    .String(0x06, "03")
                                    .String(0x07, "QS1")
                                    .Text("SKU")
                                    .Text("family");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(SystemInformation, EmptySetEndsOneByteEarly) {
    EXPECT_EQ(Decode(Structure(1, 0x1B)), 0x1B + 1);
}

}  // namespace
