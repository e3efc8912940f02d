// CString: assignment, appending, removing and output.
#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "util/CString.h"

namespace {

// --- Assignment ----------------------------------------------------------------------------------

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

TEST(CStringAssignment, OfACharacterKeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list = ',';
    EXPECT_STREQ(list.GetBuffer(), ",");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
}

TEST(CStringAssignment, OfAStringDoesNotCopyTheMarkOfTheEmptyToken) {
    CString marked;
    marked.AddToken("", ",");
    CString string("old");
    string = marked;
    EXPECT_STREQ(string.GetBuffer(), "");
    EXPECT_EQ(string.GetNumberTokens(","), 0);
}

TEST(CStringAssignment, OfAnEmptyTextClearsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list = "";
    EXPECT_EQ(list.GetNumberTokens(","), 0);
}

// --- Appending -----------------------------------------------------------------------------------

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

TEST(CStringAppending, KeepsTheMarkOfTheEmptyToken) {
    CString list;
    list.AddToken("", ",");
    list += "a,b";
    EXPECT_STREQ(list.GetBuffer(), "a,b");
    EXPECT_EQ(list.GetNumberTokens(","), 1);
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

TEST(CStringStream, WritesInTheWidthOfTheStream) {
    std::ostringstream stream;
    stream << std::setw(5) << CString("ab") << '|' << std::left << std::setw(4) << CString("c")
           << '|';
    EXPECT_EQ(stream.str(), "   ab|c   |");
}

TEST(CStringStream, ReturnsTheStream) {
    std::ostringstream stream;
    EXPECT_EQ(&(stream << CString("a")), &stream);
}

}  // namespace
