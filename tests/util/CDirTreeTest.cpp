// CDir's own answers about directories, which look at nothing, and its messages.
#include <gtest/gtest.h>
#include <stdio_ext.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "support/TemporaryFolder.h"
#include "support/VerboseOutput.h"
#include "util/CDir.h"

namespace {

namespace fs = std::filesystem;

using support::PrintedAtLevel;
using support::TemporaryFolder;

const int g_verboseLevelAtStart = CDir().GetVerboseLevel();

TEST(CDirVerboseLevel, IsZeroAtFirst) {
    EXPECT_EQ(g_verboseLevelAtStart, 0);
}

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
    EXPECT_EQ(PrintedAtLevel(9, [] { EXPECT_TRUE(CDir("/").CopyFiles(CString("/tmp"))); }), "");
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

TEST(CDirInert, CopyDirectoryOfAnEmptyPathFailsWithOnePathToo) {
    EXPECT_FALSE(CDir("").CopyDirectory(CDir("/tmp")));
    EXPECT_FALSE(CDir("").CopyDirectory(CString("/tmp")));
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
    EXPECT_FALSE(CDir().RemoveDirectory(CDir("")));
    EXPECT_FALSE(CDir("").RemoveDirectory());
}

TEST(CDirCopyFile, CopiesOneFile) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "a") << "text";
    const CDir source(CString((folder.path() / "a").c_str()));
    EXPECT_TRUE(source.CopyFile(CString((folder.path() / "b").c_str())));
    EXPECT_TRUE(source.CopyFile(CDir(CString((folder.path() / "c").c_str()))));
    EXPECT_EQ(fs::file_size(folder.path() / "b"), 4U);
    EXPECT_EQ(fs::file_size(folder.path() / "c"), 4U);
}

TEST(CDirMessages, AreShownUpToTheVerboseLevel) {
    EXPECT_EQ(CDir().GetVerboseLevel(), 0);
    EXPECT_EQ(PrintedAtLevel(0, [] { CDir().DisplayMessage("shown", 0); }), "shown\n");
    EXPECT_EQ(PrintedAtLevel(0, [] { CDir().DisplayMessage("hidden", 1); }), "");
    EXPECT_EQ(PrintedAtLevel(3, [] { CDir().DisplayMessage("shown", 3); }), "shown\n");
}

TEST(CDirMessages, LevelIsSharedByAllPaths) {
    CDir("/a").SetVerboseLevel(4);
    EXPECT_EQ(CDir("/b").GetVerboseLevel(), 4);
    CDir().SetVerboseLevel(0);
}

TEST(CDirMessages, AreFlushed) {
    EXPECT_EQ(PrintedAtLevel(0,
                             [] {
                                 CDir().DisplayMessage("shown", 0);
                                 EXPECT_EQ(__fpending(stdout), 0U);
                             }),
              "shown\n");
}

}  // namespace
