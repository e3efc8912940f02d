// CMyFileIO: files given by name: deleted, protected, copied with their times.
#include <fcntl.h>
#include <sys/stat.h>

#include "util/FileFixture.h"

namespace {

namespace fs = std::filesystem;

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

struct stat StatusOf(const CString& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.GetBuffer(), &status), 0);
    return status;
}

unsigned ModeOf(const CString& path) {
    return StatusOf(path).st_mode & 07777U;
}

TEST_F(FilesByName, ReadOnlyLeavesTheOwnersReadingAlone) {
    const CString path = Written("f", "");
    EXPECT_TRUE(CMyFileIO::SetReadOnly(path, true));
    EXPECT_EQ(ModeOf(path), 0400U);
    EXPECT_FALSE(CMyFileIO::SetReadOnly(Path("none"), true));
    const CString other = Written("g", "");
    EXPECT_TRUE(CMyFileIO::SetReadOnly(CDir(other), true));
    EXPECT_EQ(ModeOf(other), 0400U);
}

TEST_F(FilesByName, NotReadOnlyLeavesTheOwnersWritingAlone) {
    const CString path = Written("f", "");
    EXPECT_TRUE(CMyFileIO::SetReadOnly(CDir(path), false));
    EXPECT_EQ(ModeOf(path), 0200U);
}

/// Last accessed in 2036, which reading does not change on most file systems; last modified in
/// 2004.
void SetOldTimes(const CString& path) {
    const timespec times[] = {{2'100'000'000, 0}, {1'100'000'000, 0}};
    EXPECT_EQ(utimensat(AT_FDCWD, path.GetBuffer(), times, 0), 0);
}

TEST_F(FilesByName, AreCopiedByDirectoryObjectsToo) {
    EXPECT_TRUE(CMyFileIO::CopyFile(CDir(Written("from", "text")), CDir(Path("to"))));
    EXPECT_EQ(Contents("to"), "text");
}

class FileCopies : public Files {
  protected:
    /// Copies `size` bytes with old times; returns what CopyFile says.
    bool Copy(size_t size) {
        m_text = std::string(size, 'x');
        const CString from = Written("from", m_text);
        SetOldTimes(from);
        return CMyFileIO::CopyFile(from, Path("to"));
    }
    /// Looks at the times before anything reads the target.
    void ExpectWholeCopy() const {
        const struct stat source = StatusOf(Path("from"));
        const struct stat target = StatusOf(Path("to"));
        EXPECT_EQ(target.st_mtime, 1'100'000'000);
        // Copying reads the source, which may move its own access time.
        EXPECT_EQ(target.st_atime, source.st_atime);
        EXPECT_EQ(Contents("to"), m_text);
    }

  private:
    std::string m_text;
};

TEST_F(FileCopies, TakeBytesAndTimesOver) {
    EXPECT_TRUE(Copy(10));
    ExpectWholeCopy();
}

TEST_F(FileCopies, OfAnEmptyFileReportsFailureThoughItIsComplete) {
    EXPECT_FALSE(Copy(0));
    ExpectWholeCopy();
}

TEST_F(FileCopies, ThatEndsOnABufferBoundaryReportsFailureThoughItIsComplete) {
    EXPECT_FALSE(Copy(65280));
    ExpectWholeCopy();
    EXPECT_FALSE(Copy(2 * size_t{65280}));
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

TEST_F(FileCopies, OfAMissingFileLeaveTheTargetAlone) {
    const CString target = Written("to", "old");
    SetOldTimes(target);
    EXPECT_FALSE(CMyFileIO::CopyFile(Path("none"), target));
    EXPECT_EQ(StatusOf(target).st_mtime, 1'100'000'000);
    EXPECT_EQ(StatusOf(target).st_atime, 2'100'000'000);
    EXPECT_EQ(Contents("to"), "old");
}

TEST_F(FileCopies, ToADirectoryFailButSetItsTimes) {
    fs::create_directory(Folder() / "to");
    EXPECT_FALSE(Copy(10));
    EXPECT_EQ(StatusOf(Path("to")).st_mtime, 1'100'000'000);
    EXPECT_EQ(StatusOf(Path("to")).st_atime, StatusOf(Path("from")).st_atime);
}

TEST_F(FileCopies, OfADirectoryFailButEmptyTheTargetAndSetItsTimes) {
    fs::create_directory(Folder() / "from");
    SetOldTimes(Path("from"));
    EXPECT_FALSE(CMyFileIO::CopyFile(CDir(Path("from")), CDir(Written("to", "old"))));
    EXPECT_EQ(StatusOf(Path("to")).st_mtime, 1'100'000'000);
    EXPECT_EQ(Contents("to"), "");
}

TEST_F(FileCopies, ToAFullDeviceFail) {
    EXPECT_FALSE(CMyFileIO::CopyFile(Written("f", "x"), "/dev/full"));
}

}  // namespace
