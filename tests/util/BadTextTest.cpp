// CMyFileIO reads lines that no text file should have: NUL bytes, mixed line ends, bytes above 127,
// and no newline at the end.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "util/MyFileIO.h"

namespace {

using Lines = std::vector<std::string>;

class BadText : public testing::Test {
  protected:
    CString Path() const { return (m_folder.path() / "f").c_str(); }

    CString Written(const std::string& text) const {
        std::ofstream(m_folder.path() / "f", std::ios::binary) << text;
        return Path();
    }

    /// The lines that ReadString gives until it says false; then the end must be met.
    Lines LinesOf(const std::string& text) const {
        CMyFileIO file(Written(text));
        EXPECT_TRUE(file.Open());
        Lines lines;
        CString line;
        while (file.ReadString(line)) {
            lines.emplace_back(line.GetBuffer());
        }
        EXPECT_STREQ(line.GetBuffer(), "");
        EXPECT_TRUE(file.IsEOF());
        return lines;
    }

  private:
    support::TemporaryFolder m_folder;
};

TEST_F(BadText, NulBytesAreDroppedAndHideNothing) {
    EXPECT_EQ(LinesOf(std::string("\0a\0\0b\nc\0\n", 9)), (Lines{"ab\n", "c\n"}));
    EXPECT_EQ(LinesOf(std::string("a\n\0b", 4)), (Lines{"a\n", "b"}));
}

TEST_F(BadText, LineOfNulBytesIsAnEmptyOne) {
    EXPECT_EQ(LinesOf(std::string("\0\0\nb\n", 5)), (Lines{"\n", "b\n"}));
}

TEST_F(BadText, NulBytesAtTheEndAreNoLine) {
    EXPECT_EQ(LinesOf(std::string("a\n\0\0", 4)), (Lines{"a\n"}));
    EXPECT_EQ(LinesOf(std::string(1, '\0')), Lines{});
    EXPECT_EQ(LinesOf(std::string(1 << 20, '\0')), Lines{});
}

TEST_F(BadText, LineEndsOfEveryKindMayBeMixed) {
    EXPECT_EQ(LinesOf("a\r\nb\n\rc\r\r\n\r\nd\n"), (Lines{"a\n", "b\n", "c\n", "\n", "d\n"}));
}

TEST_F(BadText, CarriageReturnAloneEndsNoLine) {
    EXPECT_EQ(LinesOf("a\rb\rc"), Lines{"abc"});
    EXPECT_EQ(LinesOf("a\rb\r"), Lines{"ab"});
    EXPECT_EQ(LinesOf("\r\r\r"), Lines{});
    EXPECT_EQ(LinesOf("a\n\r"), Lines{"a\n"});
}

TEST_F(BadText, CarriageReturnAndNulMayBeMixed) {
    EXPECT_EQ(LinesOf(std::string("\r\0\r\n\0\ra\0\r", 9)), (Lines{"\n", "a"}));
}

TEST_F(BadText, LastLineWithoutANewlineIsALineWithTheEndMet) {
    CMyFileIO file(Written("a\n\xE9"));
    ASSERT_TRUE(file.Open());
    CString line;
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_FALSE(file.IsEOF());
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_STREQ(line.GetBuffer(), "\xE9");
    EXPECT_TRUE(file.IsEOF());
}

TEST_F(BadText, ByteOf255IsNoEnd) {
    EXPECT_EQ(LinesOf("\xFF\xFF\n\xFF"), (Lines{"\xFF\xFF\n", "\xFF"}));
}

TEST_F(BadText, EveryOtherByteIsKept) {
    std::string text;
    std::string kept;
    for (int byte = 0; byte < 256; ++byte) {
        text += static_cast<char>(byte);
        if (byte != '\0' && byte != '\n' && byte != '\r') {
            kept += static_cast<char>(byte);
        }
    }
    EXPECT_EQ(LinesOf(text), (Lines{kept.substr(0, 9) + "\n", kept.substr(9)}));
}

TEST_F(BadText, BytesAbove127AreWrittenAsTheyAre) {
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(Path(), "w+"));
    EXPECT_TRUE(file.WriteStringNL("\x80\xE9\xFF"));
    EXPECT_TRUE(file.Rewind());
    CString line;
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_STREQ(line.GetBuffer(), "\x80\xE9\xFF\n");
}

TEST_F(BadText, CommentMayBeginBehindOddBlanksOnly) {
    EXPECT_TRUE(CMyFileIO::IsComment("\n\t ;\xFF"));
    EXPECT_FALSE(CMyFileIO::IsComment("\r;"));
    EXPECT_FALSE(CMyFileIO::IsComment("\xA0;"));
    EXPECT_FALSE(CMyFileIO::IsComment("/ /"));
}

}  // namespace
