// Files, copies and INI files on a disk that is full: a file system of one page, in a child.
// Says what the results tell and what stays behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/FaultFolder.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kDiskSize = 4096;

class FullDisk : public testing::Test {
  protected:
    /// Runs the story with a disk of kDiskSize bytes at Disk().
    void WithDisk(const support::Story& story) const {
        WithDisk("mode=755,size=" + std::to_string(kDiskSize), story);
    }

    /// The same with a disk that has room for one more file alone.
    void WithDiskForOneFile(const support::Story& story) const {
        WithDisk("mode=755,nr_inodes=2", story);
    }

    fs::path Disk() const { return m_folder.Folder() / "disk"; }
    CString OnDisk(const char* name) const { return (Disk() / name).c_str(); }
    std::string Contents(const char* name) const {
        return m_folder.Contents("disk/" + std::string(name));
    }
    bool Holds(const char* name) const { return m_folder.Holds("disk/" + std::string(name)); }
    void Fill() const { m_folder.Written("disk/filler", std::string(kDiskSize, '#')); }
    const FaultFolder& Elsewhere() const { return m_folder; }

  private:
    void WithDisk(const std::string& options, const support::Story& story) const {
        fs::create_directory(Disk());
        support::InPrivateNamespace([&] {
            support::CoverWithEmptyDirectory(Disk(), options);
            story();
        });
    }

    FaultFolder m_folder;
};

// --- Open files ---------------------------------------------------------------------------------

using FullDiskFile = FullDisk;

