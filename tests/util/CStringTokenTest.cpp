// CString: the text as a list of tokens.
#include <gtest/gtest.h>

#include <string>

#include "util/CString.h"

namespace {

CString List(const char* text) {
    return text;
}

// --- Reading tokens ------------------------------------------------------------------------------

TEST(CStringTokens, TextIsTrimmedAndTokensAreNot) {
    const CString list(" a,b ,c ");
    EXPECT_EQ(list.GetNumberTokens(","), 3);
    EXPECT_STREQ(list.GetToken(0, ",").GetBuffer(), "a");
    EXPECT_STREQ(list.GetToken(1, ",").GetBuffer(), "b ");
    EXPECT_STREQ(list.GetToken(2, ",").GetBuffer(), "c");
    EXPECT_STREQ(list.GetToken(3, ",").GetBuffer(), "");
}

TEST(CStringTokens, AdjacentDelimitersYieldEmptyTokens) {
    const CString list("a,,b");
    EXPECT_EQ(list.GetNumberTokens(","), 3);
    EXPECT_STREQ(list.GetToken(1, ",").GetBuffer(), "");
    EXPECT_STREQ(list.GetToken(2, ",").GetBuffer(), "b");
    EXPECT_STREQ(List(",a").GetToken(0, ",").GetBuffer(), "");
}

TEST(CStringTokens, EmptyDelimiterYieldsNothing) {
    EXPECT_STREQ(List("a,b").GetToken(0, "").GetBuffer(), "");
    EXPECT_EQ(List("a,b").GetNumberTokens(""), 0);
    EXPECT_EQ(List("a").FindToken("a", ""), -1);
}

TEST(CStringTokens, TextWithoutDelimiterIsOneToken) {
    EXPECT_EQ(List("abc").GetNumberTokens(","), 1);
    EXPECT_STREQ(List("abc").GetToken(0, ",").GetBuffer(), "abc");
    EXPECT_STREQ(List("abc").GetToken(1, ",").GetBuffer(), "");
}

TEST(CStringTokens, LongDelimitersCount) {
    EXPECT_EQ(List("a::b::c").GetNumberTokens("::"), 3);
    EXPECT_STREQ(List("a::b::c").GetToken(1, "::").GetBuffer(), "b");
}

TEST(CStringTokens, TokensCountOverlappingDelimitersAndTheNumberDoesNot) {
    // Occurrences of "aa" in "xaaay" start at 1 and at 2.
    EXPECT_EQ(List("xaaay").GetNumberTokens("aa"), 2);
    EXPECT_STREQ(List("xaaay").GetToken(1, "aa").GetBuffer(), "ay");
    EXPECT_STREQ(List("xaaay").GetToken(2, "aa").GetBuffer(), "y");
}

TEST(CStringTokens, EmptyTextHasNone) {
    EXPECT_EQ(List("").GetNumberTokens(","), 0);
    EXPECT_STREQ(List("").GetToken(0, ",").GetBuffer(), "");
    EXPECT_STREQ(List(" \t\n").GetToken(0, ",").GetBuffer(), "");
}

TEST(CStringTokens, NumberCountsTheTextWithItsBlanks) {
    EXPECT_EQ(List(" \t\n").GetNumberTokens(","), 1);
    EXPECT_EQ(List(" a b ").GetNumberTokens(" "), 4);
    EXPECT_STREQ(List(" a b ").GetToken(1, " ").GetBuffer(), "b");
    EXPECT_STREQ(List(" a b ").GetToken(2, " ").GetBuffer(), "");
}

TEST(CStringTokens, TrailingDelimiterYieldsAnEmptyToken) {
    EXPECT_EQ(List("a,").GetNumberTokens(","), 2);
    EXPECT_STREQ(List("a,").GetToken(1, ",").GetBuffer(), "");
    EXPECT_EQ(List("a,").FindToken("", ","), 2);
    EXPECT_EQ(List("a,").GetTokenNumber("", ","), 1);
}

TEST(CStringTokens, OtherBlanksAtTheEndsBelongToTheirTokens) {
    EXPECT_STREQ(List("a,b\r").GetToken(1, ",").GetBuffer(), "b\r");
    EXPECT_STREQ(List("\v\fa,b").GetToken(0, ",").GetBuffer(), "\v\fa");
    EXPECT_EQ(List("a,b\r").FindToken("b", ","), -1);
    EXPECT_EQ(List("a,b\r").FindToken("b\r", ","), 2);
}

TEST(CStringTokens, FindTokenGivesACharacterPosition) {
    EXPECT_EQ(List("aa,b,c").FindToken("c", ","), 5);
    EXPECT_EQ(List(" aa,b,c").FindToken("b", ","), 3);
    EXPECT_EQ(List("aa,b").FindToken("a", ","), -1);
    EXPECT_EQ(List("aa,b").FindToken("B", ","), -1);
    EXPECT_EQ(List("").FindToken("", ","), -1);
    EXPECT_EQ(List("a,,b").FindToken("", ","), 2);
}

TEST(CStringTokens, FindTokenCountsTheWholeDelimiter) {
    EXPECT_EQ(List("aa::b::c").FindToken("b", "::"), 4);
    EXPECT_EQ(List("aa::b::c").FindToken("c", "::"), 7);
}

TEST(CStringTokens, IsToken) {
    EXPECT_TRUE(List("aa,b,c").IsToken("b", ","));
    EXPECT_FALSE(List("aa,b,c").IsToken("a", ","));
}

TEST(CStringTokens, NumberOfAnAbsentTokenIsTheCount) {
    EXPECT_EQ(List("a,,b").GetTokenNumber("x", ","), 3);
    EXPECT_EQ(List("a,,b").GetTokenNumber("b", ","), 2);
    EXPECT_EQ(List("a,,b").GetTokenNumber("", ","), 1);
    EXPECT_EQ(List("").GetTokenNumber("x", ","), 0);
}

TEST(CStringTokens, TokenNumberLooksAtTheCase) {
    EXPECT_EQ(List("a,B,b").GetTokenNumber("b", ","), 2);
    EXPECT_EQ(List("a,B").GetTokenNumber("b", ","), 2);
}

TEST(CStringTokens, ParseTokensEndsWhereTheListItselfReceivesAToken) {
    CString texts[3] = {"first", "a,b,c", "last"};
    EXPECT_EQ(texts[1].ParseTokens(texts, 3, ","), 2U);
    EXPECT_STREQ(texts[0].GetBuffer(), "a");
    EXPECT_STREQ(texts[1].GetBuffer(), "b");
    EXPECT_STREQ(texts[2].GetBuffer(), "last");
}

TEST(CStringTokens, ParseTokensPassesALockedListInItsOwnArray) {
    CString texts[3] = {"a,b,c", "", ""};
    texts[0].GetBuffer(10);
    EXPECT_EQ(texts[0].ParseTokens(texts, 3, ","), 3U);
    EXPECT_STREQ(texts[0].GetBuffer(), "a,b,c");
    EXPECT_STREQ(texts[1].GetBuffer(), "b");
    EXPECT_STREQ(texts[2].GetBuffer(), "c");
}

TEST(CStringTokens, ParseTokensFillsUpToItsMaximum) {
    CString tokens[3] = {"", "", "untouched"};
    EXPECT_EQ(List("a,b,c").ParseTokens(tokens, 2, ","), 2U);
    EXPECT_STREQ(tokens[0].GetBuffer(), "a");
    EXPECT_STREQ(tokens[1].GetBuffer(), "b");
    EXPECT_STREQ(tokens[2].GetBuffer(), "untouched");
    EXPECT_EQ(List("a").ParseTokens(tokens, 3, ","), 1U);
    EXPECT_EQ(List("").ParseTokens(tokens, 3, ","), 0U);
    EXPECT_EQ(List("x").ParseTokens(tokens, 0, ","), 0U);
    EXPECT_STREQ(tokens[0].GetBuffer(), "a");
}

// --- Editing the list ----------------------------------------------------------------------------

TEST(CStringTokens, OneEmptyTokenDiffersFromNone) {
    CString list;
    EXPECT_EQ(list.GetNumberTokens(","), 0);
    list.AddToken("", ",");
    EXPECT_STREQ(list.GetBuffer(), "");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
    EXPECT_EQ(list.FindToken("", ","), 0);
    EXPECT_EQ(list.FindToken("a", ","), -1);
    list.AddToken("b", ",");
    EXPECT_STREQ(list.GetBuffer(), ",b");
    EXPECT_EQ(list.GetNumberTokens(","), 2);
}

TEST(CStringTokens, OneEmptyTokenCountsWhateverTheDelimiter) {
    CString list;
    list.AddToken("", ",");
    EXPECT_EQ(list.GetNumberTokens(""), 1);
    EXPECT_EQ(list.FindToken("", ""), 0);
    EXPECT_TRUE(list.IsToken("", ";"));
    EXPECT_STREQ(list.GetToken(0, ",").GetBuffer(), "");
}

TEST(CStringTokens, TwoEmptyTokensAreADelimiter) {
    CString list;
    list.AddToken("", ",");
    list.AddToken("", ",");
    EXPECT_STREQ(list.GetBuffer(), ",");
    EXPECT_EQ(list.GetNumberTokens(","), 2);
}

TEST(CStringTokens, TwoEmptyTokensWithoutADelimiterLeaveNoMark) {
    CString list;
    list.AddToken("", "");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
    list.AddToken("", "");
    EXPECT_STREQ(list.GetBuffer(), "");
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringTokens, EmptyingForgetsTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.Empty();
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringTokens, AssigningATextKeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list = "a,b,c";
    EXPECT_EQ(list.GetNumberTokens(","), 1);
}

TEST(CStringTokens, AddTokenAppends) {
    CString list;
    list.AddToken("a", ", ");
    list.AddToken("", ", ");
    list.AddToken("c", ", ");
    EXPECT_STREQ(list.GetBuffer(), "a, , c");
}

TEST(CStringTokens, InsertBeforeAToken) {
    CString list("a,b,c");
    EXPECT_EQ(list.InsertToken("x", "b", ","), 1);
    EXPECT_STREQ(list.GetBuffer(), "a,x,b,c");
}

TEST(CStringTokens, InsertBeforeAnAbsentTokenAppends) {
    CString list("a,b,c");
    EXPECT_EQ(list.InsertToken("x", "z", ","), 3);
    EXPECT_STREQ(list.GetBuffer(), "a,b,c,x");
}

TEST(CStringTokens, InsertBeforeNothingGoesToTheFront) {
    CString list("a,b,c");
    EXPECT_EQ(list.InsertToken("x", "", ","), 0);
    EXPECT_STREQ(list.GetBuffer(), "x,a,b,c");
    CString empty;
    EXPECT_EQ(empty.InsertToken("x", "", ","), 0);
    EXPECT_STREQ(empty.GetBuffer(), "x");
}

TEST(CStringTokens, InsertHappensOnce) {
    CString list("b,b");
    EXPECT_EQ(list.InsertToken("x", "b", ","), 0);
    EXPECT_STREQ(list.GetBuffer(), "x,b,b");
}

TEST(CStringTokens, InsertLooksAtTheCaseOfTheTokenBefore) {
    CString list("B,b");
    EXPECT_EQ(list.InsertToken("x", "b", ","), 1);
    EXPECT_STREQ(list.GetBuffer(), "B,x,b");
    EXPECT_EQ(list.InsertToken("y", "X", ","), 3);
    EXPECT_STREQ(list.GetBuffer(), "B,x,b,y");
}

TEST(CStringTokens, InsertBehindALeadingEmptyTokenKeepsIt) {
    CString list(",a");
    EXPECT_EQ(list.InsertToken("x", "a", ","), 1);
    EXPECT_STREQ(list.GetBuffer(), ",x,a");
    list.InsertToken("y", 1U, ",");
    EXPECT_STREQ(list.GetBuffer(), ",y,x,a");
}

TEST(CStringTokens, InsertOfAnEmptyTokenIntoNothingLeavesNoToken) {
    CString list;
    EXPECT_EQ(list.InsertToken("", "b", ","), 0);
    EXPECT_STREQ(list.GetBuffer(), "");
    EXPECT_EQ(list.GetNumberTokens(","), 0);
    list.InsertToken("", 0U, ",");
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringTokens, InsertTrimsTheListAsReadingDoes) {
    CString list(" a,b ");
    EXPECT_EQ(list.InsertToken(" x ", "b", ","), 1);
    EXPECT_STREQ(list.GetBuffer(), "a, x ,b");
}

TEST(CStringTokens, InsertByNumber) {
    CString list("a,b");
    list.InsertToken("x", 1U, ",");
    EXPECT_STREQ(list.GetBuffer(), "a,x,b");
    list.InsertToken("y", 0U, ",");
    EXPECT_STREQ(list.GetBuffer(), "y,a,x,b");
    list.InsertToken("z", 99U, ",");
    EXPECT_STREQ(list.GetBuffer(), "y,a,x,b,z");
    list.InsertToken("e", 5U, ",");
    EXPECT_STREQ(list.GetBuffer(), "y,a,x,b,z,e");
}

TEST(CStringTokens, SortIsByBytesAndStable) {
    CString list("pear,Apple,fig,apple");
    list.SortTokens(",");
    EXPECT_STREQ(list.GetBuffer(), "Apple,apple,fig,pear");
    CString repeated("b,a,b,a");
    repeated.SortTokens(",");
    EXPECT_STREQ(repeated.GetBuffer(), "a,a,b,b");
}

TEST(CStringTokens, SortKeepsTheGreatestAtTheEnd) {
    CString sorted("a,b,c");
    sorted.SortTokens(",");
    EXPECT_STREQ(sorted.GetBuffer(), "a,b,c");
    CString list("b,a,c");
    list.SortTokens(",");
    EXPECT_STREQ(list.GetBuffer(), "a,b,c");
}

TEST(CStringTokens, SortOfNothingChangesNothing) {
    CString list(" ");
    list.SortTokens(",");
    EXPECT_STREQ(list.GetBuffer(), " ");
}

TEST(CStringTokens, SortTrimsTheListAsReadingDoes) {
    CString list(" b,a ");
    list.SortTokens(",");
    EXPECT_STREQ(list.GetBuffer(), "a,b");
}

TEST(CStringTokens, SortPutsEmptyTokensFirst) {
    CString list("b,,a");
    list.SortTokens(",");
    EXPECT_STREQ(list.GetBuffer(), ",a,b");
}

// Each takes more than half of the room that a text in the making begins with.
TEST(CStringTokens, LongTokensAreSorted) {
    const std::string a(100, 'a');
    const std::string b(100, 'b');
    const std::string c(100, 'c');
    CString list((b + "," + c + "," + a).c_str());
    list.SortTokens(",");
    EXPECT_EQ(list.GetBuffer(), a + "," + b + "," + c);
}

}  // namespace
