// GetFileInfo on files that only resemble an executable with a version resource.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

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

/// One string of the resource: its key, the zero bytes behind it and its value.
struct String {
    const char* key;
    size_t zeroBytes;
    const char* value;
    CString FileInfo::*field;

    std::string Key() const { return Wide(key); }
    std::string Bytes() const {
        return Key() + std::string(zeroBytes, '\0') + Wide(value) + std::string(2, '\0') + "\x34";
    }
};

const std::vector<String> kStrings = {
    {"CompanyName", 4, "Quill", &FileInfo::CompanyName},
    {"FileDescription", 4, "A tool", &FileInfo::FileDescription},
    {"FileVersion", 4, "1.2.3.4", &FileInfo::FileVersion},
    {"InternalName", 2, "tool", &FileInfo::InternalName},
    {"LegalCopyright", 2, "(c)", &FileInfo::LegalCopyright},
    {"OriginalFilename", 2, "tool.exe", &FileInfo::OriginalFilename},
    {"ProductName", 4, "Tools", &FileInfo::ProductName},
    {"ProductVersion", 2, "5.6", &FileInfo::ProductVersion},
};

std::string Head() {
    return "MZ" + Wide("VS_VERSION_INFO") + std::string(4, '\0') + "\1";
}

class BadVersion : public testing::Test {
  protected:
    bool Read(const std::string& bytes, FileInfo& info) const {
        const std::string path = m_folder.path() / "file";
        std::ofstream(path, std::ios::binary) << bytes;
        return CMyFileIO::GetFileInfo(CString(path.c_str()), info);
    }

    /// What CompanyName becomes when the block's key is followed by these bytes.
    std::string CompanyOf(const std::string& bytes) const {
        FileInfo info;
        info.CompanyName = "none";
        Read(Head() + bytes, info);
        return info.CompanyName.GetBuffer();
    }

    const support::TemporaryFolder& Folder() const { return m_folder; }

  private:
    support::TemporaryFolder m_folder;
};

/// The first `count` strings of the record have their values, the others are empty.
void ExpectFirst(FileInfo info, size_t count, const std::string& where) {
    for (size_t i = 0; i < kStrings.size(); ++i) {
        EXPECT_STREQ((info.*kStrings[i].field).GetBuffer(), i < count ? kStrings[i].value : "")
            << where << ": " << kStrings[i].key;
    }
}

TEST_F(BadVersion, CutOffInAnyKeyAtEveryLengthGivesTheStringsBefore) {
    std::string before = Head();
    for (size_t i = 0; i < kStrings.size(); ++i) {
        const std::string key = kStrings[i].Key();
        for (size_t length = 0; length <= key.size(); ++length) {
            FileInfo info;
            EXPECT_FALSE(Read(before + key.substr(0, length), info));
            ExpectFirst(info, i, kStrings[i].key + (" cut to " + std::to_string(length)));
        }
        before += kStrings[i].Bytes();
    }
    FileInfo info;
    EXPECT_TRUE(Read(before, info));
    ExpectFirst(info, kStrings.size(), "all");
}

TEST_F(BadVersion, CutOffInTheBlocksKeyAtEveryLengthGivesNothing) {
    const std::string head = Head();
    for (size_t length = 0; length <= head.size(); ++length) {
        FileInfo info;
        EXPECT_FALSE(Read(head.substr(0, length), info));
        ExpectFirst(info, 0, std::to_string(length));
    }
}

TEST_F(BadVersion, KeyMissingItsEndIsNoKey) {
    const std::string padding(4, '\0');
    const std::string rest = padding + Wide("Quill") + std::string(2, '\0');
    EXPECT_EQ(CompanyOf(Wide("CompanyNam") + rest), "none");
    EXPECT_EQ(CompanyOf(Wide("CompanyNames") + rest), "Quill");
    EXPECT_EQ(CompanyOf(Wide("CompanyNam") + rest + kStrings[0].Bytes()), "Quill");
}

TEST_F(BadVersion, KeyMissingTheHighByteOfItsLastCharacterIsNoKey) {
    std::string key = Wide("CompanyName");
    key.back() = '\1';
    EXPECT_EQ(CompanyOf(key + std::string(4, '\0') + Wide("Quill") + std::string(2, '\0')), "none");
}

TEST_F(BadVersion, KeyInNarrowOrBigEndianTextIsNoKey) {
    EXPECT_EQ(CompanyOf("CompanyName" + std::string(4, '\0') + "Quill" + std::string(2, '\0')),
              "none");
    EXPECT_EQ(CompanyOf('\0' + kStrings[0].Bytes()), "Quill");
    std::string bigEndian;
    for (const char c : std::string("CompanyName")) {
        bigEndian += '\0';
        bigEndian += c;
    }
    EXPECT_EQ(CompanyOf(bigEndian + "\1" + std::string(4, '\0') + Wide("Quill")), "none");
}

TEST_F(BadVersion, ByteThatBreaksAKeyIsNotTakenForItsBeginning) {
    EXPECT_EQ(CompanyOf(Wide("CCompanyName") + std::string(4, '\0') + Wide("Quill") +
                        std::string(2, '\0')),
              "none");
    EXPECT_EQ(CompanyOf(Wide("C.") + kStrings[0].Bytes()), "Quill");
}

TEST_F(BadVersion, ValueWithoutAnEndIsNoValue) {
    EXPECT_EQ(CompanyOf(Wide("CompanyName") + std::string(4, '\0') + Wide("Quill")), "none");
    EXPECT_EQ(CompanyOf(Wide("CompanyName") + std::string(4, '\0') + std::string(100'000, 'Q')),
              "none");
}

TEST_F(BadVersion, TooFewZeroBytesBehindAKeyAreSoughtFurtherOn) {
    EXPECT_EQ(CompanyOf(Wide("CompanyName") + std::string(3, '\0') + "lost" + std::string(4, '\0') +
                        Wide("Quill") + std::string(2, '\0')),
              "Quill");
}

TEST_F(BadVersion, MoreZeroBytesBehindAKeyMakeTheValueEmpty) {
    EXPECT_EQ(CompanyOf(Wide("CompanyName") + std::string(6, '\0') + Wide("Quill")), "");
}

TEST_F(BadVersion, FilesOfOneByteRepeatedGiveNothing) {
    for (const char byte : {'\0', 'V', 'C', '\xFF'}) {
        FileInfo info;
        EXPECT_FALSE(Read(std::string(100'000, byte), info));
        ExpectFirst(info, 0, std::string(1, byte));
    }
}

TEST_F(BadVersion, DirectoryGivesNothing) {
    FileInfo info;
    EXPECT_FALSE(CMyFileIO::GetFileInfo(CDir(Folder().path().c_str()), info));
    ExpectFirst(info, 0, "directory");
}

TEST_F(BadVersion, VersionsOfOddTextCompareByTheirNumbers) {
    EXPECT_EQ(CMyFileIO::CompareFileVersion("", ""), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("...", "0.0.0.0"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.x", "1.0"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1.-1", "1.0"), -1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1..2", "1.0.1"), 1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("\t1.2\n", "1.2"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion("1, 2, 3", "1"), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(std::string(100'000, '.').c_str(), "1"), 0);
}

}  // namespace
