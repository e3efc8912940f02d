// Making the levels of a path, with steps that look at the file system or note what they are asked.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/VerboseOutput.h"
#include "util/DirectoryTree.h"

namespace {

namespace fs = std::filesystem;

using support::PrintedAtLevel;
using support::TemporaryFolder;

/// Looks. Before a missing path is made it opens the one above: the mode of what was made there
/// lets its owner write into it only if that is root.
bool ExistsOrCanBeMade(const CDir& path) {
    const fs::path looked = path.ToString().GetBuffer();
    if (fs::exists(looked)) {
        return true;
    }
    std::error_code ignored;
    fs::permissions(looked.parent_path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    return false;
}

constexpr directory_tree::Steps kLooking = {ExistsOrCanBeMade, nullptr, nullptr};

bool MakeDirectory(const std::string& path) {
    return directory_tree::MakeDirectory(path.c_str(), kLooking);
}

TEST(MakeDirectory, MakesEachMissingLevelWithItsOddMode) {
    const TemporaryFolder folder;
    const mode_t mask = umask(0);
    const fs::path deep = folder.path() / "x" / "y";
    EXPECT_TRUE(MakeDirectory(deep));
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat(deep.c_str(), &status), 0);
    // Of the hexadecimal 0x777, octal 03567, mkdir takes the permissions and the sticky bit.
    EXPECT_EQ(status.st_mode & 01777U, 01567U);
}

TEST(MakeDirectory, SaysWhatItMakesAtLevel5) {
    const TemporaryFolder folder;
    const std::string base = folder.path();
    EXPECT_EQ(PrintedAtLevel(5, [&] { EXPECT_TRUE(MakeDirectory(base + "/x/y")); }),
              "mkdir " + base + "/x\nmkdir " + base + "/x/y\n\n");
}

TEST(MakeDirectory, IsSilentAtLevel4) {
    const TemporaryFolder folder;
    const std::string base = folder.path();
    EXPECT_EQ(PrintedAtLevel(4, [&] { EXPECT_TRUE(MakeDirectory(base + "/z")); }), "");
}

TEST(MakeDirectory, ExistingPathNeedsNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(PrintedAtLevel(5, [&] { EXPECT_TRUE(MakeDirectory(folder.path())); }), "");
}

TEST(MakeDirectory, StopsAtTheFirstLevelThatCannotBeMade) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "";
    const fs::path path = folder.path() / "a" / ".." / "file" / "b";
    EXPECT_FALSE(MakeDirectory(path));
    EXPECT_TRUE(fs::exists(folder.path() / "a"));
}

TEST(MakeDirectory, LevelThatCannotBeMadeIsTheLastMessage) {
    const TemporaryFolder folder;
    const std::string file = folder.path() / "file";
    std::ofstream(file) << "";
    EXPECT_EQ(PrintedAtLevel(5, [&] { EXPECT_FALSE(MakeDirectory(file + "/x")); }),
              "mkdir " + file + "/x\n");
}

TEST(MakeDirectory, LevelThatCannotBeMadeIsSilentAtLevel4) {
    const TemporaryFolder folder;
    const std::string file = folder.path() / "file";
    std::ofstream(file) << "";
    EXPECT_EQ(PrintedAtLevel(4, [&] { EXPECT_FALSE(MakeDirectory(file + "/x")); }), "");
}

/// Notes what it is asked and says that all levels exist.
std::vector<std::string> g_asked;
constexpr directory_tree::Steps kNoting = {
    [](const CDir& path) {
        g_asked.emplace_back(path.ToString().GetBuffer());
        return g_asked.size() > 1;  // the levels exist, the whole path does not
    },
    nullptr, nullptr};

std::vector<std::string> LevelsAskedFor(const char* path) {
    g_asked.clear();
    EXPECT_TRUE(directory_tree::MakeDirectory(path, kNoting));
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

TEST(MakeDirectory, BareNetworkServerIsNoLevel) {
    using Levels = std::vector<std::string>;
    EXPECT_EQ(LevelsAskedFor("\\\\s\\x/a"), Levels{});
    EXPECT_EQ(LevelsAskedFor("\\\\ab\\x/a"), (Levels{"\\\\ab\\x", "\\\\ab\\x/a"}));
}

TEST(MakeDirectory, EmptyTokenStartsAtTheRootAgain) {
    using Levels = std::vector<std::string>;
    EXPECT_EQ(LevelsAskedFor("a//b/"), (Levels{"a", "/b"}));
    EXPECT_EQ(LevelsAskedFor("/a/b/"), (Levels{"/a", "/a/b"}));
}

TEST(MakeDirectory, BlanksAtTheEndsOfThePathAreNoPartOfALevel) {
    using Levels = std::vector<std::string>;
    EXPECT_EQ(LevelsAskedFor(" a/b\t\n"), (Levels{"a", "a/b"}));
    EXPECT_EQ(LevelsAskedFor("a/ b"), (Levels{"a", "a/ b"}));
    // What stands behind the last "/" is gone, the level remains as an empty one.
    EXPECT_EQ(LevelsAskedFor("a/b/ \n"), (Levels{"a", "a/b"}));
    EXPECT_EQ(LevelsAskedFor(" "), Levels{});
}

TEST(MakeDirectory, PathOf5000LevelsIsWalked) {
    std::string path;
    for (int i = 0; i < 5'000; ++i) {
        path += "/d";
    }
    const std::vector<std::string> levels = LevelsAskedFor(path.c_str());
    ASSERT_EQ(levels.size(), 5'000U);
    EXPECT_EQ(levels.front(), "/d");
    EXPECT_EQ(levels.back(), path);
}

}  // namespace
