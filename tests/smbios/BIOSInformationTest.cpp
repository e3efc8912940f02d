// Type 0: BIOS information.
#include <gtest/gtest.h>

#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable0;

class BIOSInformation : public testing::Test {
  protected:
    std::ptrdiff_t Decode(const Structure& structure) {
        return ::Decode(m_record, kDecoder, structure);
    }
    void DecodeVersion(const std::string& version) {
        Decode(Structure(0, 0x18)
                   .String(0x04, "QEV")
                   .String(0x05, version)
                   .String(0x08, "03/18/2010"));
    }
    void ExpectParts(const char* buildID, const char* language, const char* version) const {
        EXPECT_STREQ(m_record.GetMachineBIOSBuildID(), buildID);
        EXPECT_STREQ(m_record.GetMachineBIOSLanguage(), language);
        EXPECT_STREQ(m_record.GetMachineBIOSVersion(), version);
    }

    SERVER_INFORMATION m_record;
};

TEST_F(BIOSInformation, CodeGivesBuildLanguageAndVersion) {
    DecodeVersion("-[AB1234CUS-1.07]-");
    ExpectParts("AB1234C", "US", "1.07");
}

TEST_F(BIOSInformation, NameIsTheWholeString) {
    DecodeVersion("-[AB1234CUS-1.07]-");
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "-[AB1234CUS-1.07]-");
    DecodeVersion("QEV BIOS -[AB1234CUS-1.07]- rev. A");
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "QEV BIOS -[AB1234CUS-1.07]- rev. A");
    ExpectParts("AB1234C", "US", "1.07");
}

TEST_F(BIOSInformation, TextWithoutBracketsAndHyphenGivesNoVersion) {
    DecodeVersion("ABCDEFGHIJKLM");
    ExpectParts("ABCDEFG", "HI", "");
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "ABCDEFGHIJKLM");
}

TEST_F(BIOSInformation, TextWithoutBracketsIsTakenApartWhole) {
    DecodeVersion("AB1234CUS-1.07");
    ExpectParts("AB1234C", "US", "1.07");
}

TEST_F(BIOSInformation, TextWithoutClosingBracketIsTakenApartWhole) {
    DecodeVersion("-[AB1234CUS-1.07");
    ExpectParts("-[AB123", "4C", "S-1.07");
}

TEST_F(BIOSInformation, ShortCodeGivesAShortBuildID) {
    DecodeVersion("-[AB1]-");
    ExpectParts("AB1", "", "");
    DecodeVersion("-[]-");
    ExpectParts("", "", "");
}

TEST_F(BIOSInformation, LanguageNeedsEightCharacters) {
    DecodeVersion("-[AB1234C]-");
    ExpectParts("AB1234C", "", "");
    DecodeVersion("-[AB1234CU]-");
    ExpectParts("AB1234C", "U", "");
    DecodeVersion("-[AB1234CUS]-");
    ExpectParts("AB1234C", "US", "");
}

TEST_F(BIOSInformation, VersionNeedsMoreThanNineCharacters) {
    DecodeVersion("-[AB1234C-1]-");
    ExpectParts("AB1234C", "-1", "");
    DecodeVersion("-[AB1234CUS-]-");
    ExpectParts("AB1234C", "US", "");
    DecodeVersion("-[AB1234CUS-1]-");
    ExpectParts("AB1234C", "US", "1");
}

TEST_F(BIOSInformation, HyphenAnywhereGivesAVersionFromTheTenthCharacterOn) {
    DecodeVersion("-[A-CDEFGHIJKLM]-");
    ExpectParts("A-CDEFG", "HI", "KLM");
    DecodeVersion("-[ABCDEFGHIJKL-]-");
    ExpectParts("ABCDEFG", "HI", "KL-");
}

TEST_F(BIOSInformation, LaterStringWithoutPartsEmptiesThem) {
    DecodeVersion("-[AB1234CUS-1.07]-");
    DecodeVersion("X");
    ExpectParts("X", "", "");
}

