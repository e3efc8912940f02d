// The version strings of real Windows executables, which the tests build and never run.
// Needs the Debian packages binutils-mingw-w64-x86-64 and gcc-mingw-w64-x86-64.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

/// The strings of a resource in their order: key, and value as the resource compiler takes it.
using Strings = std::vector<std::pair<std::string, std::string>>;

const Strings kLedger = {
    {"CompanyName", "Quill & Sons"},     {"FileDescription", "Reads the ledger"},
    {"FileVersion", "4.2.7.119"},        {"InternalName", "ledger"},
    {"LegalCopyright", "\\x00A9 Quill"}, {"OriginalFilename", "ledger.exe"},
    {"ProductName", "Quill Office"},     {"ProductVersion", "4.2"},
};

const Strings kScale = {
    {"CompanyName", "Quill \\x0160 Sons"},  {"FileDescription", ""},
    {"FileVersion", "4.2.10.3 (release)"},  {"InternalName", "s"},
    {"LegalCopyright", "Quill, 2004-2009"}, {"OriginalFilename", "SCALE.EXE"},
    {"ProductName", "Quill\\tOffice 4"},    {"ProductVersion", "4.3.0.0"},
};

const Strings kWithoutDescription = {
    {"CompanyName", "Quill"},
    {"FileVersion", "1.0"},
    {"ProductName", "Pens"},
};

void WriteResource(std::ostream& stream, const Strings& strings) {
    stream << "1 VERSIONINFO\nFILEVERSION 9,9,9,9\nPRODUCTVERSION 8,8,8,8\nBEGIN\n"
              "BLOCK \"StringFileInfo\"\nBEGIN\nBLOCK \"040904E4\"\nBEGIN\n";
    for (const auto& [key, value] : strings) {
        stream << "VALUE \"" << key << "\", L\"" << value << "\"\n";
    }
    stream << "END\nEND\n"
              "BLOCK \"VarFileInfo\"\nBEGIN\nVALUE \"Translation\", 0x409, 1252\nEND\nEND\n";
}

std::string Wide(const std::string& text) {
    std::string wide;
    for (const char c : text) {
        wide += c;
        wide += '\0';
    }
    return wide;
}

class Executable : public testing::Test {
  protected:
    /// Builds a program with these version strings.
    void Build(const Strings& strings) {
        std::ofstream resource(m_folder.path() / "version.rc");
        WriteResource(resource, strings);
        resource.close();
        std::ofstream(m_folder.path() / "main.c") << "int main(void) { return 0; }\n";
        Call({"x86_64-w64-mingw32-windres", "version.rc", "version.o"});
        Call({"x86_64-w64-mingw32-gcc", "-s", "main.c", "version.o", "-o", "program.exe"});
    }

    fs::path File() const { return m_folder.path() / "program.exe"; }
    CString Path() const { return File().c_str(); }

    std::string Bytes() const {
        std::ostringstream bytes;
        bytes << std::ifstream(File(), std::ios::binary).rdbuf();
        return bytes.str();
    }

  private:
    void Call(const support::Arguments& command) const {
        const support::Result result = support::RunIn(m_folder.path(), command);
        ASSERT_EQ(result.status, 0)
            << result.errors << "if it is missing: apt-get install binutils-mingw-w64-x86-64 "
            << "gcc-mingw-w64-x86-64";
    }

    support::TemporaryFolder m_folder;
};

TEST_F(Executable, TellsItsVersionStrings) {
    Build(kLedger);
    FileInfo info;
    EXPECT_TRUE(CMyFileIO::GetFileInfo(Path(), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill & Sons");
    EXPECT_STREQ(info.FileDescription.GetBuffer(), "Reads the ledger");
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "4.2.7.119");
    EXPECT_STREQ(info.InternalName.GetBuffer(), "ledger");
    EXPECT_STREQ(info.LegalCopyright.GetBuffer(), "\xA9 Quill");
    EXPECT_STREQ(info.OriginalFilename.GetBuffer(), "ledger.exe");
    EXPECT_STREQ(info.ProductName.GetBuffer(), "Quill Office");
    EXPECT_STREQ(info.ProductVersion.GetBuffer(), "4.2");
    EXPECT_STREQ(info.VarFileInfo.GetBuffer(), "");
    EXPECT_STREQ(info.Translation.GetBuffer(), "");
}

TEST_F(Executable, WithWideCharactersAndAnEmptyStringTellsThemToo) {
    Build(kScale);
    FileInfo info;
    info.FileDescription = "of another file";
    EXPECT_TRUE(CMyFileIO::GetFileInfo(CDir(Path()), info));
    // U+0160 gives both its bytes.
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill \x60\x01 Sons");
    EXPECT_STREQ(info.FileDescription.GetBuffer(), "");
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "4.2.10.3 (release)");
    EXPECT_STREQ(info.InternalName.GetBuffer(), "s");
    EXPECT_STREQ(info.LegalCopyright.GetBuffer(), "Quill, 2004-2009");
    EXPECT_STREQ(info.OriginalFilename.GetBuffer(), "SCALE.EXE");
    EXPECT_STREQ(info.ProductName.GetBuffer(), "Quill\tOffice 4");
    EXPECT_STREQ(info.ProductVersion.GetBuffer(), "4.3.0.0");
    EXPECT_STREQ(info.VarFileInfo.GetBuffer(), "");
    EXPECT_STREQ(info.Translation.GetBuffer(), "");
}

