// CString: single characters, the raw buffer and its lock, and a string without a buffer.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "util/CString.h"

namespace {

/// A string without a buffer, which only Initialize() makes.
class StringWithoutBuffer : public testing::Test {
  protected:
    StringWithoutBuffer() {
        delete[] m_string.GetBuffer();
        m_string.Initialize();
    }
    CString m_string;
};

TEST(CStringInitialize, MakesAStringOfRawMemory) {
    alignas(CString) std::array<unsigned char, sizeof(CString)> memory;
    memory.fill(0xAA);
    auto* const string = reinterpret_cast<CString*>(memory.data());
    string->Initialize();
    EXPECT_TRUE(string->IsEmpty());
    *string = "abc,def";
    EXPECT_STREQ(string->StrTok(",").GetBuffer(), "abc");
    EXPECT_STREQ(string->StrTok().GetBuffer(), "def");
    string->~CString();
}

// In a process that ends at once: what the string held is lost.
TEST(CStringInitialize, TakesOffTheLock) {
    EXPECT_EXIT(
        {
            CString string("abc");
            string.GetBuffer(10);
            string.Initialize();
            string = "x";
            std::_Exit(string == "x" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CStringInitialize, ForgetsTheTokenizer) {
    EXPECT_EXIT(
        {
            CString string("abc");
            string.StrTok(",");
            string.Initialize();
            string = "a,b";
            std::_Exit(string.StrTok(",") == "a" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CStringInitialize, ForgetsARunOfTheTokenizer) {
    EXPECT_EXIT(
        {
            CString string("abc,def");
            string.StrTok(",");
            string.Initialize();
            std::_Exit(string.StrTok() == "" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CStringInitialize, ForgetsTheEmptyToken) {
    EXPECT_EXIT(
        {
            CString list;
            list.AddToken("", ",");
            list.Initialize();
            std::_Exit(list.GetNumberTokens(",") == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

const CString& Const(const CString& string) {
    return string;
}

// --- Elements ------------------------------------------------------------------------------------

TEST(CStringElements, AreReadByPosition) {
    const CString string("abc");
    EXPECT_EQ(string.GetAt(0), 'a');
    EXPECT_EQ(string[2], 'c');
    EXPECT_EQ(string.GetLastChar(), 'c');
}

TEST(CStringElements, PastTheEndAreNul) {
    const CString string("abc");
    EXPECT_EQ(string.GetAt(3), '\0');
    EXPECT_EQ(string[UINT_MAX], '\0');
    EXPECT_EQ(CString().GetLastChar(), '\0');
    EXPECT_EQ(CString().GetAt(0), '\0');
}

TEST(CStringElements, AreReplaced) {
    CString string("abc");
    EXPECT_TRUE(string.SetAt(1, 'x'));
    EXPECT_STREQ(string.GetBuffer(), "axc");
    EXPECT_FALSE(string.SetAt(3, 'x'));
    EXPECT_STREQ(string.GetBuffer(), "axc");
}

TEST(CStringElements, NulCutsTheText) {
    CString string("abc");
    EXPECT_TRUE(string.SetAt(1, '\0'));
    EXPECT_EQ(string.GetLength(), 1U);
}

TEST(CStringElements, RepeatCharReplacesTheText) {
    CString string("abc");
    EXPECT_STREQ(string.RepeatChar('-', 4), "----");
    EXPECT_STREQ(string.GetBuffer(), "----");
    EXPECT_STREQ(string.RepeatChar('-', 0), "");
}

TEST(CStringElements, RepeatedNulIsAnEmptyText) {
    CString string("abc");
    EXPECT_STREQ(string.RepeatChar('\0', 3), "");
    EXPECT_EQ(string.GetLength(), 0U);
}

TEST(CStringElements, RepeatCharKeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.RepeatChar(',', 2);
    EXPECT_STREQ(list.GetBuffer(), ",,");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
}

TEST(CStringElements, RepeatingNothingClearsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.RepeatChar(',', 0);
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringElements, EmptyEmpties) {
    CString string("abc");
    string.Empty();
    EXPECT_TRUE(string.IsEmpty());
    EXPECT_NE(string.GetBuffer(), nullptr);
}

// --- The lock ------------------------------------------------------------------------------------

TEST(CStringLock, LockedStringChangesByNoOperation) {
    CString string("12");
    string.GetBuffer(10);
    string = "x";
    string = 'x';
    string = CString("x");
    string += "x";
    string += 'x';
    string += CString("x");
    string.Empty();
    string.RepeatChar('x', 3);
    string.ToString(5);
    EXPECT_FALSE(string.SetAt(0, 'x'));
    EXPECT_FALSE(string -= "1");
    EXPECT_STREQ(string.GetBuffer(), "12");
    EXPECT_EQ(string.ToInt(), 0);
    EXPECT_TRUE(string.ReleaseBuffer());
    EXPECT_EQ(string.ToInt(), 12);
    string = "free";
    EXPECT_STREQ(string.GetBuffer(), "free");
}

TEST(CStringLock, RepeatCharOfALockedStringReturnsItsText) {
    CString string("12");
    string.GetBuffer(10);
    EXPECT_STREQ(string.RepeatChar('x', 3), "12");
    EXPECT_STREQ(string.RepeatChar('x', 0), "12");
}

TEST(CStringLock, WhatIsWrittenIntoTheBufferStaysAfterRelease) {
    CString string;
    char* buffer = string.GetBuffer(10);
    std::snprintf(buffer, 11, "abc");
    EXPECT_TRUE(string.ReleaseBuffer());
    EXPECT_EQ(string.GetLength(), 3U);
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringLock, BufferTakesAsManyCharactersAsAskedFor) {
    CString string;
    char* buffer = string.GetBuffer(10);
    std::snprintf(buffer, 11, "0123456789");
    string.ReleaseBuffer();
    EXPECT_STREQ(string.GetBuffer(), "0123456789");
}

TEST(CStringLock, BufferHoldsTheTextCutToItsSize) {
    CString string("hello");
    EXPECT_STREQ(string.GetBuffer(2), "he");
    EXPECT_STREQ(string.GetBuffer(8), "he");
    string.ReleaseBuffer();
    EXPECT_STREQ(string.GetBuffer(), "he");
}

TEST(CStringLock, SizeOfZeroEmptiesAnUnlockedString) {
    CString string("hello");
    EXPECT_STREQ(string.GetBuffer(0), "");
    string = "free";
    EXPECT_STREQ(string.GetBuffer(), "free");
}

TEST(CStringLock, SizeOfZeroUnlocksWithoutShrinking) {
    CString string("hello");
    const char* buffer = string.GetBuffer(20);
    EXPECT_EQ(string.GetBuffer(0), buffer);
    EXPECT_STREQ(string.GetBuffer(), "hello");
    string = "free";
    EXPECT_STREQ(string.GetBuffer(), "free");
}

TEST(CStringLock, ReleaseOfAnEmptyTextKeepsTheLargeBuffer) {
    CString string;
    const char* buffer = string.GetBuffer(100);
    EXPECT_TRUE(string.ReleaseBuffer());
    EXPECT_EQ(string.GetBuffer(), buffer);
    string = "free";
    EXPECT_STREQ(string.GetBuffer(), "free");
}

TEST(CStringLock, ReleaseOfAnUnlockedEmptyTextClearsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
    EXPECT_TRUE(list.ReleaseBuffer());
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

TEST(CStringLock, ReleaseOfALockedEmptyTextKeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list.GetBuffer(5);
    EXPECT_TRUE(list.ReleaseBuffer());
    EXPECT_EQ(list.GetNumberTokens(","), 1);
}

TEST(CStringLock, ReleaseOfAnUnlockedTextKeepsIt) {
    CString string("abc");
    EXPECT_TRUE(string.ReleaseBuffer());
    EXPECT_STREQ(string.GetBuffer(), "abc");
}

TEST(CStringLock, AliasesDoTheSame) {
    CString string("abc");
    EXPECT_EQ(string.Get(), string.GetBuffer());
    EXPECT_EQ(Const(string).Get(), Const(string).GetBuffer());
    EXPECT_EQ(string.c_str(), string.GetBuffer());
    EXPECT_STREQ(string.Get(2), "ab");
    EXPECT_TRUE(string.Release());
    EXPECT_STREQ(string.c_str(1), "a");
    EXPECT_TRUE(string.rc_str());
    string = "free";
    EXPECT_STREQ(string.GetBuffer(), "free");
}

// --- Buffers of the caller -----------------------------------------------------------------------

TEST(CStringBuffers, CreatedBufferBeginsWithNul) {
    const std::unique_ptr<char[]> buffer(CString::CreateCharString(3));
    EXPECT_EQ(buffer[0], '\0');
    buffer[3] = 'x';
    EXPECT_EQ(buffer[3], 'x');
}

TEST(CStringBuffers, CopyOfTheTextBelongsToTheCaller) {
    const CString string("abc");
    const std::unique_ptr<char[]> copy(string.GetCharString());
    EXPECT_STREQ(copy.get(), "abc");
    EXPECT_NE(copy.get(), string.GetBuffer());
}

// --- Without a buffer ----------------------------------------------------------------------------

TEST_F(StringWithoutBuffer, ReadsAsEmpty) {
    EXPECT_EQ(Const(m_string).GetLength(), 0U);
    EXPECT_TRUE(Const(m_string).IsEmpty());
    EXPECT_EQ(Const(m_string).GetAt(0), '\0');
    EXPECT_EQ(Const(m_string).GetLastChar(), '\0');
    EXPECT_STREQ(Const(m_string).GetBuffer(), "");
    EXPECT_EQ(m_string.ToInt(), 0);
    EXPECT_FALSE(m_string.SetAt(0, 'x'));
}

TEST_F(StringWithoutBuffer, ComparesAsEqualToEverythingByMembersAndAsEmptyByOperators) {
    EXPECT_EQ(m_string.Compare("abc"), 0);
    EXPECT_EQ(m_string.CompareNoCase("abc"), 0);
    EXPECT_TRUE(m_string == "");
    EXPECT_FALSE(m_string == "abc");
}

TEST_F(StringWithoutBuffer, GetBufferMakesOne) {
    ASSERT_NE(m_string.GetBuffer(), nullptr);
    EXPECT_STREQ(m_string.GetBuffer(), "");
}

TEST_F(StringWithoutBuffer, GetBufferOfASizeHoldsNothing) {
    EXPECT_STREQ(m_string.GetBuffer(5), "");
}

TEST_F(StringWithoutBuffer, AppendingAssigns) {
    m_string += "abc";
    EXPECT_STREQ(m_string.GetBuffer(), "abc");
}

TEST_F(StringWithoutBuffer, TextOperationsFindNothing) {
    EXPECT_EQ(m_string.Find("a"), -1);
    EXPECT_STREQ(m_string.ToUpper().GetBuffer(), "");
    EXPECT_STREQ(m_string.Upper().GetBuffer(), "");
    EXPECT_STREQ(m_string.Left(1).GetBuffer(), "");
    EXPECT_STREQ(m_string.Mid(0, 0).GetBuffer(), "");
    EXPECT_STREQ(m_string.Right(1).GetBuffer(), "");
    EXPECT_FALSE(m_string.StartsWith("a"));
    EXPECT_STREQ(m_string.Trim(" "), "");
}

}  // namespace
