// New folders: complete under their name or not there at all.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "machine/Files.h"
#include "machine/NewFolder.h"
#include "machine/TrustedPath.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::CreateFileWith;
using machine::FileDescriptor;
using machine::NewFolder;
using machine::OpenTrustedDirectory;
using machine::Outcome;

size_t CountIn(const fs::path& folder) {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class NewFolderTest : public testing::Test {
  protected:
    support::TemporaryFolder m_folder;
    fs::path m_path = m_folder.path() / "new";
};

TEST_F(NewFolderTest, AppearsUnderItsNameWhenItIsFinished) {
    Outcome<NewFolder> folder = NewFolder::Begin(m_path);
    ASSERT_TRUE(folder) << folder.Reason();
    ASSERT_TRUE(CreateFileWith(folder->Get(), "file", {'x'}));
    EXPECT_FALSE(fs::exists(m_path));
    EXPECT_EQ(folder->Finish(), "");
    EXPECT_EQ(fs::file_size(m_path / "file"), 1U);
    EXPECT_EQ(CountIn(m_folder.path()), 1U);
}

TEST_F(NewFolderTest, VanishesWithAllThatIsInItUnlessItIsFinished) {
    {
        Outcome<NewFolder> folder = NewFolder::Begin(m_path);
        ASSERT_TRUE(folder);
        ASSERT_TRUE(CreateFileWith(folder->Get(), "file", {'x'}));
        ASSERT_EQ(mkdirat(folder->Get(), "deep", 0755), 0);
        const FileDescriptor deep = machine::OpenDirectory(folder->Get(), "deep");
        ASSERT_TRUE(CreateFileWith(deep.Get(), "file", {'x'}));
        ASSERT_EQ(symlinkat("/", folder->Get(), "link"), 0);
    }
    EXPECT_EQ(CountIn(m_folder.path()), 0U);
    EXPECT_TRUE(fs::exists("/"));
}

TEST_F(NewFolderTest, ReplacesNothingThatCameInTheMeantime) {
    {
        Outcome<NewFolder> folder = NewFolder::Begin(m_path);
        ASSERT_TRUE(folder);
        fs::create_directory(m_path);
        EXPECT_EQ(folder->Finish(), m_path.string() + " exists already");
    }
    EXPECT_TRUE(fs::is_empty(m_path));
    EXPECT_EQ(CountIn(m_folder.path()), 1U);
}

TEST_F(NewFolderTest, LinkThatIsPlantedInTheMeantimeStaysAndLeadsNowhere) {
    const fs::path target = m_folder.path() / "target";
    fs::create_directory(target);
    Outcome<NewFolder> folder = NewFolder::Begin(m_path);
    ASSERT_TRUE(folder);
    fs::create_symlink(target, m_path);
    EXPECT_EQ(folder->Finish(), m_path.string() + " exists already");
    EXPECT_TRUE(fs::is_symlink(m_path));
    EXPECT_TRUE(fs::is_empty(target));
}

TEST_F(NewFolderTest, FilesAreNotCreatedThroughLinks) {
    Outcome<NewFolder> folder = NewFolder::Begin(m_path);
    ASSERT_TRUE(folder);
    const fs::path target = m_folder.path() / "target";
    ASSERT_EQ(symlinkat(target.c_str(), folder->Get(), "mem"), 0);
    EXPECT_FALSE(CreateFileWith(folder->Get(), "mem", {'x'}));
    EXPECT_FALSE(fs::exists(target));
}

// --- The way to it ------------------------------------------------------------------------------

class TrustedPath : public testing::Test {
  protected:
    TrustedPath() {
        fs::create_directories(m_folder.path() / "real/inner");
        std::ofstream(m_folder.path() / "file") << "text";
    }

    /// Whether the path leads to real/inner for a user; what went wrong otherwise.
    std::string Open(const fs::path& path, uid_t user = geteuid()) const {
        const Outcome<FileDescriptor> directory = OpenTrustedDirectory(path, user);
        if (!directory) {
            return directory.Reason();
        }
        std::error_code error;
        const fs::path reached = fs::read_symlink(directory->Path(), error);
        return fs::equivalent(reached, m_folder.path() / "real/inner") ? "" : reached.string();
    }

    support::TemporaryFolder m_folder;
    fs::path m_link = m_folder.path() / "link";
};

TEST_F(TrustedPath, WithoutLinksIsFollowed) {
    EXPECT_EQ(Open(m_folder.path() / "real/inner"), "");
    EXPECT_EQ(Open(m_folder.path() / "real//./inner/"), "");
    EXPECT_EQ(Open(m_folder.path() / "real/inner/../inner"), "");
}

TEST_F(TrustedPath, RelativeOneBeginsInTheCurrentDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(m_folder.path());
    EXPECT_EQ(Open("real/inner"), "");
    fs::current_path(before);
}

TEST_F(TrustedPath, OwnLinksAreFollowed) {
    fs::create_directory_symlink("real", m_link);
    EXPECT_EQ(Open(m_link / "inner"), "");
    fs::create_directory_symlink(m_folder.path() / "link/inner", m_folder.path() / "absolute");
    EXPECT_EQ(Open(m_folder.path() / "absolute"), "");
}

TEST_F(TrustedPath, LinkOfAnotherUserIsNot) {
    fs::create_directory_symlink("real", m_link);
    // The link is this user's: to somebody else it is another user's, unless this one is root.
    if (geteuid() == 0) {
        ASSERT_EQ(lchown(m_link.c_str(), 65534, 65534), 0);
    }
    EXPECT_EQ(Open(m_link / "inner", geteuid() + 1),
              (m_link / "inner").string() + ": link is a link of another user");
}

TEST_F(TrustedPath, LinkOfRootIsFollowed) {
    const Outcome<FileDescriptor> directory = OpenTrustedDirectory("/proc/self", geteuid() + 1);
    EXPECT_TRUE(directory) << directory.Reason();
}

TEST_F(TrustedPath, LinksThatGoRoundEnd) {
    fs::create_symlink("link", m_link);
    EXPECT_EQ(Open(m_link), m_link.string() + ": Too many levels of symbolic links");
}

TEST_F(TrustedPath, FileOnTheWayIsNoDirectory) {
    const fs::path path = m_folder.path() / "file/inner";
    EXPECT_EQ(Open(path), path.string() + ": Not a directory");
}

}  // namespace
