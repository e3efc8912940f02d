// Type 11: OEM strings, which carry build levels under three labels.
#include <gtest/gtest.h>

#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable11;

class OEMStrings : public testing::Test {
  protected:
    std::ptrdiff_t Decode(const Structure& structure) {
        return ::Decode(m_record, kDecoder, structure);
    }
    void DecodeTexts(std::initializer_list<const char*> texts) {
        Structure structure(11, 0x05);
        for (const char* text : texts) {
            structure.Text(text);
        }
        Decode(structure.Byte(0x04, static_cast<uint8_t>(texts.size())));
    }
    void ExpectBuilds(const char* diagnostics, const char* tesk, const char* koru) const {
        EXPECT_STREQ(m_record.GetROMDiagnosticsBuild(), diagnostics);
        EXPECT_STREQ(m_record.GetTESKBuild(), tesk);
        EXPECT_STREQ(m_record.GetKORUBuild(), koru);
    }

    SERVER_INFORMATION m_record;
};

TEST_F(OEMStrings, DiagnosticsStringSetsTheROMDiagnosticsBuild) {
    DecodeTexts({"Diagnostics -[XYZ10AUS]-"});
    ExpectBuilds("XYZ10AUS", "", "");
}

TEST_F(OEMStrings, TeskControllerStringSetsTheTESKBuild) {
    DecodeTexts({"QEV Tesk Controller -[TKB037A]-"});
    ExpectBuilds("", "TKB037A", "");
}

TEST_F(OEMStrings, KoruAdapterStringSetsTheKORUBuild) {
    DecodeTexts({"QEV Koru Adapter -[KRU026B]-"});
    ExpectBuilds("", "", "KRU026B");
}

TEST_F(OEMStrings, EveryStringOfTheSetIsLookedAt) {
    DecodeTexts({"first", "Koru Adapter -[K]-", "another", "Tesk Controller -[T]-",
                 "QEV Diagnostics -[D]-"});
    ExpectBuilds("D", "T", "K");
}

TEST_F(OEMStrings, LabelMayStandBehindTheCode) {
    DecodeTexts({"-[XYZ10AUS]- Diagnostics"});
    ExpectBuilds("XYZ10AUS", "", "");
}

TEST_F(OEMStrings, StringsWithoutLabelAreIgnored) {
    DecodeTexts({"-[XYZ10AUS]-", "diagnostics -[A]-", "Tesk -[B]-", "Koru  Adapter -[C]-"});
    ExpectBuilds("", "", "");
}

TEST_F(OEMStrings, LabelWithoutCodeSetsNothing) {
    DecodeTexts({"Diagnostics XYZ10AUS", "Tesk Controller -[TKB037A", "Koru Adapter KRU026B]-"});
    ExpectBuilds("", "", "");
}

TEST_F(OEMStrings, LabelWithoutCodeLeavesAnEarlierBuild) {
    DecodeTexts({"Diagnostics -[XYZ10AUS]-", "Diagnostics"});
    ExpectBuilds("XYZ10AUS", "", "");
}

TEST_F(OEMStrings, FirstMatchingLabelWins) {
    DecodeTexts({"Koru Adapter Tesk Controller Diagnostics -[D]-"});
    ExpectBuilds("D", "", "");
    DecodeTexts({"Koru Adapter Tesk Controller -[T]-"});
    ExpectBuilds("D", "T", "");
}

TEST_F(OEMStrings, LaterStringWithTheSameLabelOverwrites) {
    DecodeTexts({"Diagnostics -[XYZ10AUS]-", "Diagnostics -[NEW]-"});
    ExpectBuilds("NEW", "", "");
}

TEST_F(OEMStrings, EmptyCodeEmptiesTheBuild) {
    DecodeTexts({"Diagnostics -[XYZ10AUS]-", "Diagnostics -[]-"});
    ExpectBuilds("", "", "");
}

TEST_F(OEMStrings, CountIsNotAsked) {
    for (const uint8_t count : Bytes{0, 1, 255}) {
        SERVER_INFORMATION record;
        const Structure structure = Structure(11, 0x05)
                                        .Byte(0x04, count)
                                        .Text("first")
                                        .Text("Diagnostics -[D]-")
                                        .Text("Tesk Controller -[T]-");
        EXPECT_EQ(::Decode(record, kDecoder, structure), SizeOf(structure));
        EXPECT_STREQ(record.GetROMDiagnosticsBuild(), "D") << int{count};
        EXPECT_STREQ(record.GetTESKBuild(), "T") << int{count};
    }
}

TEST_F(OEMStrings, LongCodesAreTruncatedToTheirFields) {
    const std::string code(32, 'x');
    DecodeTexts({("Diagnostics -[" + code + "]-").c_str(),
                 ("Tesk Controller -[" + code + "]-").c_str(),
                 ("Koru Adapter -[" + code + "]-").c_str()});
    const std::string cut(31, 'x');
    ExpectBuilds(cut.c_str(), cut.c_str(), cut.c_str());
}

TEST_F(OEMStrings, EightBitBytesAreKept) {
    DecodeTexts({"\xFF\x80 Diagnostics -[\xE9\xFF]-"});
    ExpectBuilds("\xE9\xFF", "", "");
}

// --- The next structure -------------------------------------------------------------------------

TEST_F(OEMStrings, NextStructureFollowsTheTerminatingEmptyString) {
    const Structure structure = Structure(11, 0x05).Text("one").Text("two").Text("three");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(OEMStrings, EmptySetEndsOneByteEarly) {
    EXPECT_EQ(Decode(Structure(11, 0x05)), 0x05 + 1);
}

TEST_F(OEMStrings, LengthByteIsUnsigned) {
    const Structure structure = Structure(11, 0x80).Text("Diagnostics -[D]-");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
    ExpectBuilds("D", "", "");
}

}  // namespace