TEST_F(FullDiskFile, LongTextIsRefusedAndItsBeginningStays) {
    WithDisk([&] {
        CMyFileIO file;
        ASSERT_TRUE(file.OpenFile(OnDisk("f"), "w"));
        EXPECT_FALSE(file.WriteString(std::string(100'000, 'x').c_str()));
        EXPECT_FALSE(file.WriteString("y"));
        EXPECT_FALSE(file.WriteStringNL("y"));
        file.CloseFile();
        EXPECT_EQ(Contents("f"), std::string(kDiskSize, 'x'));
    });
}

TEST_F(FullDiskFile, ShortTextIsRefusedWhenTheFileIsClosed) {
    WithDisk([&] {
        Fill();
        CMyFileIO file;
        ASSERT_TRUE(file.OpenFile(OnDisk("f"), "w"));
        EXPECT_TRUE(file.WriteStringNL("lost"));
        EXPECT_FALSE(file.CloseFile());
        EXPECT_TRUE(file.IsEOF());
        EXPECT_FALSE(file.CloseFile());
        EXPECT_TRUE(Holds("f"));
        EXPECT_EQ(Contents("f"), "");
    });
}

TEST_F(FullDiskFile, DestructorSaysNothing) {
    testing::internal::CaptureStderr();
    WithDisk([&] {
        Fill();
        CMyFileIO file;
        ASSERT_TRUE(file.OpenFile(OnDisk("f"), "w"));
        EXPECT_TRUE(file.WriteString("lost"));
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FullDiskFile, TemporaryFileThatCouldNotBeStoredStaysUntilItIsClosedWell) {
    WithDisk([&] {
        Fill();
        ASSERT_EQ(chdir(Disk().c_str()), 0);
        CMyFileIO file;
        ASSERT_TRUE(file.OpenTempFile(OnDisk("")));
        const std::string name = file.GetFileName().GetBuffer();
        EXPECT_TRUE(file.WriteString("lost"));
        EXPECT_FALSE(file.CloseFile());
        EXPECT_TRUE(fs::exists(name));
        ASSERT_TRUE(file.Open());
        EXPECT_TRUE(file.CloseFile());
        EXPECT_FALSE(fs::exists(name));
    });
}

TEST_F(FullDiskFile, NoRoomForAnotherFileRefusesToOpen) {
    WithDiskForOneFile([&] {
        CMyFileIO first;
        EXPECT_TRUE(first.OpenFile(OnDisk("first"), "w"));
        CMyFileIO second;
        EXPECT_FALSE(second.OpenFile(OnDisk("second"), "w"));
        EXPECT_TRUE(second.IsEOF());
        EXPECT_FALSE(Holds("second"));
    });
}

// --- Copies -------------------------------------------------------------------------------------

class FullDiskCopy : public FullDisk {
  protected:
    static constexpr time_t kOldTime = 1'100'000'000;

    CString OldFile(const std::string& text) const {
        const CString path = Elsewhere().Written("from", text);
        const timespec times[] = {{kOldTime, 0}, {kOldTime, 0}};
        EXPECT_EQ(utimensat(AT_FDCWD, path.GetBuffer(), times, 0), 0);
        return path;
    }

    static time_t TimeOf(const CString& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.GetBuffer(), &status), 0);
        return status.st_mtime;
    }
};

TEST_F(FullDiskCopy, FailsAndLeavesTheBeginningWithTheSourcesTime) {
    WithDisk([&] {
        const CString from = OldFile(std::string(10'000, 'x'));
        EXPECT_FALSE(CMyFileIO::CopyFile(from, OnDisk("to")));
        EXPECT_EQ(Contents("to"), std::string(kDiskSize, 'x'));
        EXPECT_EQ(TimeOf(OnDisk("to")), kOldTime);
    });
}

TEST_F(FullDiskCopy, OfAFewBytesFailsToo) {
    WithDisk([&] {
        Fill();
        const CString from = OldFile("ten bytes.");
        EXPECT_FALSE(CMyFileIO::CopyFile(CDir(from), CDir(OnDisk("to"))));
        EXPECT_EQ(Contents("to"), "");
        EXPECT_EQ(TimeOf(OnDisk("to")), kOldTime);
        EXPECT_EQ(Elsewhere().Contents("from"), "ten bytes.");
    });
}

TEST_F(FullDiskCopy, ThatJustFitsSucceeds) {
    WithDisk([&] {
        EXPECT_TRUE(CMyFileIO::CopyFile(OldFile(std::string(kDiskSize, 'x')), OnDisk("to")));
        EXPECT_EQ(Contents("to"), std::string(kDiskSize, 'x'));
    });
}

TEST_F(FullDiskCopy, WithoutRoomForAnotherFileLeavesNone) {
    WithDiskForOneFile([&] {
        EXPECT_TRUE(CMyFileIO::CopyFile(OldFile("x"), OnDisk("first")));
        EXPECT_FALSE(CMyFileIO::CopyFile(OldFile("x"), OnDisk("second")));
        EXPECT_FALSE(Holds("second"));
    });
}

// --- INI files ----------------------------------------------------------------------------------

class FullDiskIni : public FullDisk {
  protected:
    /// A change that needs more than the whole disk.
    static void WriteTooMuch(CIniFile& ini) {
        EXPECT_TRUE(ini.WriteString("A", "k", std::string(100'000, 'x').c_str(), false, false));
    }

    /// What is stored of that change.
    static std::string WhatFits() { return "[A]\nk=" + std::string(kDiskSize - 6, 'x'); }
};

TEST_F(FullDiskIni, FlushSaysThatChangesAreUnsavedAndLeavesWhatFits) {
    WithDisk([&] {
        CIniFile ini(OnDisk("f.ini"), false);
        WriteTooMuch(ini);
        EXPECT_TRUE(ini.Flush());
        EXPECT_EQ(Contents("f.ini"), WhatFits());
        EXPECT_TRUE(ini.Flush());
        EXPECT_FALSE(ini.WriteIniFile(OnDisk("f.ini")));
    });
}

TEST_F(FullDiskIni, WriteWithFlushIsTrueThoughNothingIsSaved) {
    WithDisk([&] {
        Fill();
        CIniFile ini(OnDisk("f.ini"), false);
        EXPECT_TRUE(ini.WriteString("A", "k", "1", false, true));
        EXPECT_TRUE(ini.RemoveString("A", "x", "", false, true));
        EXPECT_EQ(Contents("f.ini"), "");
        EXPECT_TRUE(ini.Flush());
    });
}

TEST_F(FullDiskIni, DestructorTriesAgainWhenThereIsRoom) {
    WithDisk([&] {
        Fill();
        {
            CIniFile ini(OnDisk("f.ini"), false);
            ini.WriteString("A", "k", "1", false, false);
            EXPECT_TRUE(ini.Flush());
            EXPECT_EQ(Contents("f.ini"), "");
            fs::remove(Disk() / "filler");
        }
        EXPECT_EQ(Contents("f.ini"), "[A]\nk=1\n");
    });
}

TEST_F(FullDiskIni, DestructorThatFailsSaysNothingAndLeavesWhatFits) {
    testing::internal::CaptureStderr();
    WithDisk([&] {
        {
            CIniFile ini(OnDisk("f.ini"), false);
            WriteTooMuch(ini);
        }
        EXPECT_EQ(Contents("f.ini"), WhatFits());
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
