// CString: buffers that fit their texts exactly, and what is freed and kept.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "support/Allocation.h"
#include "util/CString.h"

namespace {

/// The size of the buffer that holds the text.
size_t SizeOf(const CString& string) {
    return support::SizeOfAllocation(string.GetBuffer());
}

// --- Exact fit ----------------------------------------------------------------------------------

TEST(CStringExactFit, BufferOfALengthHasRoomForTheNulAlone) {
    const std::unique_ptr<char[]> empty(CString::CreateCharString(0));
    EXPECT_EQ(support::SizeOfAllocation(empty.get()), 1U);
    const std::unique_ptr<char[]> buffer(CString::CreateCharString(10));
    EXPECT_EQ(support::SizeOfAllocation(buffer.get()), 11U);
}

TEST(CStringExactFit, AfterConstruction) {
    EXPECT_EQ(SizeOf(CString()), 1U);
    EXPECT_EQ(SizeOf(CString("")), 1U);
    EXPECT_EQ(SizeOf(CString("abc")), 4U);
    EXPECT_EQ(SizeOf(CString(CString("abc"))), 4U);
    EXPECT_EQ(SizeOf(CString('x', 0)), 1U);
    EXPECT_EQ(SizeOf(CString('x', 1)), 2U);
    EXPECT_EQ(SizeOf(CString('x', 30)), 31U);
    EXPECT_EQ(SizeOf(CString(-12345)), 7U);
    EXPECT_EQ(SizeOf(CString(0.5)), 4U);
}

TEST(CStringExactFit, AfterAssignment) {
    CString string("a long text to begin with");
    string = "abc";
    EXPECT_EQ(SizeOf(string), 4U);
    string = 'c';
    EXPECT_EQ(SizeOf(string), 2U);
    string = '\0';
    EXPECT_EQ(SizeOf(string), 2U);
    string = CString("abcde");
    EXPECT_EQ(SizeOf(string), 6U);
    string.Empty();
    EXPECT_EQ(SizeOf(string), 1U);
}

TEST(CStringExactFit, AfterAppending) {
    CString string("ab");
    string += "cde";
    EXPECT_EQ(SizeOf(string), 6U);
    string += 'f';
    EXPECT_EQ(SizeOf(string), 7U);
    string += string;
    EXPECT_EQ(SizeOf(string), 13U);
    EXPECT_EQ(SizeOf(string + "xyz"), 16U);
    EXPECT_EQ(SizeOf('x' + string), 14U);
}

TEST(CStringExactFit, AfterTrimming) {
    CString string("   abc   ");
    string.TrimLeft(" ");
    EXPECT_EQ(SizeOf(string), 7U);
    string.TrimRight(" ");
    EXPECT_EQ(SizeOf(string), 4U);
    string.Trim("abc");
    EXPECT_EQ(SizeOf(string), 1U);
}

TEST(CStringExactFit, AfterRemovingAndRepeating) {
    CString string("a-b-c");
    string.RemoveSubstring("-b");
    EXPECT_EQ(SizeOf(string), 4U);
    string -= "-c";
    EXPECT_EQ(SizeOf(string), 2U);
    string.RepeatChar('x', 20);
    EXPECT_EQ(SizeOf(string), 21U);
    string.RepeatChar('x', 0);
    EXPECT_EQ(SizeOf(string), 1U);
}

TEST(CStringExactFit, OfPartsAndTokens) {
    const CString string("one,two,three");
    EXPECT_EQ(SizeOf(string.Left(3)), 4U);
    EXPECT_EQ(SizeOf(string.Mid(4, 3)), 4U);
    EXPECT_EQ(SizeOf(string.Right(5)), 6U);
    EXPECT_EQ(SizeOf(string.Upper()), 14U);
    EXPECT_EQ(SizeOf(string.GetToken(2, ",")), 6U);
    CString list(string);
    EXPECT_EQ(SizeOf(list.StrTok(",")), 4U);
    EXPECT_EQ(SizeOf(list.StrTok()), 4U);
    list.InsertToken("x", "two", ",");
    EXPECT_EQ(SizeOf(list), 16U);
    list.SortTokens(",");
    EXPECT_EQ(SizeOf(list), 16U);
}

TEST(CStringExactFit, LockedBufferIsAsLargeAsAskedForUntilItsRelease) {
    CString string("hello");
    string.GetBuffer(100);
    EXPECT_EQ(SizeOf(string), 101U);
    string.GetBuffer(50);
    EXPECT_EQ(SizeOf(string), 51U);
    string.ReleaseBuffer();
    EXPECT_EQ(SizeOf(string), 6U);
    string.GetBuffer(2);
    EXPECT_EQ(SizeOf(string), 3U);
}

TEST(CStringExactFit, ReleaseOfALockedEmptyTextShrinksNothing) {
    CString string;
    string.GetBuffer(100);
    string.ReleaseBuffer();
    EXPECT_EQ(SizeOf(string), 101U);
}

TEST(CStringExactFit, SingleCharactersAndCaseAreWrittenInPlace) {
    CString string("abc");
    const char* const buffer = string.GetBuffer();
    string.SetAt(0, 'x');
    string.ToUpper();
    string.ToLower(1);
    EXPECT_EQ(string.GetBuffer(), buffer);
    EXPECT_STREQ(buffer, "XbC");
    string.SetAt(1, '\0');
    EXPECT_EQ(string.GetBuffer(), buffer);
    EXPECT_EQ(SizeOf(string), 4U);
}

TEST(CStringExactFit, CopyOfTheTextIsExactToo) {
    CString string("abc");
    string.GetBuffer(100);
    const std::unique_ptr<char[]> copy(string.GetCharString());
    EXPECT_EQ(support::SizeOfAllocation(copy.get()), 4U);
    EXPECT_EQ(SizeOf(CString(string)), 4U);
}

// --- What is freed ------------------------------------------------------------------------------

TEST(CStringConverter, FreesTheTextThatItTakes) {
    CString string("old");
    char* const text = CString::CreateCharString(5);
    std::snprintf(text, 6, "abcde");
    const void* const given = text;
    string.Converter(text, 3);
    EXPECT_EQ(support::SizeOfAllocation(given), 0U);
    EXPECT_EQ(SizeOf(string), 4U);
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringConverter, FreesTheTextWhileLockedToo) {
    CString string("old");
    string.GetBuffer(10);
    char* const text = CString::CreateCharString(5);
    const void* const given = text;
    string.Converter(text, 3);
    EXPECT_EQ(support::SizeOfAllocation(given), 0U);
    EXPECT_STREQ(string.GetBuffer(), "old");
}

TEST(CStringConverter, FreesNothingThatIsEmpty) {
    CString string("old");
    const std::unique_ptr<char[]> text(CString::CreateCharString(5));
    string.Converter(text.get(), 0);
    string.Converter(text.get(), -1);
    EXPECT_EQ(support::SizeOfAllocation(text.get()), 6U);
    EXPECT_STREQ(string.GetBuffer(), "");
}

TEST(CStringConverter, EndsTheTextAtItsCountOrItsNul) {
    CString string;
    char* const text = CString::CreateCharString(5);
    std::snprintf(text, 6, "ab");
    string.Converter(text, 5);
    EXPECT_STREQ(string.GetBuffer(), "ab");
    EXPECT_EQ(SizeOf(string), 3U);
}

TEST(CopyString, OneLevelOverloadForStringsFreesTheTargetAndLosesTheCopy) {
    CString string;
    char* original = CString::CreateCharString(3);
    support::WithholdNextArrayDelete();
    const size_t before = support::CountAllocations();
    const bool copied = string.CopyString(original, CString("abc"));
    const size_t allocations = support::CountAllocations() - before;
    auto* copy = static_cast<char*>(support::LastAllocation());
    EXPECT_EQ(support::WithheldArrayDelete(), original);
    EXPECT_TRUE(copied);
    EXPECT_EQ(allocations, 2U);  // the argument and the copy
    ASSERT_NE(copy, original);
    EXPECT_STREQ(copy, "abc");
    EXPECT_EQ(support::SizeOfAllocation(copy), 4U);
    EXPECT_STREQ(original, "");
    delete[] copy;
    delete[] original;
}

TEST(CopyString, OneLevelOverloadForStringsAcceptsNoTarget) {
    CString string;
    EXPECT_TRUE(string.CopyString(static_cast<char*>(nullptr), CString("abc")));
    auto* copy = static_cast<char*>(support::LastAllocation());
    EXPECT_STREQ(copy, "abc");
    delete[] copy;
}

}  // namespace
