// CString: construction, numbers, assignment, appending, elements and the raw buffer.
#include <gtest/gtest.h>

#include <climits>
#include <sstream>

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

const CString& Const(const CString& string) {
    return string;
}

// --- Construction -------------------------------------------------------------------------------

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

TEST(CStringConstruction, RepeatedCharacter) {
    EXPECT_STREQ(CString('x', 0).GetBuffer(), "");
    EXPECT_STREQ(CString('x', 1).GetBuffer(), "x");
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

// --- Numbers ------------------------------------------------------------------------------------

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

// --- Assignment ---------------------------------------------------------------------------------

TEST(CStringAssignment, OfTextAndNull) {
    CString string("old");
    string = "new text";
    EXPECT_STREQ(string.GetBuffer(), "new text");
    string = static_cast<const char*>(nullptr);
    EXPECT_STREQ(string.GetBuffer(), "");
    string = "x";
    string = "";
    EXPECT_STREQ(string.GetBuffer(), "");
}

TEST(CStringAssignment, FromTheOwnBufferKeepsTheText) {
    CString string("text");
    string = string.GetBuffer();
    EXPECT_STREQ(string.GetBuffer(), "text");
    string = string.GetBuffer() + 2;
    EXPECT_STREQ(string.GetBuffer(), "xt");
}

TEST(CStringAssignment, OfACharacter) {
    CString string("old");
    string = 'c';
    EXPECT_STREQ(string.GetBuffer(), "c");
    string = '\0';
    EXPECT_STREQ(string.GetBuffer(), "");
}

TEST(CStringAssignment, OfAStringCopiesItsText) {
    const CString other("other");
    CString string;
    string = other;
    EXPECT_STREQ(string.GetBuffer(), "other");
    EXPECT_NE(string.GetBuffer(), other.GetBuffer());
}

// --- Appending ----------------------------------------------------------------------------------

TEST(CStringAppending, OfTextCharacterAndString) {
    CString string("ab");
    string += "cd";
    string += 'e';
    string += CString("fg");
    EXPECT_STREQ(string.GetBuffer(), "abcdefg");
}

TEST(CStringAppending, OfNothingChangesNothing) {
    CString string("ab");
    string += static_cast<const char*>(nullptr);
    string += "";
    string += '\0';
    string += CString();
    EXPECT_STREQ(string.GetBuffer(), "ab");
}

TEST(CStringAppending, ToAnEmptyStringAssigns) {
    CString string;
    string += "text";
    EXPECT_STREQ(string.GetBuffer(), "text");
}

TEST(CStringAppending, OfTheOwnBufferDoublesTheText) {
    CString string("ab");
    string += string.GetBuffer();
    EXPECT_STREQ(string.GetBuffer(), "abab");
}

TEST(CStringRemoving, TakesTheFirstOccurrenceOut) {
    CString string("a-b-c");
    EXPECT_TRUE(string -= "-");
    EXPECT_STREQ(string.GetBuffer(), "ab-c");
    EXPECT_TRUE(string -= CString("ab"));
    EXPECT_STREQ(string.GetBuffer(), "-c");
    EXPECT_FALSE(string -= "zz");
    EXPECT_STREQ(string.GetBuffer(), "-c");
}

TEST(CStringConcatenation, InAllFiveForms) {
    EXPECT_STREQ((CString("ab") + CString("c")).GetBuffer(), "abc");
    EXPECT_STREQ((CString("ab") + "c").GetBuffer(), "abc");
    EXPECT_STREQ((CString("ab") + 'c').GetBuffer(), "abc");
    EXPECT_STREQ(("ab" + CString("c")).GetBuffer(), "abc");
    EXPECT_STREQ(('c' + CString("ab")).GetBuffer(), "cab");
}

TEST(CStringConcatenation, WithNothing) {
    EXPECT_STREQ((CString("ab") + "").GetBuffer(), "ab");
    EXPECT_STREQ((CString("ab") + static_cast<const char*>(nullptr)).GetBuffer(), "ab");
    EXPECT_STREQ((static_cast<const char*>(nullptr) + CString("ab")).GetBuffer(), "ab");
    EXPECT_STREQ((CString("ab") + '\0').GetBuffer(), "ab");
    EXPECT_STREQ(('\0' + CString("ab")).GetBuffer(), "ab");
    EXPECT_STREQ((CString() + CString()).GetBuffer(), "");
}

TEST(CStringConcatenation, ResultsAreIndependentOfEachOther) {
    CString first = CString("a") + "b";
    CString second = CString("c") + "d";
    EXPECT_STREQ(first.GetBuffer(), "ab");
    EXPECT_STREQ(second.GetBuffer(), "cd");
}

TEST(CStringStream, WritesTheText) {
    std::ostringstream stream;
    stream << CString("a b") << CString() << '.';
    EXPECT_EQ(stream.str(), "a b.");
}

// --- Elements -----------------------------------------------------------------------------------

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

TEST(CStringElements, EmptyEmpties) {
    CString string("abc");
    string.Empty();
    EXPECT_TRUE(string.IsEmpty());
    EXPECT_NE(string.GetBuffer(), nullptr);
}

// --- The lock -----------------------------------------------------------------------------------

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

// --- Buffers of the caller
// ------------------------------------------------------------------------

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

// --- Without a buffer
// -----------------------------------------------------------------------------

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
