// Copying, making and removing directories: CDir's own inert answers, and the algorithms behind
// them with steps that look at the file system.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "support/TemporaryFolder.h"
#include "util/CDir.h"
#include "util/DirectoryTree.h"

namespace {

namespace fs = std::filesystem;

using support::TemporaryFolder;

/// What is printed while `action` runs at a verbose level, which ends with it.
template <typename Action>
std::string Printed(int level, const Action& action) {
    testing::internal::CaptureStdout();
    CDir().SetVerboseLevel(level);
    action();
    CDir().SetVerboseLevel(0);
    return testing::internal::GetCapturedStdout();
}

void WriteFile(const fs::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

CString Listing(const CDir& directory, bool directories) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory.ToString().GetBuffer())) {
        if (entry.is_directory() == directories) {
            names.insert(entry.path().filename());
        }
    }
    CString list;
    for (const std::string& name : names) {
        list.AddToken(name.c_str(), ",");
    }
    return list;
}

/// Steps that really look.
constexpr directory_tree::Steps kLooking = {
    [](const CDir& path) { return fs::exists(path.ToString().GetBuffer()); },
    [](const CDir& directory) { return Listing(directory, false); },
    [](const CDir& directory) { return Listing(directory, true); }};

// --- CDir's own answers
// -----------------------------------------------------------------------------

TEST(CDirInert, EverythingExists) {
    EXPECT_TRUE(CDir("").Exists());
    EXPECT_TRUE(CDir().Exists(CDir("/no/such/dir")));
    EXPECT_TRUE(CDir().Exists(CString("/no/such/dir")));
}

TEST(CDirInert, ListingsAreEmptyAndTrue) {
    CString list("old");
    EXPECT_TRUE(CDir("/").GetFiles(list));
    EXPECT_STREQ(list.GetBuffer(), "");
    list = "old";
    EXPECT_TRUE(CDir("/").GetSubdirectories(list));
    EXPECT_STREQ(list.GetBuffer(), "");
    list = "old";
    EXPECT_TRUE(CDir("/").GetDirectory(static_cast<CDir::CDTYPES>(1), list));
    EXPECT_STREQ(list.GetBuffer(), "");
}

TEST(CDirInert, CopyFilesHasNothingToCopy) {
    EXPECT_EQ(Printed(9, [] { EXPECT_TRUE(CDir("/").CopyFiles(CString("/tmp"))); }), "");
    EXPECT_TRUE(CDir("/").CopyFiles(CDir("/tmp")));
}

TEST(CDirInert, CopyDirectoryWantsTwoPathsAndCreatesNothing) {
    const TemporaryFolder folder;
    const CString target((folder.path() / "b").c_str());
    EXPECT_FALSE(CDir().CopyDirectory(CDir(""), CDir("/tmp")));
    EXPECT_FALSE(CDir().CopyDirectory(CDir("/a"), CDir("")));
    EXPECT_TRUE(CDir().CopyDirectory(CDir("/a"), CDir(target)));
    EXPECT_TRUE(CDir("/a").CopyDirectory(CDir(target)));
    EXPECT_TRUE(CDir("/a").CopyDirectory(target));
    EXPECT_FALSE(fs::exists(folder.path() / "b"));
}

TEST(CDirInert, MakeDirectoryMakesNone) {
    const TemporaryFolder folder;
    const CString path((folder.path() / "x" / "y").c_str());
    EXPECT_TRUE(CDir().MakeDirectory(path));
    EXPECT_TRUE(CDir().MakeDirectory(CDir(path)));
    EXPECT_TRUE(CDir(path).MakeDirectory());
    EXPECT_FALSE(fs::exists(folder.path() / "x"));
}

TEST(CDirInert, RemoveDirectoryRemovesNothing) {
    const TemporaryFolder folder;
    const CString path(folder.path().c_str());
    EXPECT_TRUE(CDir().RemoveDirectory(path));
    EXPECT_TRUE(CDir().RemoveDirectory(CDir(path)));
    EXPECT_TRUE(CDir(path).RemoveDirectory());
    EXPECT_TRUE(fs::exists(folder.path()));
    EXPECT_FALSE(CDir().RemoveDirectory(CString("")));
    EXPECT_FALSE(CDir("").RemoveDirectory());
}

