// CMyFileIO: opening, reading by lines, writing and closing; comments.
#include <unistd.h>

#include <type_traits>

#include "util/FileFixture.h"

namespace {

using FileReading = Files;

TEST_F(FileReading, KeepsNewlinesAndDropsCarriageReturns) {
    CMyFileIO file(Written("f", "a\r\nb"));
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(Next(file), "a\n!");
    EXPECT_EQ(Next(file), "b!$");
    EXPECT_EQ(Next(file), "$");
}

TEST_F(FileReading, DropsCarriageReturnsAnywhereAndNuls) {
    CMyFileIO file(Written("f", std::string("\ra\rb\0c\xFF\n\r\n\r", 11)));
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(Next(file), "abc\xFF\n!");
    EXPECT_EQ(Next(file), "\n!");
    EXPECT_EQ(Next(file), "$");
}

TEST_F(FileReading, EmptyLineReadsAsANewline) {
    CMyFileIO file(Written("f", "\n\na\n"));
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(Next(file), "\n!");
    EXPECT_EQ(Next(file), "\n!");
    EXPECT_EQ(Next(file), "a\n!");
    EXPECT_EQ(Next(file), "$");
}

TEST_F(FileReading, EmptyFileEndsAtOnce) {
    CMyFileIO file(Written("f", ""));
    ASSERT_TRUE(file.Open());
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ(Next(file), "$");
}

TEST_F(FileReading, LinesMayBeAsLongAsMemory) {
    CMyFileIO file(Written("f", std::string(1 << 20, 'x') + "\nb\n"));
    ASSERT_TRUE(file.Open());
    CString line;
    EXPECT_TRUE(file.ReadString(line));
    EXPECT_EQ(line.GetLength(), (1U << 20) + 1);
    EXPECT_EQ(Next(file), "b\n!");
}

TEST_F(FileReading, RewindStartsAnew) {
    CMyFileIO file(Written("f", "a"));
    EXPECT_FALSE(file.Rewind());
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(Next(file), "a!$");
    EXPECT_TRUE(file.Rewind());
    EXPECT_EQ(Next(file), "a!$");
}

TEST_F(FileReading, RewindTakesTheEndBack) {
    CMyFileIO file(Written("f", "a"));
    ASSERT_TRUE(file.Open());
    EXPECT_EQ(Next(file), "a!$");
    EXPECT_TRUE(file.Rewind());
    EXPECT_FALSE(file.IsEOF());
}

TEST_F(FileReading, ClosedFileReadsNothing) {
    CMyFileIO file(Written("f", "a"));
    EXPECT_EQ(Next(file), "$");
    CMyFileIO unnamed;
    EXPECT_EQ(Next(unnamed), "$");
}

TEST_F(FileReading, DirectoryReadsNothing) {
    CMyFileIO file(CDir(Folder().c_str()));
    file.Open();
    EXPECT_EQ(Next(file), "$");
}

using FileOpening = Files;

TEST_F(FileOpening, MissingFileIsRefused) {
    CMyFileIO file;
    EXPECT_FALSE(file.OpenFile(Path("none")));
    EXPECT_TRUE(file.IsEOF());
    EXPECT_FALSE(file.CloseFile());
}

TEST_F(FileOpening, WithoutANameIsRefused) {
    CMyFileIO file;
    EXPECT_FALSE(file.Open());
    EXPECT_FALSE(file.Open("w"));
    EXPECT_STREQ(file.GetFileName().GetBuffer(), "");
}

TEST_F(FileOpening, EveryWayOfNamingOpens) {
    const CString path = Written("f", "a");
    CMyFileIO file;
    EXPECT_TRUE(file.OpenFile(path));
    EXPECT_TRUE(file.OpenFile(CDir(path)));
    EXPECT_TRUE(file.OpenFile(path, "r"));
    EXPECT_TRUE(file.OpenFile(CDir(path), "r"));
    EXPECT_TRUE(file.GetFileName() == path);
    EXPECT_TRUE(CMyFileIO(path).Open());
    EXPECT_TRUE(CMyFileIO(CDir(path)).Open());
}

TEST_F(FileOpening, ModeCountsHoweverTheFileIsNamed) {
    CMyFileIO file;
    EXPECT_FALSE(file.OpenFile(CDir(Path("new")), "r"));
    EXPECT_TRUE(file.OpenFile(CDir(Path("new")), "w"));
    EXPECT_TRUE(file.OpenFile(Path("other"), "w"));
}

TEST_F(FileOpening, OpenFileIsClosedFirst) {
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(Path("a"), "w"));
    EXPECT_TRUE(file.WriteString("text"));
    ASSERT_TRUE(file.OpenFile(Written("b", "b")));
    EXPECT_EQ(Contents("a"), "text");
    EXPECT_EQ(Next(file), "b!$");
}

