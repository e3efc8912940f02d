// CString: construction, and numbers as text.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "util/CString.h"

namespace {

// --- Construction --------------------------------------------------------------------------------

TEST(CStringConstruction, DefaultIsEmptyWithABuffer) {
    CString string;
    EXPECT_EQ(string.GetLength(), 0U);
    EXPECT_TRUE(string.IsEmpty());
    ASSERT_NE(string.GetBuffer(), nullptr);
    EXPECT_STREQ(string.GetBuffer(), "");
}

TEST(CStringConstruction, NullAndEmptyTextGiveAnEmptyString) {
    CString fromNull(static_cast<const char*>(nullptr));
    EXPECT_EQ(fromNull.GetLength(), 0U);
    ASSERT_NE(fromNull.GetBuffer(), nullptr);
    EXPECT_STREQ(CString("").GetBuffer(), "");
}

// A string without a buffer would compare as equal to every text.
TEST(CStringConstruction, EveryEmptyStringHasABufferFromTheStart) {
    EXPECT_LT(CString().Compare("a"), 0);
    EXPECT_LT(CString(static_cast<const char*>(nullptr)).Compare("a"), 0);
    EXPECT_LT(CString("").Compare("a"), 0);
    EXPECT_LT(CString('x', 0).Compare("a"), 0);
    EXPECT_LT(CString(CString()).Compare("a"), 0);
}

/// A string from `arguments` in memory that held something else: its text, and whether it is the
/// caller's to change.
template <typename... Arguments>
std::string MadeInUsedMemory(Arguments... arguments) {
    alignas(CString) unsigned char memory[sizeof(CString)];
    std::memset(memory, 0xFF, sizeof memory);
    auto* const string = new (memory) CString(arguments...);
    std::string text = string->GetBuffer();
    *string += "+";
    text += string->GetBuffer();
    text += std::to_string(string->GetNumberTokens(","));
    string->~CString();
    return text;
}

TEST(CStringConstruction, NeedsNoCleanMemory) {
    EXPECT_EQ(MadeInUsedMemory(), "+1");
    EXPECT_EQ(MadeInUsedMemory("text"), "texttext+1");
    EXPECT_EQ(MadeInUsedMemory(CString("text")), "texttext+1");
    EXPECT_EQ(MadeInUsedMemory('x', 2U), "xxxx+1");
    EXPECT_EQ(MadeInUsedMemory(short{1}), "11+1");
    EXPECT_EQ(MadeInUsedMemory(static_cast<unsigned short>(2)), "22+1");
    EXPECT_EQ(MadeInUsedMemory(3), "33+1");
    EXPECT_EQ(MadeInUsedMemory(4U), "44+1");
    EXPECT_EQ(MadeInUsedMemory(5L), "55+1");
    EXPECT_EQ(MadeInUsedMemory(6UL), "66+1");
    EXPECT_EQ(MadeInUsedMemory(1.5F), "1.51.5+1");
    EXPECT_EQ(MadeInUsedMemory(2.5), "2.52.5+1");
}

TEST(CStringConstruction, RepeatedCharacter) {
    EXPECT_STREQ(CString('x', 0).GetBuffer(), "");
    EXPECT_STREQ(CString('x', 1).GetBuffer(), "x");
    EXPECT_STREQ(CString('x', 2).GetBuffer(), "xx");
    EXPECT_STREQ(CString('x', 3).GetBuffer(), "xxx");
    EXPECT_STREQ(CString('\0', 1).GetBuffer(), "");
}

TEST(CStringConstruction, CopiesTheTextAndSharesNoBuffer) {
    CString original("abc");
    CString copy(original);
    EXPECT_STREQ(copy.GetBuffer(), "abc");
    EXPECT_NE(copy.GetBuffer(), original.GetBuffer());
}

TEST(CStringConstruction, CopyOfALockedStringIsUnlocked) {
    CString locked("abc");
    locked.GetBuffer(10);
    CString copy(locked);
    copy = "changed";
    EXPECT_STREQ(copy.GetBuffer(), "changed");
}

TEST(CStringConstruction, CopyForgetsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
    EXPECT_EQ(CString(list).GetNumberTokens(","), 0);
}

TEST(CStringConstruction, IntegersInPlainDecimal) {
    EXPECT_STREQ(CString(short{-32768}).GetBuffer(), "-32768");
    EXPECT_STREQ(CString(static_cast<unsigned short>(65535)).GetBuffer(), "65535");
    EXPECT_STREQ(CString(-5).GetBuffer(), "-5");
    EXPECT_STREQ(CString(INT_MIN).GetBuffer(), "-2147483648");
    EXPECT_STREQ(CString(4294967295U).GetBuffer(), "4294967295");
    EXPECT_STREQ(CString(-7L).GetBuffer(), "-7");
    EXPECT_STREQ(CString(4294967295UL).GetBuffer(), "4294967295");
    EXPECT_STREQ(CString(0).GetBuffer(), "0");
}

TEST(CStringConstruction, LongIntegersBeyond32Bits) {
    EXPECT_STREQ(CString(9223372036854775807L).GetBuffer(), "9223372036854775807");
    EXPECT_STREQ(CString(-9223372036854775807L - 1).GetBuffer(), "-9223372036854775808");
    EXPECT_STREQ(CString(4294967296L).GetBuffer(), "4294967296");
    EXPECT_STREQ(CString(18446744073709551615UL).GetBuffer(), "18446744073709551615");
}

TEST(CStringConstruction, FloatingPointWithSixSignificantDigits) {
    EXPECT_STREQ(CString(0.1F).GetBuffer(), "0.1");
    EXPECT_STREQ(CString(0.5).GetBuffer(), "0.5");
    EXPECT_STREQ(CString(100.0).GetBuffer(), "100");
    EXPECT_STREQ(CString(123456.0).GetBuffer(), "123456");
    EXPECT_STREQ(CString(1234567.0).GetBuffer(), "1.23457e+06");
    EXPECT_STREQ(CString(1e6).GetBuffer(), "1e+06");
    EXPECT_STREQ(CString(0.0001).GetBuffer(), "0.0001");
    EXPECT_STREQ(CString(-1.17549e-308).GetBuffer(), "-1.17549e-308");
}

// --- Numbers -------------------------------------------------------------------------------------

TEST(CStringNumber, ToStringReplacesTheText) {
    CString string("old");
    string.ToString(42);
    EXPECT_STREQ(string.GetBuffer(), "42");
    string.ToString(static_cast<unsigned short>(7));
    EXPECT_STREQ(string.GetBuffer(), "7");
    string.ToString(2.5F);
    EXPECT_STREQ(string.GetBuffer(), "2.5");
}

TEST(CStringNumber, ConverterTakesTheFirstCharactersAndFreesTheText) {
    CString string;
    char* text = CString::CreateCharString(5);
    std::snprintf(text, 6, "abcde");
    string.Converter(text, 3);
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringNumber, ConverterTakesASingleCharacter) {
    char* text = CString::CreateCharString(1);
    std::strcpy(text, "7");
    CString string("before");
    string.Converter(text, 1);
    EXPECT_STREQ(string.GetBuffer(), "7");
}

TEST(CStringNumber, ConverterOfNothingEmptiesAndFreesNothing) {
    CString string("old");
    char text[] = "abc";
    string.Converter(text, 0);
    EXPECT_STREQ(string.GetBuffer(), "");
    string = "old";
    string.Converter(text, -1);
    EXPECT_STREQ(string.GetBuffer(), "");
}

TEST(CStringNumber, ToIntReadsTheLeadingNumber) {
    EXPECT_EQ(CString(" 42abc").ToInt(), 42);
    EXPECT_EQ(CString("-7").ToInt(), -7);
    EXPECT_EQ(CString("+7").ToInt(), 7);
    EXPECT_EQ(CString("abc").ToInt(), 0);
    EXPECT_EQ(CString("").ToInt(), 0);
}

TEST(CStringNumber, ToIntIsDecimalWhateverThePrefix) {
    EXPECT_EQ(CString("010").ToInt(), 10);
    EXPECT_EQ(CString("0x10").ToInt(), 0);
    EXPECT_EQ(CString("-012").ToInt(), -12);
}

TEST(CStringNumber, ToIntSkipsBlanksOfAnyKindBeforeTheNumberAlone) {
    EXPECT_EQ(CString("\t\n 42").ToInt(), 42);
    EXPECT_EQ(CString("4 2").ToInt(), 4);
    EXPECT_EQ(CString("- 7").ToInt(), 0);
}

}  // namespace
