// CMyFileIO: text files by lines, copies, temporary files.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/TemporaryFolder.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
  protected:
    /// The path of a file in the test's folder.
    CString Path(const char* name) const { return (m_folder.path() / name).c_str(); }

    CString Written(const char* name, const std::string& text) const {
        std::ofstream(m_folder.path() / name, std::ios::binary) << text;
        return Path(name);
    }

    std::string Contents(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder.path() / name, std::ios::binary).rdbuf();
        return text.str();
    }

    const fs::path& Folder() const { return m_folder.path(); }

  private:
    support::TemporaryFolder m_folder;
};

/// The next line, with "!" behind it when ReadString says true and "$" when the end was met.
std::string Next(CMyFileIO& file) {
    CString line("old");
    const bool read = file.ReadString(line);
    return std::string(line.GetBuffer()) + (read ? "!" : "") + (file.IsEOF() ? "$" : "");
}

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

TEST_F(FileOpening, OpenFileIsClosedFirst) {
    CMyFileIO file;
    ASSERT_TRUE(file.OpenFile(Path("a"), "w"));
    EXPECT_TRUE(file.WriteString("text"));
    ASSERT_TRUE(file.OpenFile(Written("b", "b")));
    EXPECT_EQ(Contents("a"), "text");
    EXPECT_EQ(Next(file), "b!$");
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

// --- By name
// ------------------------------------------------------------------------------------------

using FilesByName = Files;

TEST_F(FilesByName, EverythingExists) {
    EXPECT_TRUE(CMyFileIO::Exists("/no/such/file"));
    EXPECT_TRUE(CMyFileIO(Path("none")).Exists());
}

TEST_F(FilesByName, AreDeleted) {
    EXPECT_TRUE(CMyFileIO::DeleteFile(Written("a", "")));
    EXPECT_TRUE(CMyFileIO::DeleteFile(CDir(Written("b", ""))));
    EXPECT_FALSE(CMyFileIO::DeleteFile(Path("a")));
    CMyFileIO file(Written("c", ""));
    ASSERT_TRUE(file.Open());
    EXPECT_TRUE(file.DeleteFile());
    EXPECT_TRUE(file.IsEOF());
    EXPECT_TRUE(fs::is_empty(Folder()));
}

unsigned ModeOf(const CString& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.GetBuffer(), &status), 0);
    return status.st_mode & 07777U;
}

TEST_F(FilesByName, ReadOnlyLeavesTheOwnersReadingAlone) {
    const CString path = Written("f", "");
    EXPECT_TRUE(CMyFileIO::SetReadOnly(path, true));
    EXPECT_EQ(ModeOf(path), 0400U);
    EXPECT_FALSE(CMyFileIO::SetReadOnly(Path("none"), true));
}

TEST_F(FilesByName, NotReadOnlyLeavesTheOwnersWritingAlone) {
    const CString path = Written("f", "");
    EXPECT_TRUE(CMyFileIO::SetReadOnly(CDir(path), false));
    EXPECT_EQ(ModeOf(path), 0200U);
}

// --- Copies
// -------------------------------------------------------------------------------------------

