// CDir: asking for and changing the working directory.
// Leaves the process where it stood.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/TemporaryFolder.h"
#include "util/CDir.h"

namespace {

namespace fs = std::filesystem;

using support::TemporaryFolder;

/// Brings the process back to where it stands now, from wherever it went.
class ReturnHere {
  public:
    ReturnHere() : m_here(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
    ReturnHere(const ReturnHere&) = delete;
    ReturnHere& operator=(const ReturnHere&) = delete;
    ~ReturnHere() {
        if (fchdir(m_here) != 0) {
            std::abort();
        }
        close(m_here);
    }

  private:
    int m_here;
};

TEST(CDirWorkingDirectory, IsTakenOver) {
    char here[4096];
    ASSERT_NE(getcwd(here, sizeof here), nullptr);
    CDir path("elsewhere");
    EXPECT_STREQ(path.GetCwd().GetBuffer(), here);
    EXPECT_STREQ(path.ToString().GetBuffer(), "elsewhere");
    EXPECT_STREQ(path.ToCwd().GetBuffer(), here);
    EXPECT_STREQ(path.ToString().GetBuffer(), here);
}

TEST(CDirWorkingDirectory, IsChangedForTheProcess) {
    const TemporaryFolder folder;
    const ReturnHere back;
    EXPECT_TRUE(CDir(folder.path().c_str()).ChDir());
    EXPECT_EQ(fs::current_path(), fs::canonical(folder.path()));
}

TEST(CDirWorkingDirectory, MissingDirectoryIsRefused) {
    const fs::path before = fs::current_path();
    EXPECT_FALSE(CDir("/no/such/dir").ChDir());
    EXPECT_EQ(fs::current_path(), before);
}

TEST(CDirWorkingDirectory, RemovedOneCannotBeReadAndIsEmpty) {
    const TemporaryFolder folder;
    const fs::path removed = folder.path() / "removed";
    fs::create_directory(removed);
    const ReturnHere back;
    fs::current_path(removed);
    ASSERT_STREQ(CDir("/").GetCwd().GetBuffer(), fs::current_path().c_str());
    fs::remove(removed);
    EXPECT_STREQ(CDir().GetCwd().GetBuffer(), "");
}

/// A new directory in `base` whose whole path has `length` characters.
std::string DirectoryOfLength(const fs::path& base, size_t length) {
    std::string path = fs::canonical(base).string() + "/";
    const size_t start = path.size();
    path.append(length - start, 'd');
    for (size_t i = start + 200; i + 1 < length; i += 200) {
        path[i] = '/';
    }
    fs::create_directories(path);
    return path;
}

TEST(CDirWorkingDirectory, Of1023CharactersIsRead) {
    const TemporaryFolder folder;
    const std::string path = DirectoryOfLength(folder.path(), 1023);
    const ReturnHere back;
    fs::current_path(path);
    EXPECT_EQ(CDir().GetCwd().GetBuffer(), path);
}

TEST(CDirWorkingDirectory, Of1024CharactersIsEmpty) {
    const TemporaryFolder folder;
    const std::string path = DirectoryOfLength(folder.path(), 1024);
    const ReturnHere back;
    fs::current_path(path);
    EXPECT_STREQ(CDir().GetCwd().GetBuffer(), "");
}

TEST(CDirWorkingDirectory, ThatCannotBeReadEmptiesThePath) {
    const TemporaryFolder folder;
    const std::string path = DirectoryOfLength(folder.path(), 1024);
    const ReturnHere back;
    fs::current_path(path);
    CDir taken("elsewhere");
    EXPECT_STREQ(taken.ToCwd().GetBuffer(), "");
    EXPECT_TRUE(taken.IsEmpty());
}

}  // namespace
