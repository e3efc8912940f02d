// Copying directories, with steps that look at the file system or answer from a list.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/VerboseOutput.h"
#include "util/DirectoryTree.h"

namespace {

namespace fs = std::filesystem;

using support::PrintedAtLevel;
using support::TemporaryFolder;

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

/// Two folders that exist, to copy between.
struct Folders {
    Folders() {
        fs::create_directory(from);
        fs::create_directory(to);
    }

    TemporaryFolder folder;
    std::string from = folder.path() / "from";
    std::string to = folder.path() / "to";
};

bool CopyFiles(const std::string& from, const std::string& to) {
    return directory_tree::CopyFiles(CDir(from.c_str()), CDir(to.c_str()), kLooking);
}

bool CopyDirectory(const std::string& from, const std::string& to) {
    return directory_tree::CopyDirectory(CDir(from.c_str()), CDir(to.c_str()), kLooking);
}

// --- Files ----------------------------------------------------------------------------------

TEST(CopyFiles, CopiesEachFileAndSaysSoAtLevel3) {
    const Folders folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    WriteFile(from + "/a", "1");
    WriteFile(from + "/b", "22");
    EXPECT_EQ(PrintedAtLevel(3, [&] { EXPECT_TRUE(CopyFiles(from, to)); }),
              "copy " + from + "/a -> " + to + "/a\ncopy " + from + "/b -> " + to + "/b\n");
    EXPECT_EQ(fs::file_size(to + "/b"), 2U);
}

TEST(CopyFiles, CopiedFileIsNoMessageOfLevel2) {
    const Folders folders;
    WriteFile(folders.from + "/a", "1");
    EXPECT_EQ(PrintedAtLevel(2, [&] { EXPECT_TRUE(CopyFiles(folders.from, folders.to)); }), "");
}

TEST(CopyFiles, StopsAtTheFirstFailureAndSaysSoAtLevel1) {
    const Folders folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    WriteFile(from + "/a", "1");
    WriteFile(from + "/b", "1");
    EXPECT_EQ(PrintedAtLevel(1, [&] { EXPECT_FALSE(CopyFiles(from, "/no/such")); }),
              "Unable to copy file " + from + "/a to /no/such/a\n");
}

TEST(CopyFiles, FailureIsSilentAtLevel0) {
    const Folders folders;
    WriteFile(folders.from + "/a", "1");
    EXPECT_EQ(PrintedAtLevel(0, [&] { EXPECT_FALSE(CopyFiles(folders.from, "/no/such")); }), "");
}

TEST(CopyFiles, FailureIsSaidAfterTheAttemptAtLevel3) {
    const Folders folders;
    const std::string from = folders.from;
    WriteFile(from + "/a", "1");
    EXPECT_EQ(
        PrintedAtLevel(3, [&] { EXPECT_FALSE(CopyFiles(from, "/no/such")); }),
        "copy " + from + "/a -> /no/such/a\nUnable to copy file " + from + "/a to /no/such/a\n");
}

// --- Trees ----------------------------------------------------------------------------------

TEST(CopyDirectory, CopiesATree) {
    const Folders folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    fs::create_directories(from + "/s/t");
    fs::create_directories(to + "/s/t");
    WriteFile(from + "/a", "1");
    WriteFile(from + "/s/t/b", "22");
    EXPECT_TRUE(CopyDirectory(from, to));
    EXPECT_EQ(fs::file_size(to + "/a"), 1U);
    EXPECT_EQ(fs::file_size(to + "/s/t/b"), 2U);
}

TEST(CopyDirectory, MakesTheTarget) {
    const Folders folders;
    EXPECT_TRUE(CopyDirectory(folders.from, folders.to + "/new"));
    EXPECT_TRUE(fs::is_directory(folders.to + "/new"));
}

TEST(CopyDirectory, MissingSourceIsDoneAlready) {
    const Folders folders;
    EXPECT_TRUE(CopyDirectory("/no/such", folders.to + "/new"));
    EXPECT_FALSE(fs::exists(folders.to + "/new"));
}

TEST(CopyDirectory, TargetThatCannotBeMadeFails) {
    const Folders folders;
    WriteFile(folders.to + "/file", "");
    EXPECT_FALSE(CopyDirectory(folders.from, folders.to + "/file/new"));
}

TEST(CopyDirectory, SaysAnEmptyLineBeforeEachSubdirectoryAtLevel5) {
    const Folders folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    fs::create_directory(from + "/s");
    fs::create_directory(from + "/t");
    EXPECT_EQ(PrintedAtLevel(5, [&] { EXPECT_TRUE(CopyDirectory(from, to)); }),
              "\nmkdir " + to + "/s\n\n\nmkdir " + to + "/t\n\n");
}

TEST(CopyDirectory, DirectoriesAreNoMessagesOfLevel3) {
    const Folders folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    WriteFile(from + "/a", "1");
    fs::create_directory(from + "/s");
    EXPECT_EQ(PrintedAtLevel(3, [&] { EXPECT_TRUE(CopyDirectory(from, to)); }),
              "copy " + from + "/a -> " + to + "/a\n");
    EXPECT_TRUE(fs::is_directory(to + "/s"));
}

/// Two folders, the second with a file where the first has a directory with a file.
struct FoldersInTheWay : Folders {
    FoldersInTheWay() {
        fs::create_directory(from + "/s");
        WriteFile(from + "/s/b", "1");
        WriteFile(to + "/s", "in the way");
    }
};

TEST(CopyDirectory, SaysWhichSubdirectoryFailedAtLevel1) {
    const FoldersInTheWay folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    EXPECT_EQ(PrintedAtLevel(1, [&] { EXPECT_FALSE(CopyDirectory(from, to)); }),
              "Unable to copy file " + from + "/s/b to " + to + "/s/b\n\nCopyPath(" + from +
                  "/s, " + to + "/s) failed.\n");
}

TEST(CopyDirectory, SaysWhichSubdirectoryFailedAtLevel3) {
    const FoldersInTheWay folders;
    const std::string from = folders.from;
    const std::string to = folders.to;
    EXPECT_EQ(PrintedAtLevel(3, [&] { EXPECT_FALSE(CopyDirectory(from, to)); }),
              "copy " + from + "/s/b -> " + to + "/s/b\nUnable to copy file " + from + "/s/b to " +
                  to + "/s/b\n\nCopyPath(" + from + "/s, " + to + "/s) failed.\n");
}

TEST(CopyDirectory, FailureIsSilentAtLevel0) {
    const FoldersInTheWay folders;
    EXPECT_EQ(PrintedAtLevel(0, [&] { EXPECT_FALSE(CopyDirectory(folders.from, folders.to)); }),
              "");
}

// --- Steps that answer from a list ------------------------------------------------------------

std::string g_list;                // the names in /list
std::vector<std::string> g_asked;  // the directories whose existence was asked for

CString NamesIn(const CDir& directory) {
    return directory == CString("/list") ? g_list.c_str() : "";
}

bool NoteAndFindAllButWhatIsListed(const CDir& path) {
    g_asked.emplace_back(path.ToString().GetBuffer());
    return !path.ToString().StartsWith("/list/");
}

constexpr directory_tree::Steps kFilesOfTheList = {[](const CDir&) { return true; }, NamesIn,
                                                   [](const CDir&) { return CString(); }};
constexpr directory_tree::Steps kDirectoriesOfTheList = {
    NoteAndFindAllButWhatIsListed, [](const CDir&) { return CString(); }, NamesIn};

/// What is said of the first file that a listing names; it is missing.
std::string SaidOfTheFirstFile(const char* list) {
    g_list = list;
    return PrintedAtLevel(1, [] {
        EXPECT_FALSE(directory_tree::CopyFiles(CDir("/list"), CDir("/to"), kFilesOfTheList));
    });
}

/// The directories that are copied when a listing is `list`.
std::vector<std::string> DirectoriesCopied(const std::string& list) {
    g_list = list;
    g_asked.clear();
    EXPECT_TRUE(directory_tree::CopyDirectory(CDir("/list"), CDir("/to"), kDirectoriesOfTheList));
    // The source, then the target, before the directories.
    return {g_asked.begin() + 2, g_asked.end()};
}

TEST(CopyDirectory, WalksTheNamesOfAListingInItsOrder) {
    using Names = std::vector<std::string>;
    EXPECT_EQ(DirectoriesCopied("b,a,c d"), (Names{"/list/b", "/list/a", "/list/c d"}));
}

TEST(CopyDirectory, BlanksAtTheEndsOfAListingAreNoPartOfAName) {
    using Names = std::vector<std::string>;
    EXPECT_EQ(DirectoriesCopied(" a , b\t\n"), (Names{"/list/a ", "/list/ b"}));
}

TEST(CopyFiles, BlanksAtTheEndsOfAListingAreNoPartOfAName) {
    EXPECT_EQ(SaidOfTheFirstFile(" \ta\n"), "Unable to copy file /list/a to /to/a\n");
}

std::string TwentyThousandNames() {
    std::string list = "0";
    for (int i = 1; i < 20'000; ++i) {
        list += ',' + std::to_string(i);
    }
    return list;
}

TEST(CopyDirectory, ListingOf20000NamesIsWalked) {
    const std::vector<std::string> names = DirectoriesCopied(TwentyThousandNames());
    ASSERT_EQ(names.size(), 20'000U);
    EXPECT_EQ(names.front(), "/list/0");
    EXPECT_EQ(names[9'999], "/list/9999");
    EXPECT_EQ(names.back(), "/list/19999");
}

}  // namespace