TEST(CDirCopyFile, CopiesOneFile) {
    const TemporaryFolder folder;
    WriteFile(folder.path() / "a", "text");
    const CDir source(CString((folder.path() / "a").c_str()));
    EXPECT_TRUE(source.CopyFile(CString((folder.path() / "b").c_str())));
    EXPECT_TRUE(source.CopyFile(CDir(CString((folder.path() / "c").c_str()))));
    EXPECT_EQ(fs::file_size(folder.path() / "b"), 4U);
    EXPECT_EQ(fs::file_size(folder.path() / "c"), 4U);
}

TEST(CDirMessages, AreShownUpToTheVerboseLevel) {
    EXPECT_EQ(CDir().GetVerboseLevel(), 0);
    EXPECT_EQ(Printed(0, [] { CDir().DisplayMessage("shown", 0); }), "shown\n");
    EXPECT_EQ(Printed(0, [] { CDir().DisplayMessage("hidden", 1); }), "");
    EXPECT_EQ(Printed(3, [] { CDir().DisplayMessage("shown", 3); }), "shown\n");
}

TEST(CDirMessages, LevelIsSharedByAllPaths) {
    CDir("/a").SetVerboseLevel(4);
    EXPECT_EQ(CDir("/b").GetVerboseLevel(), 4);
    CDir().SetVerboseLevel(0);
}

// --- With steps that look
// ---------------------------------------------------------------------------

TEST(MakeDirectory, MakesEachMissingLevelWithItsOddMode) {
    const TemporaryFolder folder;
    const mode_t mask = umask(0);
    const fs::path deep = folder.path() / "x" / "y";
    EXPECT_TRUE(directory_tree::MakeDirectory(deep.c_str(), kLooking));
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat(deep.c_str(), &status), 0);
    // Of the hexadecimal 0x777, octal 03567, mkdir takes the permissions and the sticky bit.
    EXPECT_EQ(status.st_mode & 01777U, 01567U);
}

TEST(MakeDirectory, SaysWhatItMakesAtLevel5) {
    const TemporaryFolder folder;
    const std::string base = folder.path();
    EXPECT_EQ(Printed(5, [&] { directory_tree::MakeDirectory((base + "/x/y").c_str(), kLooking); }),
              "mkdir " + base + "/x\nmkdir " + base + "/x/y\n\n");
    EXPECT_EQ(Printed(4, [&] { directory_tree::MakeDirectory((base + "/z").c_str(), kLooking); }),
              "");
}

TEST(MakeDirectory, ExistingPathNeedsNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(
        Printed(
            5,
            [&] { EXPECT_TRUE(directory_tree::MakeDirectory(folder.path().c_str(), kLooking)); }),
        "");
}

TEST(MakeDirectory, StopsAtTheFirstLevelThatCannotBeMade) {
    const TemporaryFolder folder;
    WriteFile(folder.path() / "file", "");
    const fs::path path = folder.path() / "a" / ".." / "file" / "b";
    EXPECT_FALSE(directory_tree::MakeDirectory(path.c_str(), kLooking));
    EXPECT_TRUE(fs::exists(folder.path() / "a"));
}

/// Notes what it is asked and says that nothing exists.
std::vector<std::string> g_asked;
constexpr directory_tree::Steps kNothingExists = {
    [](const CDir& path) {
        g_asked.emplace_back(path.ToString().GetBuffer());
        return g_asked.size() > 1;  // the levels exist, the whole path does not
    },
    nullptr, nullptr};

std::vector<std::string> LevelsAskedFor(const char* path) {
    g_asked.clear();
    EXPECT_TRUE(directory_tree::MakeDirectory(path, kNothingExists));
    return {g_asked.begin() + 1, g_asked.end()};
}

