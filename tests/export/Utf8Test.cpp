// Which bytes are UTF-8, and what becomes of the others.
#include <gtest/gtest.h>

#include "export/Utf8.h"

namespace {

using report::IsUtf8;
using report::Printable;
using report::ToUtf8;

TEST(Utf8, SequencesOfEveryLengthAreUtf8) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("plain \x01\x7F"));
    EXPECT_TRUE(IsUtf8("\xC2\x80\xDF\xBF"));
    EXPECT_TRUE(IsUtf8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"));
    EXPECT_TRUE(IsUtf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
}

TEST(Utf8, LongerSequencesThanNeededAreNoUtf8) {
    EXPECT_FALSE(IsUtf8("\xC0\x80"));
    EXPECT_FALSE(IsUtf8("\xC1\xBF"));
    EXPECT_FALSE(IsUtf8("\xE0\x9F\xBF"));
    EXPECT_FALSE(IsUtf8("\xF0\x8F\xBF\xBF"));
}

TEST(Utf8, NumbersThatAreNoCharactersAreNoUtf8) {
    EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(IsUtf8("\xED\xBF\xBF"));
    EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(IsUtf8("\xF8\x88\x80\x80\x80"));
    EXPECT_FALSE(IsUtf8("\xFF"));
}

TEST(Utf8, CutSequencesAreNoUtf8) {
    EXPECT_FALSE(IsUtf8("a\xC3"));
    EXPECT_FALSE(IsUtf8("\xE2\x82"));
    EXPECT_FALSE(IsUtf8("\xE2\x82z"));
    EXPECT_FALSE(IsUtf8("\x80"));
}

TEST(Utf8, TextThatIsUtf8StaysAsItIs) {
    EXPECT_EQ(ToUtf8("\xE2\x82\xAC 5"), "\xE2\x82\xAC 5");
}

TEST(Utf8, EveryByteOfOtherTextIsALatin1Character) {
    EXPECT_EQ(ToUtf8("\x41\x80\xA9\xFF"), "\x41\xC2\x80\xC2\xA9\xC3\xBF");
    EXPECT_EQ(ToUtf8("\xC3\xA9\xE9"), "\xC3\x83\xC2\xA9\xC3\xA9");
}

TEST(Utf8, TextToBePrintedHasNoControlCharacters) {
    EXPECT_EQ(Printable("web\n1\x1B[2J\x7F\t.ini"), "web?1?[2J??.ini");
    EXPECT_EQ(Printable("\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0"), "???\xC2\xA0");
}

TEST(Utf8, TextToBePrintedKeepsItsCharacters) {
    EXPECT_EQ(Printable(""), "");
    EXPECT_EQ(Printable("caf\xC3\xA9 \xE2\x82\xAC.ini"), "caf\xC3\xA9 \xE2\x82\xAC.ini");
    EXPECT_EQ(Printable("a\xC3"), "a?");
    EXPECT_EQ(Printable("\xFF\xFEz"), "??z");
}

}  // namespace
