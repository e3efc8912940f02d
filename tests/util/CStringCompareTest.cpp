// CString: comparison and order.
#include <gtest/gtest.h>

#include "util/CString.h"

namespace {

const char* const kNull = nullptr;

// --- Comparison ----------------------------------------------------------------------------------

TEST(CStringOrder, TwoStrings) {
    EXPECT_TRUE(CString("a") == CString("a"));
    EXPECT_FALSE(CString("a") == CString("A"));
    EXPECT_FALSE(CString("a") != CString("a"));
    EXPECT_FALSE(CString("a") > CString("b"));
    EXPECT_FALSE(CString("a") > CString("a"));
    EXPECT_TRUE(CString("a") != CString("b"));
    EXPECT_TRUE(CString("a") < CString("b"));
    EXPECT_FALSE(CString("a") < CString("a"));
    EXPECT_TRUE(CString("b") > CString("a"));
    EXPECT_TRUE(CString("a") <= CString("a"));
    EXPECT_TRUE(CString("a") >= CString("a"));
    EXPECT_FALSE(CString("b") <= CString("a"));
    EXPECT_FALSE(CString("a") >= CString("b"));
}

TEST(CStringOrder, StringAndText) {
    EXPECT_TRUE(CString("a") == "a");
    EXPECT_TRUE(CString("a") != "b");
    EXPECT_TRUE(CString("a") < "b");
    EXPECT_TRUE(CString("b") > "a");
    EXPECT_TRUE(CString("a") <= "a");
    EXPECT_TRUE(CString("a") >= "a");
    EXPECT_FALSE(CString("a") == "A");
    EXPECT_FALSE(CString("a") != "a");
    EXPECT_FALSE(CString("a") < "a");
    EXPECT_FALSE(CString("a") > "a");
    EXPECT_FALSE(CString("a") > "b");
    EXPECT_FALSE(CString("b") <= "a");
    EXPECT_FALSE(CString("a") >= "b");
}

TEST(CStringOrder, TextAndString) {
    EXPECT_TRUE("a" == CString("a"));
    EXPECT_TRUE("a" != CString("b"));
    EXPECT_TRUE("a" < CString("b"));
    EXPECT_TRUE("b" > CString("a"));
    EXPECT_TRUE("a" <= CString("a"));
    EXPECT_TRUE("a" >= CString("a"));
    EXPECT_FALSE("a" == CString("A"));
    EXPECT_FALSE("a" != CString("a"));
    EXPECT_FALSE("a" < CString("a"));
    EXPECT_FALSE("b" < CString("a"));
    EXPECT_FALSE("a" > CString("a"));
    EXPECT_FALSE("b" <= CString("a"));
    EXPECT_FALSE("a" >= CString("b"));
}

TEST(CStringOrder, PrefixComesBeforeTheLongerText) {
    EXPECT_TRUE(CString("ab") < CString("abc"));
    EXPECT_TRUE(CString("abc") > "ab");
    EXPECT_TRUE("" < CString("a"));
    EXPECT_FALSE(CString("ab") == CString("abc"));
}

TEST(CStringOrder, BytesCountAsUnsigned) {
    EXPECT_TRUE(CString("\x80") > CString("z"));
}

TEST(CStringOrder, NullIsLessThanEveryString) {
    EXPECT_FALSE(CString("abc") == kNull);
    EXPECT_TRUE(CString("abc") != kNull);
    EXPECT_FALSE(CString("") < kNull);
    EXPECT_TRUE(CString("") > kNull);
    EXPECT_FALSE(CString("") <= kNull);
    EXPECT_TRUE(CString("") >= kNull);
    EXPECT_FALSE(kNull == CString(""));
    EXPECT_TRUE(kNull != CString(""));
    EXPECT_TRUE(kNull < CString(""));
    EXPECT_FALSE(kNull > CString(""));
    EXPECT_TRUE(kNull <= CString(""));
    EXPECT_FALSE(kNull >= CString(""));
}

TEST(CStringCompare, GivesTheSignOfTheOrder) {
    EXPECT_LT(CString("a").Compare("b"), 0);
    EXPECT_GT(CString("b").Compare("a"), 0);
    EXPECT_EQ(CString("a").Compare("a"), 0);
    EXPECT_LT(CString("A").Compare("a"), 0);
}

TEST(CStringCompare, NoCaseFoldsLetters) {
    EXPECT_EQ(CString("abc").CompareNoCase("ABC"), 0);
    EXPECT_LT(CString("abc").CompareNoCase("ABD"), 0);
    EXPECT_TRUE(CString("abc").EqualsNoCase("ABC"));
    EXPECT_FALSE(CString("abc").EqualsNoCase("AB"));
    EXPECT_FALSE(CString("abc").Equals("ABC"));
    EXPECT_TRUE(CString("abc").Equals("abc"));
}

// '_' stands between the capital and the small letters.
TEST(CStringCompare, NoCaseComparesAsIfInSmallLetters) {
    EXPECT_GT(CString("A").CompareNoCase("_"), 0);
    EXPECT_LT(CString("_").CompareNoCase("A"), 0);
}

TEST(CStringCompare, NoCaseCountsOtherBytesAsUnsigned) {
    EXPECT_GT(CString("\xE4").CompareNoCase("z"), 0);
    EXPECT_NE(CString("\xE4").CompareNoCase("\xC4"), 0);
}

TEST(CStringCompare, NoCaseSortsAPrefixFirst) {
    EXPECT_LT(CString("ab").CompareNoCase("ABC"), 0);
    EXPECT_GT(CString("ABC").CompareNoCase("ab"), 0);
    EXPECT_EQ(CString("").CompareNoCase(""), 0);
}

}  // namespace