TEST(MakeDirectory, RootDriveAndNetworkServerAreNoLevels) {
    using Levels = std::vector<std::string>;
    EXPECT_EQ(LevelsAskedFor("/a/b"), (Levels{"/a", "/a/b"}));
    EXPECT_EQ(LevelsAskedFor("C:/a"), (Levels{"C:/a"}));
    EXPECT_EQ(LevelsAskedFor("\\\\server"), Levels{});
    EXPECT_EQ(LevelsAskedFor("\\\\server\\share/a"),
              (Levels{"\\\\server\\share", "\\\\server\\share/a"}));
}

TEST(CopyFiles, CopiesEachFileAndSaysSoAtLevel3) {
    const TemporaryFolder folder;
    const std::string from = folder.path() / "from";
    const std::string to = folder.path() / "to";
    fs::create_directory(from);
    fs::create_directory(to);
    WriteFile(from + "/a", "1");
    WriteFile(from + "/b", "22");
    EXPECT_EQ(Printed(3,
                      [&] {
                          EXPECT_TRUE(directory_tree::CopyFiles(CDir(from.c_str()),
                                                                CDir(to.c_str()), kLooking));
                      }),
              "copy " + from + "/a -> " + to + "/a\ncopy " + from + "/b -> " + to + "/b\n");
    EXPECT_EQ(fs::file_size(to + "/b"), 2U);
}

TEST(CopyFiles, StopsAtTheFirstFailureAndSaysSoAtLevel1) {
    const TemporaryFolder folder;
    const std::string from = folder.path() / "from";
    fs::create_directory(from);
    WriteFile(from + "/a", "1");
    WriteFile(from + "/b", "1");
    EXPECT_EQ(Printed(1,
                      [&] {
                          EXPECT_FALSE(directory_tree::CopyFiles(CDir(from.c_str()),
                                                                 CDir("/no/such"), kLooking));
                      }),
              "Unable to copy file " + from + "/a to /no/such/a\n");
}

TEST(CopyDirectory, CopiesATree) {
    const TemporaryFolder folder;
    const std::string from = folder.path() / "from";
    const std::string to = folder.path() / "to";
    fs::create_directories(from + "/s/t");
    WriteFile(from + "/a", "1");
    WriteFile(from + "/s/t/b", "22");
    const mode_t mask = umask(0);
    EXPECT_TRUE(directory_tree::CopyDirectory(CDir(from.c_str()), CDir(to.c_str()), kLooking));
    umask(mask);
    EXPECT_EQ(fs::file_size(to + "/a"), 1U);
    EXPECT_EQ(fs::file_size(to + "/s/t/b"), 2U);
}

TEST(CopyDirectory, MissingSourceIsDoneAlready) {
    const TemporaryFolder folder;
    const std::string to = folder.path() / "to";
    EXPECT_TRUE(directory_tree::CopyDirectory(CDir("/no/such"), CDir(to.c_str()), kLooking));
    EXPECT_FALSE(fs::exists(to));
}

TEST(CopyDirectory, SaysWhichSubdirectoryFailed) {
    const TemporaryFolder folder;
    const std::string from = folder.path() / "from";
    const std::string to = folder.path() / "to";
    fs::create_directories(from + "/s");
    fs::create_directory(to);
    WriteFile(to + "/s", "in the way");
    WriteFile(from + "/s/b", "1");
    EXPECT_EQ(Printed(1,
                      [&] {
                          EXPECT_FALSE(directory_tree::CopyDirectory(CDir(from.c_str()),
                                                                     CDir(to.c_str()), kLooking));
                      }),
              "Unable to copy file " + from + "/s/b to " + to + "/s/b\n\nCopyPath(" + from +
                  "/s, " + to + "/s) failed.\n");
}

TEST(CopyDirectory, TargetThatCannotBeMadeFails) {
    const TemporaryFolder folder;
    WriteFile(folder.path() / "file", "");
    const std::string to = folder.path() / "file" / "to";
    EXPECT_FALSE(
        directory_tree::CopyDirectory(CDir(folder.path().c_str()), CDir(to.c_str()), kLooking));
}

}  // namespace
