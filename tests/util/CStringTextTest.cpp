// CString: searching, trimming, case and parts of the text.
#include <gtest/gtest.h>

#include "util/CString.h"

namespace {

// --- Searching -----------------------------------------------------------------------------------

TEST(CStringFind, GivesThePositionOfTheFirstOccurrence) {
    EXPECT_EQ(CString("abcabc").Find("bc"), 1);
    EXPECT_EQ(CString("abcabc").Find("x"), -1);
    EXPECT_EQ(CString("").Find("a"), -1);
    EXPECT_EQ(CString("abc").Find(""), -1);
}

TEST(CStringFind, CountsOccurrencesFromOne) {
    EXPECT_EQ(CString("abcabc").Find("bc", 1), 1);
    EXPECT_EQ(CString("abcabc").Find("bc", 2), 4);
    EXPECT_EQ(CString("abcabc").Find("bc", 3), -1);
}

TEST(CStringFind, OfNothingOrInNothingFindsNoOccurrence) {
    EXPECT_EQ(CString("").Find("a", 0), -1);
    EXPECT_EQ(CString("").Find("a", 1), -1);
    EXPECT_EQ(CString("abc").Find("", 0), -1);
    EXPECT_EQ(CString("abc").Find("", 1), -1);
    EXPECT_EQ(CString("").Find("", 0), -1);
    EXPECT_EQ(CString("abc").ReverseFind(""), -1);
}

TEST(CStringFind, LooksAtTheCase) {
    EXPECT_EQ(CString("abcABC").Find("ABC"), 3);
    EXPECT_EQ(CString("ABCabc").Find("bc", 1), 4);
    EXPECT_EQ(CString("bcBC").Find("bc", 0), 0);
    EXPECT_EQ(CString("abc").Find("B"), -1);
    EXPECT_EQ(CString("bcBC").ReverseFind("bc"), 0);
    EXPECT_FALSE(CString("abc").IsSubstring("B"));
    EXPECT_EQ(CString("aA").GetNumberOccurances("a"), 1);
}

TEST(CStringFind, CountsOverlappingOccurrences) {
    EXPECT_EQ(CString("aaa").Find("aa", 1), 0);
    EXPECT_EQ(CString("aaa").Find("aa", 2), 1);
    EXPECT_EQ(CString("aaaa").Find("aa", 3), 2);
}

TEST(CStringFind, OccurrenceZeroIsTheLast) {
    EXPECT_EQ(CString("abcabc").Find("bc", 0), 4);
    EXPECT_EQ(CString("aaa").Find("aa", 0), 1);
    EXPECT_EQ(CString("abc").Find("x", 0), -1);
    EXPECT_EQ(CString("abcabc").ReverseFind("bc"), 4);
}

TEST(CStringFind, IsSubstring) {
    EXPECT_TRUE(CString("abc").IsSubstring("ab"));
    EXPECT_TRUE(CString("abc").IsSubstring("bc"));
    EXPECT_FALSE(CString("abc").IsSubstring("cb"));
    EXPECT_FALSE(CString("abc").IsSubstring(""));
}

TEST(CStringFind, StartsAndEndsWith) {
    EXPECT_TRUE(CString("ab").StartsWith("ab"));
    EXPECT_TRUE(CString("abc").StartsWith("ab"));
    EXPECT_FALSE(CString("ab").StartsWith("abc"));
    EXPECT_FALSE(CString("ab").StartsWith(""));
    EXPECT_FALSE(CString("").StartsWith("a"));
    EXPECT_FALSE(CString("ab").StartsWith("AB"));
    EXPECT_TRUE(CString("abc").EndsWith("bc"));
    EXPECT_FALSE(CString("ab").EndsWith(""));
    EXPECT_FALSE(CString("ab").EndsWith("abab"));
    EXPECT_FALSE(CString("").EndsWith("a"));
}

TEST(CStringFind, SuffixIsTheEndOfTheText) {
    EXPECT_TRUE(CString("ab").EndsWith("ab"));
    EXPECT_FALSE(CString("ab").EndsWith("cd"));
    EXPECT_FALSE(CString("abc").EndsWith("ab"));
    EXPECT_FALSE(CString("abc").EndsWith("xc"));
    EXPECT_TRUE(CString("abab").EndsWith("ab"));
}

TEST(CStringFind, SuffixLooksAtTheCase) {
    EXPECT_FALSE(CString("abc").EndsWith("BC"));
    EXPECT_FALSE(CString("ABC").EndsWith("bc"));
}

TEST(CStringFind, PrefixIsTheBeginningOfTheText) {
    EXPECT_FALSE(CString("ab").StartsWith("cd"));
    EXPECT_FALSE(CString("abc").StartsWith("bc"));
    EXPECT_FALSE(CString("abc").StartsWith("ax"));
}

TEST(CStringFind, OccurrencesAreCountedWithoutOverlap) {
    EXPECT_EQ(CString("aaaa").GetNumberOccurances("aa"), 2);
    EXPECT_EQ(CString("a,b,c").GetNumberOccurances(","), 2);
    EXPECT_EQ(CString("abc").GetNumberOccurances("x"), 0);
    EXPECT_EQ(CString("abc").GetNumberOccurances(""), 0);
}

// --- Trimming ------------------------------------------------------------------------------------

TEST(CStringTrim, TakesCharactersOfTheSetFromTheEnds) {
    CString left(" \t x ");
    EXPECT_STREQ(left.TrimLeft(" \t"), "x ");
    EXPECT_STREQ(left.GetBuffer(), "x ");
    CString right(" x \t ");
    EXPECT_STREQ(right.TrimRight(" \t"), " x");
    CString both("yxaxy");
    EXPECT_STREQ(both.Trim("xy"), "a");
    EXPECT_STREQ(both.GetBuffer(), "a");
}

TEST(CStringTrim, StringOfNothingElseBecomesEmpty) {
    EXPECT_STREQ(CString("xyx").TrimLeft("xy"), "");
    EXPECT_STREQ(CString("xyx").TrimRight("xy"), "");
    EXPECT_STREQ(CString("xyx").Trim("xy"), "");
}

TEST(CStringTrim, EmptySetChangesNothing) {
    EXPECT_STREQ(CString(" a ").Trim(""), " a ");
    EXPECT_STREQ(CString("").Trim(" "), "");
}

TEST(CStringTrim, LockStopsTheLeftSideAlone) {
    CString string(" x ");
    string.GetBuffer(5);
    EXPECT_STREQ(string.TrimLeft(" "), "");
    EXPECT_STREQ(string.GetBuffer(), " x ");
    EXPECT_STREQ(string.TrimRight(" "), " x");
    EXPECT_STREQ(string.GetBuffer(), " x");
}

TEST(CStringTrim, ReturnsTheBufferOfTheString) {
    CString string("  abc  ");
    const char* trimmed = string.TrimLeft(" ");
    EXPECT_EQ(trimmed, string.GetBuffer());
    trimmed = string.TrimRight(" ");
    EXPECT_EQ(trimmed, string.GetBuffer());
    trimmed = string.Trim("a");
    EXPECT_EQ(trimmed, string.GetBuffer());
    EXPECT_STREQ(trimmed, "bc");
}

TEST(CStringTrim, LockedStringOfNothingElseStays) {
    CString string("  ");
    string.GetBuffer(5);
    EXPECT_STREQ(string.TrimRight(" "), "  ");
    EXPECT_STREQ(string.GetBuffer(), "  ");
}

TEST(CStringTrim, BothSidesOfALockedStringLoseTheRightOneAlone) {
    CString string(" x ");
    string.GetBuffer(5);
    EXPECT_STREQ(string.Trim(" "), " x");
    EXPECT_STREQ(string.GetBuffer(), " x");
}

TEST(CStringTrim, LeftSideOfAnEmptyTextClearsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.TrimLeft(" ");
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringTrim, RightSideOfAnEmptyTextClearsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.TrimRight(" ");
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringTrim, LockedEmptyTextKeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.GetBuffer(5);
    list.TrimLeft(" ");
    list.TrimRight(" ");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
}

// --- Case ----------------------------------------------------------------------------------------

TEST(CStringCase, ConvertsTheStringAndReturnsACopy) {
    CString string("aBc1");
    EXPECT_STREQ(string.ToUpper().GetBuffer(), "ABC1");
    EXPECT_STREQ(string.GetBuffer(), "ABC1");
    EXPECT_STREQ(string.ToLower().GetBuffer(), "abc1");
    EXPECT_STREQ(string.GetBuffer(), "abc1");
}

TEST(CStringCase, ConvertsOneCharacter) {
    CString string("abc");
    EXPECT_STREQ(string.ToUpper(1).GetBuffer(), "aBc");
    EXPECT_STREQ(string.GetBuffer(), "aBc");
    EXPECT_STREQ(string.ToLower(1).GetBuffer(), "abc");
}

TEST(CStringCase, PastTheEndChangesNothingAndReturnsNothing) {
    CString string("abc");
    EXPECT_STREQ(string.ToUpper(3).GetBuffer(), "");
    EXPECT_STREQ(string.ToLower(99).GetBuffer(), "");
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringCase, LockedStringStaysAndReturnsNothing) {
    CString string("abc");
    string.GetBuffer(5);
    EXPECT_STREQ(string.ToUpper().GetBuffer(), "");
    EXPECT_STREQ(string.ToUpper(0).GetBuffer(), "");
    EXPECT_STREQ(string.ToLower().GetBuffer(), "");
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringCase, CharacterOfALockedStringStays) {
    CString string("aBc");
    string.GetBuffer(5);
    EXPECT_STREQ(string.ToUpper(0).GetBuffer(), "");
    EXPECT_STREQ(string.ToLower(1).GetBuffer(), "");
    EXPECT_STREQ(string.GetBuffer(), "aBc");
}

TEST(CStringCase, CopiesAreConvertedWhateverTheLock) {
    CString string("aBc");
    EXPECT_STREQ(string.Upper().GetBuffer(), "ABC");
    EXPECT_STREQ(string.Lower().GetBuffer(), "abc");
    EXPECT_STREQ(string.GetBuffer(), "aBc");
    string.GetBuffer(5);
    EXPECT_STREQ(string.Upper().GetBuffer(), "ABC");
    EXPECT_STREQ(string.Lower().GetBuffer(), "abc");
    EXPECT_STREQ(string.GetBuffer(), "aBc");
}

TEST(CStringCase, EightBitBytesStay) {
    EXPECT_STREQ(CString("\xE4\xFF").Upper().GetBuffer(), "\xE4\xFF");
    EXPECT_STREQ(CString("\xC4\xDF").Lower().GetBuffer(), "\xC4\xDF");
}

TEST(CStringCase, NeighboursOfTheLettersStay) {
    EXPECT_STREQ(CString("`az{").Upper().GetBuffer(), "`AZ{");
    EXPECT_STREQ(CString("@AZ[").Lower().GetBuffer(), "@az[");
}

// --- Parts ---------------------------------------------------------------------------------------

TEST(CStringParts, Left) {
    const CString string("hello");
    EXPECT_STREQ(string.Left(2).GetBuffer(), "he");
    EXPECT_STREQ(string.Left(0).GetBuffer(), "");
    EXPECT_STREQ(string.Left(9).GetBuffer(), "hello");
    EXPECT_STREQ(CString("").Left(1).GetBuffer(), "");
}

TEST(CStringParts, LeftOfANegativeCountIsTheWholeText) {
    EXPECT_STREQ(CString("hello").Left(-1).GetBuffer(), "hello");
}

TEST(CStringParts, Mid) {
    const CString string("hello");
    EXPECT_STREQ(string.Mid(1, 3).GetBuffer(), "ell");
    EXPECT_STREQ(string.Mid(-4, 2).GetBuffer(), "he");
    EXPECT_STREQ(string.Mid(5, 1).GetBuffer(), "");
    EXPECT_STREQ(string.Mid(3, 0).GetBuffer(), "lo");
    EXPECT_STREQ(string.Mid(3, 99).GetBuffer(), "lo");
}

TEST(CStringParts, MidBehindTheEndIsEmpty) {
    const CString string("hello");
    EXPECT_STREQ(string.Mid(9, 0).GetBuffer(), "");
    EXPECT_STREQ(string.Mid(6, 2).GetBuffer(), "");
    EXPECT_STREQ(string.Mid(2147483647, 0).GetBuffer(), "");
    EXPECT_STREQ(CString("").Mid(0, 0).GetBuffer(), "");
}

TEST(CStringParts, MidOfANegativeStartBeginsAtTheFront) {
    const CString string("hello");
    EXPECT_STREQ(string.Mid(-4, 0).GetBuffer(), "hello");
    EXPECT_STREQ(string.Mid(-2147483647 - 1, 1).GetBuffer(), "h");
}

TEST(CStringParts, MidOfTheLargestCountGoesToTheEnd) {
    EXPECT_STREQ(CString("hello").Mid(1, 4294967295U).GetBuffer(), "ello");
}

TEST(CStringParts, SubstringTakesALengthToo) {
    const CString string("hello");
    EXPECT_STREQ(string.Substring(1, 3).GetBuffer(), "ell");
    EXPECT_STREQ(string.Substring(3, 0).GetBuffer(), "lo");
    EXPECT_STREQ(string.Substring(5, 1).GetBuffer(), "");
}

TEST(CStringParts, SubstringBehindTheEndIsEmptyHoweverLargeTheStart) {
    const CString string("hello");
    EXPECT_STREQ(string.Substring(4294967295U, 2).GetBuffer(), "");
    EXPECT_STREQ(string.Substring(2147483648U, 0).GetBuffer(), "");
    EXPECT_STREQ(string.Substring(6, 0).GetBuffer(), "");
}

TEST(CStringParts, Right) {
    const CString string("hello");
    EXPECT_STREQ(string.Right(3).GetBuffer(), "llo");
    EXPECT_STREQ(string.Right(0).GetBuffer(), "");
    EXPECT_STREQ(string.Right(9).GetBuffer(), "hello");
}

TEST(CStringParts, RemoveSubstringTakesTheFirstOccurrenceOut) {
    CString string("a-b-c");
    EXPECT_TRUE(string.RemoveSubstring("-"));
    EXPECT_STREQ(string.GetBuffer(), "ab-c");
    EXPECT_TRUE(string.RemoveSubstring("ab"));
    EXPECT_STREQ(string.GetBuffer(), "-c");
    EXPECT_FALSE(string.RemoveSubstring("x"));
    EXPECT_FALSE(string.RemoveSubstring(""));
    EXPECT_STREQ(string.GetBuffer(), "-c");
}

}  // namespace