TEST_F(FileOpening, WithoutAModeIsForReadingAlone) {
    const CString path = Written("f", "kept");
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(path));
    EXPECT_FALSE(file.WriteString("x"));
    ASSERT_TRUE(file.OpenFile(CDir(path)));
    EXPECT_FALSE(file.WriteString("x"));
    ASSERT_TRUE(file.Open());
    EXPECT_FALSE(file.WriteString("x"));
    ASSERT_TRUE(file.Open(""));
    EXPECT_FALSE(file.WriteString("x"));
    file.Close();
    EXPECT_EQ(Contents("f"), "kept");
}

TEST(FileObjects, AreNeverCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<CMyFileIO>);
    EXPECT_FALSE(std::is_copy_assignable_v<CMyFileIO>);
}

using FileWriting = Files;

TEST_F(FileWriting, WritesTextAndNewlines) {
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(Path("f"), "w"));
    EXPECT_TRUE(file.WriteString("a"));
    EXPECT_TRUE(file.WriteStringNL());
    EXPECT_TRUE(file.WriteStringNL("b"));
    EXPECT_TRUE(file.WriteString(""));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Contents("f"), "a\nb\n");
}

TEST_F(FileWriting, ClosedOrReadOnlyStreamRefuses) {
    CMyFileIO file(Written("f", "a"));
    EXPECT_FALSE(file.WriteString("x"));
    EXPECT_FALSE(file.WriteStringNL());
    EXPECT_FALSE(file.WriteStringNL("x"));
    ASSERT_TRUE(file.Open("r"));
    EXPECT_FALSE(file.WriteString("x"));
    EXPECT_FALSE(file.WriteStringNL("x"));
}

TEST_F(FileWriting, FullDeviceShowsAtTheLatestOnClose) {
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile("/dev/full", "w"));
    file.WriteString("lost");
    EXPECT_FALSE(file.CloseFile());
    EXPECT_FALSE(file.CloseFile());
}

TEST_F(FileWriting, FailureToCloseIsFalseAndLeavesTheObjectClosed) {
    const int next = NextDescriptor();
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(Path("f"), "w"));
    ASSERT_EQ(close(next), 0);  // behind the object's back
    EXPECT_FALSE(file.CloseFile());
    EXPECT_TRUE(file.IsEOF());
    EXPECT_FALSE(file.WriteString("x"));
}

TEST_F(FileWriting, DestructorCloses) {
    {
        CMyFileIO file;
        ASSERT_TRUE(file.OpenFile(Path("f"), "w"));
        file.WriteString("kept");
    }
    EXPECT_EQ(Contents("f"), "kept");
}

TEST(FileComments, BeginWithSemicolonHashOrTwoSlashes) {
    EXPECT_TRUE(CMyFileIO::IsComment("  ; x"));
    EXPECT_TRUE(CMyFileIO::IsComment("#x"));
    EXPECT_TRUE(CMyFileIO::IsComment("//x"));
    EXPECT_TRUE(CMyFileIO::IsComment("\t//\n"));
    EXPECT_FALSE(CMyFileIO::IsComment("/x"));
    EXPECT_FALSE(CMyFileIO::IsComment(""));
    EXPECT_FALSE(CMyFileIO::IsComment("   "));
    EXPECT_FALSE(CMyFileIO::IsComment("x ; y"));
}

}  // namespace