TEST_F(Executable, WithoutADescriptionLosesTheStringsBehindItsPlace) {
    Build(kWithoutDescription);
    FileInfo info;
    info.FileVersion = "old";
    EXPECT_FALSE(CMyFileIO(Path()).GetFileInfo(info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill");
    // The search for FileDescription has run to the end of the file.
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "old");
    EXPECT_STREQ(info.ProductName.GetBuffer(), "");
}

TEST_F(Executable, WithoutAProductVersionGivesFalseAndTheOtherStrings) {
    Build(Strings(kLedger.begin(), kLedger.end() - 1));
    FileInfo info;
    info.ProductVersion = "kept";
    EXPECT_FALSE(CMyFileIO(Path()).GetFileInfo(info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "Quill & Sons");
    EXPECT_STREQ(info.FileDescription.GetBuffer(), "Reads the ledger");
    EXPECT_STREQ(info.FileVersion.GetBuffer(), "4.2.7.119");
    EXPECT_STREQ(info.InternalName.GetBuffer(), "ledger");
    EXPECT_STREQ(info.LegalCopyright.GetBuffer(), "\xA9 Quill");
    EXPECT_STREQ(info.OriginalFilename.GetBuffer(), "ledger.exe");
    EXPECT_STREQ(info.ProductName.GetBuffer(), "Quill Office");
    EXPECT_STREQ(info.ProductVersion.GetBuffer(), "kept");
}

TEST_F(Executable, OfALaterVersionComparesAsLater) {
    FileInfo ledger;
    FileInfo scale;
    Build(kLedger);
    CMyFileIO::GetFileInfo(Path(), ledger);
    Build(kScale);
    CMyFileIO::GetFileInfo(Path(), scale);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(ledger.FileVersion, scale.FileVersion), -1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(scale.FileVersion, ledger.FileVersion), 1);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(scale.FileVersion, scale.FileVersion), 0);
    EXPECT_EQ(CMyFileIO::CompareFileVersion(scale.FileVersion, "5.2.10.3"), 0);
}

TEST_F(Executable, WithoutAVersionResourceGivesFalseAndNothing) {
    std::ofstream(File(), std::ios::binary) << std::string("MZ\0\0", 4) << "CompanyName";
    FileInfo info;
    info.CompanyName = "old";
    EXPECT_FALSE(CMyFileIO::GetFileInfo(Path(), info));
    EXPECT_STREQ(info.CompanyName.GetBuffer(), "old");
}

/// A field, its text in the ledger, and how long the file must be for it to be read.
struct Field {
    CString FileInfo::*field;
    const char* text;
    size_t neededSize;
};

std::vector<Field> FieldsOfLedger(const std::string& bytes) {
    std::vector<Field> fields = {
        {&FileInfo::CompanyName, "Quill & Sons", 0},
        {&FileInfo::FileDescription, "Reads the ledger", 0},
        {&FileInfo::FileVersion, "4.2.7.119", 0},
        {&FileInfo::InternalName, "ledger", 0},
        {&FileInfo::LegalCopyright, "\xA9 Quill", 0},
        {&FileInfo::OriginalFilename, "ledger.exe", 0},
        {&FileInfo::ProductName, "Quill Office", 0},
        {&FileInfo::ProductVersion, "4.2", 0},
    };
    size_t position = bytes.find(Wide("VS_VERSION_INFO"));
    for (Field& field : fields) {
        // Behind the last character two zero bytes end the text: its own high byte is the first.
        const std::string text = '\0' + Wide(field.text) + '\0';
        position = bytes.find(text, position) + text.size();
        field.neededSize = position;
    }
    return fields;
}

TEST_F(Executable, CutOffAnywhereGivesTheStringsThatAreWhole) {
    Build(kLedger);
    const std::string bytes = Bytes();
    const std::vector<Field> fields = FieldsOfLedger(bytes);
    const size_t begin = bytes.find(Wide("VS_VERSION_INFO"));
    ASSERT_LT(begin, fields.back().neededSize);
    for (size_t size = fields.back().neededSize + 8; size >= begin - 8; --size) {
        fs::resize_file(File(), size);
        FileInfo info;
        EXPECT_EQ(CMyFileIO::GetFileInfo(Path(), info), size >= fields.back().neededSize) << size;
        for (const Field& field : fields) {
            EXPECT_STREQ((info.*field.field).GetBuffer(),
                         size >= field.neededSize ? field.text : "")
                << "of " << size << " bytes";
        }
    }
}

}  // namespace