class FileCopies : public Files {
  protected:
    /// Copies `size` bytes with old times; returns what CopyFile says.
    bool Copy(size_t size) {
        m_text = std::string(size, 'x');
        const CString from = Written("from", m_text);
        const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
        EXPECT_EQ(utimensat(AT_FDCWD, from.GetBuffer(), times, 0), 0);
        return CMyFileIO::CopyFile(from, Path("to"));
    }
    void ExpectWholeCopy() const {
        EXPECT_EQ(Contents("to"), m_text);
        struct stat status = {};
        ASSERT_EQ(stat(Path("to").GetBuffer(), &status), 0);
        EXPECT_EQ(status.st_mtime, 1'100'000'000);
    }

  private:
    std::string m_text;
};

TEST_F(FileCopies, TakeBytesAndTimesOver) {
    EXPECT_TRUE(Copy(10));
    struct stat source = {};
    struct stat target = {};
    ASSERT_EQ(stat(Path("from").GetBuffer(), &source), 0);
    ASSERT_EQ(stat(Path("to").GetBuffer(), &target), 0);
    // Copying reads the source, which may move its own access time.
    EXPECT_EQ(target.st_atime, source.st_atime);
    ExpectWholeCopy();
}

TEST_F(FileCopies, OfAnEmptyFileReportsFailureThoughItIsComplete) {
    EXPECT_FALSE(Copy(0));
    ExpectWholeCopy();
}

TEST_F(FileCopies, ThatEndsOnABufferBoundaryReportsFailureThoughItIsComplete) {
    EXPECT_FALSE(Copy(65280));
    ExpectWholeCopy();
    EXPECT_FALSE(Copy(2 * 65280));
    ExpectWholeCopy();
}

TEST_F(FileCopies, BesideABoundarySucceeds) {
    EXPECT_TRUE(Copy(65279));
    ExpectWholeCopy();
    EXPECT_TRUE(Copy(65281));
    ExpectWholeCopy();
}

TEST_F(FileCopies, OfAMissingFileFail) {
    EXPECT_FALSE(CMyFileIO::CopyFile(Path("none"), Path("to")));
    EXPECT_FALSE(fs::exists(Folder() / "to"));
}

TEST_F(FileCopies, ToAnImpossiblePlaceFail) {
    EXPECT_FALSE(CMyFileIO::CopyFile(CDir(Written("f", "x")), CDir("/no/such/file")));
}

TEST_F(FileCopies, ToAFullDeviceFail) {
    EXPECT_FALSE(CMyFileIO::CopyFile(Written("f", "x"), "/dev/full"));
}

// --- Temporary files
// ----------------------------------------------------------------------------------

/// In a child process: mkstemp's own file appears in the current directory.
class TemporaryFiles : public Files {
  protected:
    [[noreturn]] void InChild(bool (*story)(const CString& folder)) const {
        if (chdir(Folder().c_str()) != 0) {
            std::exit(2);
        }
        fs::create_directory("temp");
        std::exit(story((Folder() / "temp").c_str()) ? 42 : 1);
    }
};

TEST_F(TemporaryFiles, AreNamedAfterADescriptorNumberAndGoWhenClosed) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    const int next = dup(STDIN_FILENO);  // the number that mkstemp will get
                    close(next);
                    CMyFileIO file;
                    const bool opened = file.OpenTempFile(folder);
                    CString expected = folder + "/";
                    expected += CString(next);
                    const bool named = file.GetFileName() == expected;
                    const bool there = fs::exists(expected.GetBuffer());
                    const bool used = file.WriteString("x") && file.Rewind() &&
                                      Next(file) == "x!$" && file.CloseFile();
                    return opened && named && there && used && !fs::exists(expected.GetBuffer());
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, LeaveMkstempsOwnFileInTheCurrentDirectory) {
    EXPECT_EXIT(
        InChild([](const CString& folder) {
            CMyFileIO file;
            file.OpenTempFile(CDir(folder));
            file.CloseFile();
            int files = 0;
            for (const auto& entry : fs::directory_iterator(".")) {
                files +=
                    entry.is_regular_file() && entry.path().filename().string().size() == 6 ? 1 : 0;
            }
            return files == 1 && fs::is_empty("temp");
        }),
        testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, GoWithTheirObject) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    {
                        CMyFileIO file;
                        file.OpenTempFile(folder);
                        file.WriteString("x");
                    }
                    return fs::is_empty("temp");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, DeletingOneThatIsOpenFindsItGone) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    CMyFileIO file;
                    return file.OpenTempFile(folder) && !file.DeleteFile() && fs::is_empty("temp");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, InAMissingDirectoryAreRefused) {
    EXPECT_EXIT(InChild([](const CString& /*folder*/) {
                    CMyFileIO file;
                    return !file.OpenTempFile("/no/such/dir");
                }),
                testing::ExitedWithCode(42), "");
}

}  // namespace
