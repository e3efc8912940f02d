// Version strings of Windows executables, and the order of versions.
#include <gtest/gtest.h>

#include <fstream>

#include "support/TemporaryFolder.h"
#include "util/MyFileIO.h"

namespace {

/// Text as UTF-16 little-endian.
std::string Wide(const std::string& text) {
    std::string wide;
    for (const char c : text) {
        wide += c;
        wide += '\0';
    }
    return wide;
}

/// A key, its terminator and padding, and its value with terminator.
std::string Entry(const std::string& key, size_t zeroBytes, const std::string& value) {
    return Wide(key) + std::string(zeroBytes, '\0') + Wide(value) + std::string(2, '\0');
}

std::string Head() {
    return "MZ..\1" + Wide("VS_VERSION_INFO") + std::string(4, '\0') + "\1\2";
}

std::string Resource() {
    return Head() + Entry("CompanyName", 4, "Quill") + Entry("FileDescription", 4, "A tool") +
           Entry("FileVersion", 4, "1.2.3.4") + Entry("InternalName", 2, "tool") +
           Entry("LegalCopyright", 2, "(c)") + Entry("OriginalFilename", 2, "tool.exe") +
           Entry("ProductName", 4, "Tools") + Entry("ProductVersion", 2, "5.6") +
           Entry("VarFileInfo", 4, "x") + Entry("Translation", 2, "y");
}

bool Read(const std::string& bytes, FileInfo& info) {
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "file";
    std::ofstream(path, std::ios::binary) << bytes;
    return CMyFileIO::GetFileInfo(CString(path.c_str()), info);
}

TEST(FileVersion, FileMayBeNamedInThreeWays) {
    const support::TemporaryFolder folder;
    const CString path((folder.path() / "file").c_str());
    std::ofstream(path.GetBuffer(), std::ios::binary) << Resource();
    FileInfo infos[3];
    EXPECT_TRUE(CMyFileIO::GetFileInfo(path, infos[0]));
    EXPECT_TRUE(CMyFileIO::GetFileInfo(CDir(path), infos[1]));
    EXPECT_TRUE(CMyFileIO(path).GetFileInfo(infos[2]));
    for (const FileInfo& info : infos) {
        EXPECT_STREQ(info.ProductVersion.GetBuffer(), "5.6");
    }
}

TEST(FileVersion, AllKeysAreRead) {
    FileInfo info;
    EXPECT_TRUE(Read(Resource(), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill");
    EXPECT_STREQ(info.FileDescription.GetBuffer(), "A tool");
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "1.2.3.4");
    EXPECT_STREQ(info.InternalName.GetBuffer(), "tool");
    EXPECT_STREQ(info.LegalCopyright.GetBuffer(), "(c)");
    EXPECT_STREQ(info.OriginalFilename.GetBuffer(), "tool.exe");
    EXPECT_STREQ(info.ProductName.GetBuffer(), "Tools");
    EXPECT_STREQ(info.ProductVersion.GetBuffer(), "5.6");
}

TEST(FileVersion, VarFileInfoAndTranslationAreNeverChanged) {
    FileInfo info;
    info.VarFileInfo = "a";
    info.Translation = "b";
    EXPECT_TRUE(Read(Resource(), info));
    EXPECT_STREQ(info.VarFileInfo.GetBuffer(), "a");
    EXPECT_STREQ(info.Translation.GetBuffer(), "b");
}

TEST(FileVersion, WithoutTheBlocksKeyNothingIsFound) {
    FileInfo info;
    info.CompanyName = "old";
    EXPECT_FALSE(Read(Entry("CompanyName", 4, "Quill"), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "old");
}

TEST(FileVersion, KeyMayFollowTheBlocksKeyAtOnce) {
    FileInfo info;
    Read(Wide("VS_VERSION_INFO") + Entry("CompanyName", 4, "Quill"), info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill");
}

TEST(FileVersion, CharacterThatBreaksAKeyOffBeginsNoKey) {
    FileInfo info;
    const std::string later = Entry("CompanyName", 4, "later");
    Read(Head() + Wide("C") + Entry("CompanyName", 4, "lost") + later, info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "later");
    Read(Head() + Wide("Comp") + Entry("CompanyName", 4, "lost"), info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "later");
}

TEST(FileVersion, CharacterInAZeroBytesPlaceBeginsNoKey) {
    FileInfo info;
    const std::string later = Entry("CompanyName", 4, "later");
    Read(Head() + "C" + Entry("CompanyName", 4, "lost") + later, info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "later");
    Read(Head() + Wide("Comp") + "a" + Entry("CompanyName", 4, "lost"), info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "later");
}

TEST(FileVersion, KeyMayStandAtAnyPlace) {
    FileInfo info;
    Read(Head() + Wide("Comp") + "x" + Entry("CompanyName", 4, "Quill"), info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill");
}

TEST(FileVersion, EveryCharacterOfAKeyIsFollowedByAZeroByte) {
    for (const size_t place : {1U, 3U, 11U, 19U, 21U}) {
        std::string resource = Entry("CompanyName", 4, "wide") + Entry("CompanyName", 4, "Quill");
        resource[place] = '\1';
        FileInfo info;
        Read(Head() + resource, info);
        EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill") << place;
    }
}

TEST(FileVersion, KeyBehindALaterOneIsLostWithWhatStoodBefore) {
    FileInfo info;
    EXPECT_FALSE(Read(Head() + Entry("FileVersion", 4, "1") + Entry("CompanyName", 4, "Q"), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Q");
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "");
}

TEST(FileVersion, CutOffFilesKeepWhatWasRead) {
    const std::string whole = Resource();
    for (size_t size = 0; size < whole.size(); ++size) {
        FileInfo info;
        const bool found = Read(whole.substr(0, size), info);
        EXPECT_EQ(found, !info.ProductVersion.IsEmpty()) << size;
    }
    FileInfo info;
    EXPECT_FALSE(Read(Head() + Wide("CompanyName") + std::string(4, '\0') + Wide("Qui"), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "");
}

TEST(FileVersion, MissingFileGivesFalse) {
    FileInfo info;
    info.FileVersion = "old";
    EXPECT_FALSE(CMyFileIO::GetFileInfo(CString("/no/such"), info));
    EXPECT_FALSE(CMyFileIO::GetFileInfo(CDir("/no/such"), info));
    EXPECT_FALSE(CMyFileIO(CString("/no/such")).GetFileInfo(info));
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "old");
}

TEST(FileVersion, WideCharactersGiveBothTheirBytes) {
    FileInfo info;
    Read(Head() + Wide("CompanyName") + std::string(4, '\0') + "\x34\x12" + Wide("x") +
             std::string(2, '\0'),
         info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "\x34\x12x");
}

TEST(FileVersion, ValueBeginsBehindSoManyZeroBytesInARow) {
    FileInfo info;
    // The last character's high byte is no part of the four.
    Read(Head() + Wide("CompanyName") + std::string("\0\0\1\0\0\0\0", 7) + Wide("Q") +
             std::string(2, '\0'),
         info);
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Q");
}

TEST(CompareFileVersion, ComparesNumbersOneToFour) {
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2.3.4 (build)", "1.2.3.5"), -1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(" 2.0.1 ", "2.0.0.9"), 1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2.3.4.5", "1.2.3.4.6"), -1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2.3.4.5.6", "1.2.3.4.5.7"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("5.1", "5.2"), -1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.10", "1.9"), 1);
}

TEST(CompareFileVersion, NumbersBehindABlankAreIgnored) {
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2 3.4", "1.2"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2", "1.2 3.4"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2.9 .4", "1.2.10 .3"), -1);
    // A tab inside is no blank: it stands in the second number, and a third one follows.
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2\t3.4", "1.2"), 1);
}

TEST(CompareFileVersion, FirstNumberIsNotCompared) {
    EXPECT_EQ(CMyFileIO::CompareFileVersion("3.1", "7.1"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.2.3.4", "9.2.3.4"), 0);
}

TEST(CompareFileVersion, MissingNumbersAreZero) {
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1", "1.0.0"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("", "1.1"), -1);
}

}  // namespace