TEST_F(BIOSInformation, ReleaseDateIsKept) {
    DecodeVersion("-[AB1234CUS-1.07]-");
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "03/18/2010");
}

TEST_F(BIOSInformation, EightBitBytesAreKept) {
    DecodeVersion(
        "-[AB\xE9"
        "1234US-\xFF]-");
    ExpectParts(
        "AB\xE9"
        "1234",
        "US", "\xFF");
}

// --- Strings in the order of their fields -------------------------------------------------------

TEST_F(BIOSInformation, WithoutVendorNumberTheFirstStringIsTheVersion) {
    Decode(Structure(0, 0x18).String(0x05, "-[AB1234CUS-1.07]-").String(0x08, "03/18/2010"));
    ExpectParts("AB1234C", "US", "1.07");
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "03/18/2010");
}

TEST_F(BIOSInformation, WithoutVersionNumberNothingIsTakenApart) {
    Decode(Structure(0, 0x18).String(0x04, "QEV").String(0x08, "03/18/2010"));
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "");
    ExpectParts("", "", "");
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "03/18/2010");
}

TEST_F(BIOSInformation, WithoutDateNumberTheDateIsNotSet) {
    Decode(Structure(0, 0x18).String(0x04, "QEV").String(0x05, "AB1234C").Text("03/18/2010"));
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "");
}

TEST_F(BIOSInformation, NumbersAreNoIndexes) {
    Decode(Structure(0, 0x18)
               .Byte(0x04, 3)
               .Byte(0x05, 1)
               .Byte(0x08, 2)
               .Text("first")
               .Text("second")
               .Text("third"));
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "second");
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "third");
}

TEST_F(BIOSInformation, MissingStringsReadAsEmpty) {
    Decode(Structure(0, 0x18).Byte(0x04, 1).Byte(0x05, 2).Byte(0x08, 3).Text("QEV"));
    EXPECT_STREQ(m_record.GetMachineBIOSName(), "");
    ExpectParts("", "", "");
    EXPECT_STREQ(m_record.GetMachineBIOSDate(), "");
}

// --- The next structure -------------------------------------------------------------------------

TEST_F(BIOSInformation, NextStructureFollowsTheStringSet) {
    const Structure structure = Structure(0, 0x18)
                                    .String(0x04, "QEV")
                                    .String(0x05, "-[AB1234CUS-1.07]-")
                                    .String(0x08, "03/18/2010")
                                    .Text("one more")
                                    .Text("and another");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(BIOSInformation, EmptySetEndsOneByteEarly) {
    EXPECT_EQ(Decode(Structure(0, 0x18)), 0x18 + 1);
}

TEST_F(BIOSInformation, LengthByteIsUnsigned) {
    const Structure structure =
        Structure(0, 0xF0).String(0x04, "QEV").String(0x05, "AB1234CUS-1.07");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
    ExpectParts("AB1234C", "US", "1.07");
}

// --- Long texts ---------------------------------------------------------------------------------

TEST_F(BIOSInformation, LongTextsAreTruncatedToTheirFields) {
    const std::string tail(200, 'v');
    Decode(
        Structure(0, 0x18).String(0x05, "AB1234CUS-" + tail).String(0x08, std::string(200, 'd')));
    EXPECT_EQ(m_record.GetMachineBIOSName(), "AB1234CUS-" + tail.substr(0, 117));
    ExpectParts("AB1234C", "US", tail.substr(0, 31).c_str());
    EXPECT_EQ(m_record.GetMachineBIOSDate(), std::string(31, 'd'));
}

TEST_F(BIOSInformation, HyphenBehindTheScratchFieldGivesNoVersion) {
    DecodeVersion(std::string(254, 'v') + "-");
    ExpectParts("vvvvvvv", "vv", std::string(31, 'v').c_str());
    DecodeVersion(std::string(255, 'w') + "-");
    ExpectParts("wwwwwww", "ww", "");
}

}  // namespace
