// The routines that the decoders share: stepping over strings and structures, bracketed codes.
#include <gtest/gtest.h>

#include <string>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kSkipTable = &SERVER_INFORMATION::SkipTable;
constexpr Decoder kSkipStrings = &SERVER_INFORMATION::SkipStrings;

std::ptrdiff_t Skip(Decoder routine, const Bytes& bytes, std::ptrdiff_t offset = 0) {
    SERVER_INFORMATION record;
    return Decode(record, routine, bytes, offset);
}

// --- SkipStrings --------------------------------------------------------------------------------

TEST(SkipStrings, StandsOnTheTerminatingNul) {
    EXPECT_EQ(Skip(kSkipStrings, {'a', 'b', 0, 'c', 0, 0, 'd', 0}), 5);
}

TEST(SkipStrings, StaysOnAnEmptyString) {
    EXPECT_EQ(Skip(kSkipStrings, {0, 'a', 0, 0}), 0);
}

TEST(SkipStrings, MayBeginInsideAString) {
    EXPECT_EQ(Skip(kSkipStrings, {'a', 'b', 0, 'c', 0, 0}, 1), 5);
}

TEST(SkipStrings, EightBitBytesAreText) {
    EXPECT_EQ(Skip(kSkipStrings, {0x80, 0xFF, 0, 0xE9, 0, 0}), 5);
}

// --- SkipTable ----------------------------------------------------------------------------------

TEST(SkipTable, StepsBehindTheStringSet) {
    const Structure structure = Structure(8, 0x09).Text("J1").Text("USB");
    EXPECT_EQ(Skip(kSkipTable, structure.Encode(0)), 0x09 + 3 + 4 + 1);
}

TEST(SkipTable, StepsOverBothNulsOfAnEmptySet) {
    EXPECT_EQ(Skip(kSkipTable, Structure(32, 0x0B).Encode(0)), 0x0B + 2);
}

TEST(SkipTable, LongestSupportedLengthIs127) {
    EXPECT_EQ(Skip(kSkipTable, Structure(32, 127).Encode(0)), 129);
}

TEST(SkipTable, LengthsOf128AndMoreLeadBackwards) {
    EXPECT_EQ(Skip(kSkipTable, {32, 0x80, 0, 0}), -128 + 2);
    EXPECT_EQ(Skip(kSkipTable, {32, 0xFF, 0, 0}), -1 + 2);
}

TEST(SkipTable, StringsAreLookedForWhereTheSignedLengthLeads) {
    const Bytes bytes = {'a', 0, 'b', 0, 0, 0, 0, 0, 32, 0xF8, 0, 0};
    EXPECT_EQ(Skip(kSkipTable, bytes, 8), 5);
}

TEST(SkipTable, LengthZeroTakesTheTypeForText) {
    EXPECT_EQ(Skip(kSkipTable, {32, 0, 0, 0}), 3);
}

TEST(SkipTable, DecodesNothing) {
    SERVER_INFORMATION record;
    Decode(record, kSkipTable, Structure(3, 0x0D).Byte(0x05, 0x17));
    EXPECT_EQ(record.GetNumSystemEnclosures(), 0);
}

// --- ParseString --------------------------------------------------------------------------------

TEST(ParseString, FindsABracketedCode) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.ParseString("-[771200X]-"));
    EXPECT_TRUE(record.ParseString("Arlo 2 -[771200X]- and more"));
    EXPECT_TRUE(record.ParseString("-[]-"));
}

TEST(ParseString, TextWithoutBothBracketsHasNoCode) {
    SERVER_INFORMATION record;
    EXPECT_FALSE(record.ParseString(""));
    EXPECT_FALSE(record.ParseString("Arlo 2"));
    EXPECT_FALSE(record.ParseString("Arlo 2 -[771200X"));
    EXPECT_FALSE(record.ParseString("771200X]-"));
    EXPECT_FALSE(record.ParseString("[771200X]"));
}

TEST(ParseString, ClosingBracketMustFollowTheOpeningOne) {
    SERVER_INFORMATION record;
    EXPECT_FALSE(record.ParseString("]- -[771200X"));
    EXPECT_FALSE(record.ParseString("]-["));
}

/// The code that an OEM string gives, seen through the field that it goes to.
std::string CodeOf(const std::string& text) {
    SERVER_INFORMATION record;
    Decode(record, &SERVER_INFORMATION::FindTable11,
           Structure(11, 0x05).Text("Diagnostics" + text));
    return record.GetROMDiagnosticsBuild();
}

TEST(ParseString, CodeReachesFromTheFirstOpeningToTheFirstClosingBracket) {
    EXPECT_EQ(CodeOf("-[XYZ10AUS]-"), "XYZ10AUS");
    EXPECT_EQ(CodeOf(" -[A]- -[B]-"), "A");
    EXPECT_EQ(CodeOf(" -[A-[B]-"), "A-[B");
    EXPECT_EQ(CodeOf(" -[A]B-]C]-"), "A]B-]C");
}

TEST(ParseString, TextBehindTheOpeningBracketIsTruncatedToTheScratchField) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.ParseString(("-[" + std::string(253, 'A') + "]-").c_str()));
    EXPECT_FALSE(record.ParseString(("-[" + std::string(254, 'A') + "]-").c_str()));
    EXPECT_FALSE(record.ParseString(("-[" + std::string(70000, 'A') + "]-").c_str()));
}

TEST(ParseString, TextBeforeTheOpeningBracketMayBeOfAnyLength) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.ParseString((std::string(70000, 'A') + "-[B]-").c_str()));
}

}  // namespace
