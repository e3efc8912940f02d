// Files, copies and INI files in a folder that may not be written, for a process without
// privileges, and under files that may not be read.
#include <gtest/gtest.h>
#include <unistd.h>

#include "util/FaultFolder.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

class ReadOnlyFolder : public testing::Test {
  protected:
    ReadOnlyFolder() {
        fs::create_directory(Closed());
        m_folder.Written("closed/f", "[A]\nk=1\n");
        m_folder.Written("closed/secret", "text");
        fs::permissions(Closed() / "f", fs::perms::owner_read);
        fs::permissions(Closed() / "secret", fs::perms::none);
        fs::permissions(Closed(), fs::perms::owner_read | fs::perms::owner_exec);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;
    ~ReadOnlyFolder() override {
        std::error_code ignored;
        fs::permissions(Closed(), fs::perms::owner_all, ignored);
    }

    fs::path Closed() const { return m_folder.Folder() / "closed"; }
    CString InClosed(const char* name) const { return (Closed() / name).c_str(); }
    bool Holds(const char* name) const { return m_folder.Holds("closed/" + std::string(name)); }
    std::string Contents(const char* name) const {
        return m_folder.Contents("closed/" + std::string(name));
    }
    const FaultFolder& Open() const { return m_folder; }

  private:
    FaultFolder m_folder;
};

TEST_F(ReadOnlyFolder, RefusesToOpenANewFile) {
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        EXPECT_FALSE(file.OpenFile(InClosed("new"), "w"));
        EXPECT_FALSE(file.OpenFile(CDir(InClosed("new")), "a"));
        EXPECT_TRUE(file.IsEOF());
        EXPECT_FALSE(file.WriteString("x"));
        EXPECT_FALSE(Holds("new"));
    });
}

TEST_F(ReadOnlyFolder, RefusesToWriteAProtectedFileAndKeepsIt) {
    support::WithoutPrivileges([&] {
        CMyFileIO file(InClosed("f"));
        EXPECT_FALSE(file.Open("w"));
        EXPECT_FALSE(file.Open("a"));
        EXPECT_FALSE(file.Open("r+"));
        EXPECT_TRUE(file.Open("r"));
        EXPECT_EQ(Contents("f"), "[A]\nk=1\n");
    });
}

TEST_F(ReadOnlyFolder, RefusesATemporaryFile) {
    support::WithoutPrivileges([&] {
        ASSERT_EQ(chdir(Open().Folder().c_str()), 0);
        CMyFileIO file;
        EXPECT_FALSE(file.OpenTempFile(InClosed("")));
        EXPECT_FALSE(file.OpenTempFile(CDir(InClosed(""))));
        EXPECT_FALSE(file.CloseFile());
        EXPECT_FALSE(file.WriteString("x"));
    });
}

TEST_F(ReadOnlyFolder, AsWorkingDirectoryNamesTheTemporaryFileMinusOne) {
    support::WithoutPrivileges([&] {
        ASSERT_EQ(chdir(Closed().c_str()), 0);
        CMyFileIO file;
        EXPECT_TRUE(file.OpenTempFile(Open().Path("")));
        EXPECT_TRUE(file.GetFileName() == Open().Path("-1"));
        EXPECT_TRUE(file.WriteString("x"));
        EXPECT_TRUE(Open().Holds("-1"));
        EXPECT_TRUE(file.CloseFile());
        EXPECT_FALSE(Open().Holds("-1"));
    });
}

TEST_F(ReadOnlyFolder, RefusesCopiesAndHoldsNone) {
    support::WithoutPrivileges([&] {
        EXPECT_FALSE(CMyFileIO::CopyFile(Open().Written("from", "x"), InClosed("to")));
        EXPECT_FALSE(Holds("to"));
        EXPECT_FALSE(CMyFileIO::CopyFile(Open().Path("from"), InClosed("f")));
        EXPECT_EQ(Contents("f"), "[A]\nk=1\n");
    });
}

TEST_F(ReadOnlyFolder, GivesCopiesOfItsFiles) {
    support::WithoutPrivileges([&] {
        EXPECT_TRUE(CMyFileIO::CopyFile(InClosed("f"), Open().Path("to")));
        EXPECT_EQ(Open().Contents("to"), "[A]\nk=1\n");
    });
}

TEST_F(ReadOnlyFolder, RefusesToDelete) {
    support::WithoutPrivileges([&] {
        EXPECT_FALSE(CMyFileIO::DeleteFile(InClosed("f")));
        EXPECT_FALSE(CMyFileIO::DeleteFile(CDir(InClosed("f"))));
        EXPECT_FALSE(CMyFileIO(InClosed("f")).DeleteFile());
        EXPECT_TRUE(Holds("f"));
    });
}

TEST_F(ReadOnlyFolder, LeavesTheChangesOfAnIniFileUnsaved) {
    support::WithoutPrivileges([&] {
        CIniFile ini(InClosed("f"), false);
        EXPECT_EQ(ini.ReadInteger("A", "k"), 1);
        EXPECT_TRUE(ini.WriteString("A", "k", "2", false, true));
        EXPECT_TRUE(ini.Flush());
        EXPECT_FALSE(ini.WriteIniFile(InClosed("other")));
        EXPECT_EQ(ini.ReadInteger("A", "k"), 2);
        EXPECT_TRUE(ini.WriteIniFile(Open().Path("saved")));
        EXPECT_EQ(Open().Contents("saved"), "[A]\nk=2\n");
        EXPECT_TRUE(ini.Flush());
    });
    EXPECT_EQ(Contents("f"), "[A]\nk=1\n");
}

TEST_F(ReadOnlyFolder, DestructorOfAnIniFileSaysNothing) {
    testing::internal::CaptureStderr();
    const std::string output = support::WithoutPrivileges([&] {
        CIniFile ini(InClosed("new"), false);
        ini.WriteString("A", "k", "1", false, false);
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(output, "");
    EXPECT_FALSE(Holds("new"));
}

// --- Files that may not be read -----------------------------------------------------------------

using UnreadableFile = ReadOnlyFolder;

TEST_F(UnreadableFile, IsNotOpened) {
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        EXPECT_FALSE(file.OpenFile(InClosed("secret")));
        EXPECT_TRUE(file.IsEOF());
    });
}

TEST_F(UnreadableFile, IsNotCopied) {
    support::WithoutPrivileges([&] {
        EXPECT_FALSE(CMyFileIO::CopyFile(InClosed("secret"), Open().Path("to")));
        EXPECT_FALSE(Open().Holds("to"));
    });
}

TEST_F(UnreadableFile, IsAnEmptyIniFile) {
    support::WithoutPrivileges([&] {
        CIniFile ini(InClosed("secret"), false);
        EXPECT_STREQ(ini.ReadString("", "text", "none").GetBuffer(), "none");
        EXPECT_FALSE(ini.ReadIniFile(InClosed("secret")));
    });
}

TEST_F(UnreadableFile, TellsNoVersion) {
    support::WithoutPrivileges([&] {
        FileInfo info;
        info.CompanyName = "old";
        EXPECT_FALSE(CMyFileIO::GetFileInfo(InClosed("secret"), info));
        EXPECT_STREQ(info.CompanyName.GetBuffer(), "old");
    });
}

}  // namespace
