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

TEST(CStringCase, CopiesAreConvertedWhateverTheLock) {
    CString string("aBc");
    EXPECT_STREQ(string.Upper().GetBuffer(), "ABC");
    EXPECT_STREQ(string.Lower().GetBuffer(), "abc");
    EXPECT_STREQ(string.GetBuffer(), "aBc");
    string.GetBuffer(5);
    EXPECT_STREQ(string.Upper().GetBuffer(), "ABC");
}

TEST(CStringCase, EightBitBytesStay) {
    EXPECT_STREQ(CString("\xE4\xFF").Upper().GetBuffer(), "\xE4\xFF");
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

TEST(CStringParts, SubstringTakesALengthToo) {
    const CString string("hello");
    EXPECT_STREQ(string.Substring(1, 3).GetBuffer(), "ell");
    EXPECT_STREQ(string.Substring(3, 0).GetBuffer(), "lo");
    EXPECT_STREQ(string.Substring(5, 1).GetBuffer(), "");
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
