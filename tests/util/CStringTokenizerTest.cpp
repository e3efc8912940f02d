// CString: the running tokenizer.
#include <gtest/gtest.h>

#include <string>

#include "util/CString.h"

namespace {

// --- The running tokenizer -----------------------------------------------------------------------

TEST(CStringTokenizer, HandsOutTokensAndThenNothing) {
    CString list("a,b");
    EXPECT_STREQ(list.StrTok(",").GetBuffer(), "a");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
    EXPECT_STREQ(list.GetBuffer(), "a,b");
}

TEST(CStringTokenizer, TrimsNothing) {
    CString list(" a , b ");
    EXPECT_STREQ(list.StrTok(",").GetBuffer(), " a ");
    EXPECT_STREQ(list.StrTok().GetBuffer(), " b ");
}

TEST(CStringTokenizer, TrailingDelimiterLooksLikeTheEnd) {
    CString list("a,");
    EXPECT_STREQ(list.StrTok(",").GetBuffer(), "a");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
}

TEST(CStringTokenizer, StartsAnewWithADelimiter) {
    CString list("a,b;c");
    list.StrTok(",");
    EXPECT_STREQ(list.StrTok(";").GetBuffer(), "a,b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "c");
}

TEST(CStringTokenizer, EmptyDelimiterGivesTheWholeText) {
    CString list("a,b");
    EXPECT_STREQ(list.StrTok("").GetBuffer(), "a,b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
}

TEST(CStringTokenizer, BreakKeepsTheDelimiterAtTheHead) {
    CString list("key,rest,more");
    EXPECT_STREQ(list.StrBreak(",").GetBuffer(), "key,");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "rest,more");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "rest,more");
}

TEST(CStringTokenizer, BreakWithoutDelimiterLeavesNoRest) {
    CString list("key");
    EXPECT_STREQ(list.StrBreak(",").GetBuffer(), "key");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "");
    EXPECT_STREQ(list.StrBreak("").GetBuffer(), "key");
}

TEST(CStringTokenizer, BreakWithoutDelimiterDropsTheRestOfAnEarlierOne) {
    CString list("key,rest");
    list.StrBreak(",");
    EXPECT_STREQ(list.StrBreak(";").GetBuffer(), "key,rest");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "");
}

TEST(CStringTokenizer, BreakKeepsALongDelimiterAtTheHead) {
    CString list("key::rest");
    EXPECT_STREQ(list.StrBreak("::").GetBuffer(), "key::");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "rest");
}

TEST(CStringTokenizer, NextTokenAfterABreakEndsAtTheDelimiterOfTheRun) {
    CString list("a,b;c,d");
    EXPECT_STREQ(list.StrTok(";").GetBuffer(), "a,b");
    EXPECT_STREQ(list.StrBreak(",").GetBuffer(), "a,");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "c,d");
}

TEST(CStringTokenizer, NextTokenAfterABreakAloneIsTheWholeRest) {
    CString list("key,a,b");
    list.StrBreak(",");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "a,b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
}

TEST(CStringTokenizer, WithoutARunReturnsNothing) {
    CString list("a,b");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
    EXPECT_STREQ(CString("a,b").StrBreak().GetBuffer(), "");
    EXPECT_STREQ(CString("a,b").StrTokIt().GetBuffer(), "");
}

TEST(CStringTokenizer, StrTokItCutsTheCurrentToken) {
    CString list("a,b");
    list.StrTok(",");
    list.StrBreak(";");  // the current token is the whole text again
    EXPECT_STREQ(list.StrTokIt().GetBuffer(), "a");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
}

TEST(CStringTokenizer, StrTokItCutsAtADelimiterInFront) {
    CString list(",a");
    list.StrTok(",");
    list.StrBreak(";");
    EXPECT_STREQ(list.StrTokIt().GetBuffer(), "");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "a");
}

TEST(CStringTokenizer, StrBreakBreaksBehindADelimiterInFront) {
    CString list(",a");
    EXPECT_STREQ(list.StrBreak(",").GetBuffer(), ",");
    EXPECT_STREQ(list.StrBreak().GetBuffer(), "a");
}

TEST(CStringTokenizer, ReleaseEndsTheRun) {
    CString list("a,b");
    list.StrTok(",");
    list.ReleaseBuffer();
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
}

TEST(CStringTokenizer, ReleaseOfTheTokenizerAloneEndsTheRunToo) {
    CString list("a,b");
    list.StrTok(",");
    list.BufferRelease();
    EXPECT_STREQ(list.StrTok().GetBuffer(), "");
    EXPECT_STREQ(list.StrTok(",").GetBuffer(), "a");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
}

TEST(CStringTokenizer, ReleaseForgetsTheCurrentToken) {
    CString list("a,b");
    list.StrTok(";");
    list.BufferRelease();
    EXPECT_STREQ(list.StrTokIt().GetBuffer(), "");
}

TEST(CStringTokenizer, ReleaseForgetsTheDelimiter) {
    CString list("a,b");
    list.StrTok(",");
    list.BufferRelease();
    list.StrBreak(";");  // the current token is the whole text
    EXPECT_STREQ(list.StrTokIt().GetBuffer(), "a,b");
}

TEST(CStringTokenizer, RunGoesOnThroughAnotherInitialization) {
    CString list("a,b");
    list.BufferInit();
    list.StrTok(",");
    list.BufferInit();
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
}

TEST(CStringTokenizer, RunGoesOnOverTheTextOfItsBeginning) {
    CString list("a,b");
    list.StrTok(",");
    list = "x,y";
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
    EXPECT_STREQ(list.StrBreak(",").GetBuffer(), "x,");
}

TEST(CStringTokenizer, CopyHasNoRun) {
    CString list("a,b");
    list.StrTok(",");
    CString copy(list);
    EXPECT_STREQ(copy.StrTok().GetBuffer(), "");
    EXPECT_STREQ(list.StrTok().GetBuffer(), "b");
}

TEST(CStringTokenizer, RunsOverALongList) {
    std::string text;
    for (int i = 0; i < 50'000; ++i) {
        text += "x,";
    }
    CString list(text.c_str());
    int count = 0;
    for (CString token = list.StrTok(","); !token.IsEmpty(); token = list.StrTok()) {
        ++count;
    }
    EXPECT_EQ(count, 50'000);
}

}  // namespace
