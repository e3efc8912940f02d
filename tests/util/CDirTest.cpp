// CDir: the path as text and its parts.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "util/CDir.h"

namespace {

struct Parts {
    std::string drive;
    std::string dir;
    std::string name;
    std::string ext;
    bool operator==(const Parts&) const = default;
};

void PrintTo(const Parts& parts, std::ostream* stream) {
    *stream << parts.drive << '|' << parts.dir << '|' << parts.name << '|' << parts.ext;
}

Parts Split(const char* path) {
    CString drive("old");
    CString dir("old");
    CString name("old");
    CString ext("old");
    EXPECT_TRUE(CDir(path).SplitPath(drive, dir, name, ext));
    return {drive.GetBuffer(), dir.GetBuffer(), name.GetBuffer(), ext.GetBuffer()};
}

TEST(CDirSplitPath, DriveDirectoryNameAndExtension) {
    EXPECT_EQ(Split("C:/dir/sub/file.txt"), (Parts{"C:", "/dir/sub/", "file", ".txt"}));
}

TEST(CDirSplitPath, MissingPartLeavesWhatItsStringReceivedBefore) {
    CString drive;
    CString dir;
    CString nameAndExtension;
    CDir("/tmp/README").SplitPath(drive, dir, nameAndExtension, nameAndExtension);
    EXPECT_STREQ(nameAndExtension.GetBuffer(), "README");
}

TEST(CDirSplitPath, NameIsAlwaysAResultEvenAnEmptyOne) {
    CString drive;
    CString dirAndName;
    CString ext;
    CDir("/usr/").SplitPath(drive, dirAndName, dirAndName, ext);
    EXPECT_STREQ(dirAndName.GetBuffer(), "");
}

TEST(CDirSplitPath, BlanksAtTheEndsAreNoPartOfIt) {
    EXPECT_EQ(Split("  /usr/lib/libfoo.so.6 \n"), (Parts{"", "/usr/lib/", "libfoo.so", ".6"}));
}

TEST(CDirSplitPath, ExtensionHasThreeCharactersAtMost) {
    EXPECT_EQ(Split("archive.tar.gz"), (Parts{"", "", "archive.tar", ".gz"}));
    EXPECT_EQ(Split("README.markdown"), (Parts{"", "", "README.markdown", ""}));
    EXPECT_EQ(Split("file."), (Parts{"", "", "file", "."}));
    EXPECT_EQ(Split("a.abcd"), (Parts{"", "", "a.abcd", ""}));
    EXPECT_EQ(Split(".abc"), (Parts{"", "", "", ".abc"}));
}

TEST(CDirSplitPath, NetworkDriveEndsAtTheFirstBackslashFromPositionFourOn) {
    EXPECT_EQ(Split("\\\\server\\share\\dir/file.c"),
              (Parts{"\\\\server\\", "share\\dir/", "file", ".c"}));
    EXPECT_EQ(Split("\\\\server"), (Parts{"", "", "\\\\server", ""}));
    EXPECT_EQ(Split("\\\\s\\x"), (Parts{"", "", "\\\\s\\x", ""}));
}

TEST(CDirSplitPath, BackslashAtPositionFourEndsANetworkDrive) {
    EXPECT_EQ(Split("\\\\ab\\x"), (Parts{"\\\\ab\\", "", "x", ""}));
}

TEST(CDirSplitPath, NetworkDriveNeedsTwoBackslashesAtTheStart) {
    EXPECT_EQ(Split("abcd\\ef"), (Parts{"", "", "abcd\\ef", ""}));
    EXPECT_EQ(Split("\\abcd\\e"), (Parts{"", "", "\\abcd\\e", ""}));
    EXPECT_EQ(Split("a\\bcd\\e"), (Parts{"", "", "a\\bcd\\e", ""}));
}

TEST(CDirSplitPath, DriveEndsAtTheFirstColon) {
    EXPECT_EQ(Split("a:b:c"), (Parts{"a:", "", "b:c", ""}));
}

TEST(CDirSplitPath, ColonWinsOverTheNetworkDrive) {
    EXPECT_EQ(Split("\\\\srv\\x:/f"), (Parts{"\\\\srv\\x:", "/", "f", ""}));
}

TEST(CDirSplitPath, ColonWinsOverTheSlash) {
    EXPECT_EQ(Split("dir/a:b"), (Parts{"dir/a:", "", "b", ""}));
}

TEST(CDirSplitPath, EmptyPathHasEmptyParts) {
    EXPECT_EQ(Split(""), (Parts{"", "", "", ""}));
    EXPECT_EQ(Split(" \t\n"), (Parts{"", "", "", ""}));
}

TEST(CDirSplitPath, LeavesThePathAlone) {
    CDir path(" a ");
    CString drive;
    CString dir;
    CString name;
    CString ext;
    path.SplitPath(drive, dir, name, ext);
    EXPECT_STREQ(path.ToString().GetBuffer(), " a ");
}

TEST(CDirParts, OfAnAbsolutePath) {
    CDir path("/tmp/data.bin");
    EXPECT_STREQ(path.GetFileName().GetBuffer(), "data");
    EXPECT_STREQ(path.GetExtension().GetBuffer(), ".bin");
    EXPECT_STREQ(path.GetName().GetBuffer(), "data.bin");
    EXPECT_STREQ(path.GetPath().GetBuffer(), "/tmp");
    EXPECT_STREQ(path.GetDirectory().GetBuffer(), "/tmp/");
    EXPECT_STREQ(path.GetDrive().GetBuffer(), "");
    EXPECT_STREQ(path.GetFileName("/x/other.c").GetBuffer(), "other");
    EXPECT_STREQ(CDir("C:/x").GetDrive().GetBuffer(), "C:");
}

TEST(CDirParts, PathAndNameWithoutASlash) {
    EXPECT_STREQ(CDir("C:file").GetPath().GetBuffer(), "C");
    EXPECT_STREQ(CDir("C:file").GetName().GetBuffer(), "file");
    EXPECT_STREQ(CDir("file").GetPath().GetBuffer(), "");
    EXPECT_STREQ(CDir("file").GetName().GetBuffer(), "file");
    EXPECT_STREQ(CDir("/file").GetPath().GetBuffer(), "");
    EXPECT_STREQ(CDir("/usr/lib/").GetName().GetBuffer(), "");
    EXPECT_STREQ(CDir("").GetPath().GetBuffer(), "");
    EXPECT_STREQ(CDir("").GetName().GetBuffer(), "");
}

TEST(CDirParts, PathEndsBeforeTheFirstColon) {
    EXPECT_STREQ(CDir("a:b:c").GetPath().GetBuffer(), "a");
}

TEST(CDirParts, NameBeginsBehindTheFirstColon) {
    EXPECT_STREQ(CDir("a:b:c").GetName().GetBuffer(), "b:c");
}

TEST(CDirParts, SlashAtTheStartWinsOverTheColon) {
    EXPECT_STREQ(CDir("/a:b").GetPath().GetBuffer(), "");
    EXPECT_STREQ(CDir("/a:b").GetName().GetBuffer(), "a:b");
}

TEST(CDirParts, PathKeepsBlanksAtItsStart) {
    EXPECT_STREQ(CDir(" a/b").GetPath().GetBuffer(), " a");
}

TEST(CDirParts, NameKeepsBlanksAtItsEnd) {
    EXPECT_STREQ(CDir(" /a ").GetName().GetBuffer(), "a ");
}

TEST(CDirParts, DepthCountsOneLevelMoreThanTheSlashes) {
    EXPECT_EQ(CDir("file.txt").GetDepth(), 0U);
    EXPECT_EQ(CDir("a/b").GetDepth(), 2U);
    EXPECT_EQ(CDir("/usr/lib/x").GetDepth(), 4U);
    EXPECT_EQ(CDir("/").GetDepth(), 2U);
}

TEST(CDirParts, AbsolutePathIsThePathItself) {
    CDir path("rel/x");
    EXPECT_STREQ(path.GetAbsolutePath().GetBuffer(), "rel/x");
    EXPECT_STREQ(path.ToAbsolutePath().GetBuffer(), "rel/x");
    EXPECT_STREQ(path.ToString().GetBuffer(), "rel/x");
}

std::string Joined(const char* path, const char* part) {
    CDir dir(path);
    const CString text = dir.AddPath(CString(part));
    EXPECT_TRUE(dir == text);
    return text.GetBuffer();
}

TEST(CDirAddPath, PutsOneSlashAtTheJoint) {
    EXPECT_EQ(Joined("", "x"), "x");
    EXPECT_EQ(Joined("/a", "b"), "/a/b");
    EXPECT_EQ(Joined("/a/", "/b"), "/a/b");
    EXPECT_EQ(Joined("/a", "/b"), "/a/b");
    EXPECT_EQ(Joined("/a/", "b"), "/a/b");
    EXPECT_EQ(Joined("/a", ""), "/a");
    EXPECT_EQ(Joined("", ""), "");
    EXPECT_EQ(Joined("a//", "/b"), "a//b");
    EXPECT_EQ(Joined("/", "/b"), "/b");
}

TEST(CDirAddPath, TakesAPathToo) {
    CDir path("/a");
    EXPECT_STREQ(path.AddPath(CDir("b")).GetBuffer(), "/a/b");
}

TEST(CDirMakePath, IgnoresTheDrive) {
    CDir path;
    EXPECT_STREQ(path.MakePath("C:", "/tmp", "f", ".txt").GetBuffer(), "/tmp/f.txt");
    EXPECT_STREQ(path.ToString().GetBuffer(), "/tmp/f.txt");
    EXPECT_STREQ(path.MakePath("", "", "f", "").GetBuffer(), "f");
}

TEST(CDirMakePath, PutsOneSlashBetweenDirectoryAndName) {
    EXPECT_STREQ(CDir().MakePath("", "/tmp/", "/f", "").GetBuffer(), "/tmp/f");
}

TEST(CDirOperators, ConcatenateWithoutASeparator) {
    EXPECT_STREQ((CDir("/tmp") + CString("x")).GetBuffer(), "/tmpx");
    EXPECT_STREQ((CString("/tmp") + CDir("x")).GetBuffer(), "/tmpx");
    EXPECT_STREQ((CDir("/tmp") + CDir("x")).GetBuffer(), "/tmpx");
    CDir path("/tmp");
    path += CString("a");
    path += CDir("b");
    EXPECT_STREQ(path.ToString().GetBuffer(), "/tmpab");
}

TEST(CDirOperators, AppendingGivesThePathItself) {
    CDir path("/tmp");
    EXPECT_EQ(&(path += CDir("a")), &path);
    EXPECT_EQ(&(path += CString("b")), &path);
}

TEST(CDirOperators, AssignmentGivesThePathItself) {
    CDir path;
    EXPECT_EQ(&(path = CDir("a")), &path);
    EXPECT_EQ(&(path = CString("b")), &path);
}

TEST(CDirOperators, PathsAreEqualByBytes) {
    EXPECT_TRUE(CDir("/tmp") == CDir("/tmp"));
    EXPECT_FALSE(CDir("/TMP") == CDir("/tmp"));
    EXPECT_FALSE(CDir("/tmp") == CDir("/tmp/"));
}

TEST(CDirOperators, PathEqualsATextByBytes) {
    EXPECT_TRUE(CDir("/tmp") == CString("/tmp"));
    EXPECT_FALSE(CDir("/TMP") == CString("/tmp"));
    EXPECT_FALSE(CDir("/tmp") == CString("/tmp/"));
}

TEST(CDirOperators, TextEqualsAPathByBytes) {
    EXPECT_TRUE(CString("/tmp") == CDir("/tmp"));
    EXPECT_FALSE(CString("/TMP") == CDir("/tmp"));
    EXPECT_FALSE(CString("/tmp") == CDir("/tmp/"));
}

TEST(CDirOperators, PathsDifferByBytes) {
    EXPECT_FALSE(CDir("a") != CDir("a"));
    EXPECT_TRUE(CDir("a") != CDir("b"));
    EXPECT_TRUE(CDir("/TMP") != CDir("/tmp"));
}

TEST(CDirOperators, PathDiffersFromATextByBytes) {
    EXPECT_FALSE(CDir("/tmp") != CString("/tmp"));
    EXPECT_TRUE(CDir("/tmp") != CString("/tmp/"));
    EXPECT_TRUE(CDir("/TMP") != CString("/tmp"));
}

TEST(CDirOperators, TextDiffersFromAPathByBytes) {
    EXPECT_FALSE(CString("a") != CDir("a"));
    EXPECT_TRUE(CString("a") != CDir("b"));
    EXPECT_TRUE(CString("/TMP") != CDir("/tmp"));
}

TEST(CDirValue, IsAssignedAndCopied) {
    CDir path(CString("/a"));
    CDir copy(path);
    const CDir constant("/b");
    CDir fromConstant(constant);
    EXPECT_STREQ(copy.ToString().GetBuffer(), "/a");
    EXPECT_STREQ(fromConstant.ToString().GetBuffer(), "/b");
    copy = constant;
    EXPECT_STREQ(copy.ToString().GetBuffer(), "/b");
    copy = CString("/c");
    EXPECT_EQ(copy.GetLength(), 2U);
    EXPECT_FALSE(copy.IsEmpty());
    copy.Empty();
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_TRUE(CDir().IsEmpty());
}

TEST(CDirValue, IsWrittenToAStream) {
    std::ostringstream stream;
    stream << CDir("/a b");
    EXPECT_EQ(stream.str(), "/a b");
}

TEST(CDirValue, WritingGivesTheStreamItself) {
    std::ostringstream stream;
    EXPECT_EQ(&(stream << CDir("a")), &stream);
}

TEST(CDirValue, LongPathsAreSplitToo) {
    const std::string directory = "/" + std::string(5000, 'd') + "/";
    const Parts parts = Split((directory + std::string(5000, 'n') + ".c").c_str());
    EXPECT_EQ(parts.dir, directory);
    EXPECT_EQ(parts.name, std::string(5000, 'n'));
    EXPECT_EQ(parts.ext, ".c");
}

}  // namespace
