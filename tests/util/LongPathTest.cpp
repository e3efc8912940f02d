// Paths of thousands of characters: as text they have their parts, and the system's refusal of
// those it takes for too long is a plain failure.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/TemporaryFolder.h"
#include "util/CDir.h"
#include "util/CLParams.h"
#include "util/Exec.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

/// "/a/a/a..." of that many levels.
CString Levels(int count) {
    return Repeated("/a", count).c_str();
}

/// A path that no system takes.
CString TooLong() {
    return Levels(5000);
}

// --- The text -----------------------------------------------------------------------------------

TEST(LongPathText, HasItsParts) {
    const std::string directory = "/" + Repeated("d", 5000) + "/";
    const std::string name = Repeated("n", 5000);
    const CDir path(CString((" C:" + directory + name + ".txt ").c_str()));
    EXPECT_EQ(path.GetLength(), 10'010U);
    EXPECT_STREQ(path.GetDrive().GetBuffer(), "C:");
    EXPECT_EQ(path.GetDirectory().GetBuffer(), directory);
    EXPECT_EQ(path.GetFileName().GetBuffer(), name);
    EXPECT_STREQ(path.GetExtension().GetBuffer(), ".txt");
    EXPECT_EQ(path.GetName().GetBuffer(), name + ".txt ");
}

TEST(LongPathText, CountsItsLevels) {
    EXPECT_EQ(CDir(Levels(5000)).GetDepth(), 5001U);
    EXPECT_EQ(CDir(CString(Repeated("/", 5000).c_str())).GetDepth(), 5001U);
}

TEST(LongPathText, IsJoinedAndMade) {
    CDir path(Levels(2500));
    EXPECT_EQ(path.AddPath(Levels(2500)).GetLength(), 10'000U);
    EXPECT_TRUE(path == Levels(5000));
    CDir made;
    const CString name = CString(Repeated("n", 5000).c_str());
    EXPECT_EQ(made.MakePath("", Levels(2500), name, ".c").GetLength(), 10'003U);
}

TEST(LongPathText, IsAValueOfTheCommandLine) {
    CCLParams table;
    ASSERT_TRUE(table.Add("/f:", CLP_PATH, true));
    std::string program = Repeated("/p", 5000);
    std::string argument = "/f:" + Repeated("/a", 5000);
    char* argv[] = {program.data(), argument.data()};
    EXPECT_EQ(table.Parse(2, argv, true), 0);
    CDir value;
    EXPECT_TRUE(table.GetValue("/f:", value));
    EXPECT_TRUE(value == Levels(5000));
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 1 + 1 + 3 + 10'000);
}

// --- Too long for the system --------------------------------------------------------------------

TEST(TooLongPath, NamesNoFileThatCanBeOpenedOrChanged) {
    CMyFileIO file;
    EXPECT_FALSE(file.OpenFile(TooLong()));
    EXPECT_FALSE(file.OpenFile(CDir(TooLong()), "w"));
    EXPECT_TRUE(file.IsEOF());
    EXPECT_TRUE(file.GetFileName() == TooLong());
    EXPECT_FALSE(file.DeleteFile());
    EXPECT_FALSE(CMyFileIO::DeleteFile(CDir(TooLong())));
    EXPECT_FALSE(CMyFileIO::SetReadOnly(TooLong(), true));
    EXPECT_TRUE(CMyFileIO::Exists(TooLong()));
    FileInfo info;
    EXPECT_FALSE(CMyFileIO::GetFileInfo(TooLong(), info));
}

TEST(TooLongPath, IsNotCopiedFromNorTo) {
    const support::TemporaryFolder folder;
    const CString file = (folder.path() / "f").c_str();
    EXPECT_FALSE(CMyFileIO::CopyFile(TooLong(), file));
    EXPECT_FALSE(fs::exists(folder.path() / "f"));
    std::ofstream(folder.path() / "f") << "x";
    EXPECT_FALSE(CMyFileIO::CopyFile(file, TooLong()));
    EXPECT_FALSE(CDir(file).CopyFile(CDir(TooLong())));
}

TEST(TooLongPath, NamesNoDirectoryToGoTo) {
    EXPECT_FALSE(CDir(TooLong()).ChDir());
    EXPECT_TRUE(CDir(TooLong()).Exists());
    EXPECT_TRUE(CDir(TooLong()).MakeDirectory());
    EXPECT_TRUE(CDir(TooLong()).RemoveDirectory());
}

TEST(TooLongPath, HoldsNoTemporaryFile) {
    const support::TemporaryFolder folder;
    EXPECT_EXIT(
        {
            CMyFileIO file;
            const bool refused = chdir(folder.path().c_str()) == 0 && !file.OpenTempFile(TooLong());
            std::exit(refused && file.GetFileName().GetLength() > 10'000 ? 42 : 1);
        },
        testing::ExitedWithCode(42), "");
}

TEST(TooLongPath, IsAnEmptyIniFileThatCannotBeSaved) {
    CIniFile ini(TooLong(), false);
    EXPECT_STREQ(ini.ReadString("A", "k", "none").GetBuffer(), "none");
    EXPECT_TRUE(ini.WriteString("A", "k", "1", false, true));
    EXPECT_TRUE(ini.Flush());
    EXPECT_FALSE(ini.ReadIniFile(TooLong()));
    EXPECT_FALSE(ini.WriteIniFile(TooLong()));
}

TEST(TooLongPath, IsNoProgram) {
    const std::string name(5000, 'x');
    CExec exec(name.c_str());
    EXPECT_FALSE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), ENAMETOOLONG);
}

// --- Long, but not too long ---------------------------------------------------------------------

/// In a child process: goes to a new directory of more than 3000 characters.
std::string GoDeep(const fs::path& folder) {
    fs::current_path(folder);
    std::string path = folder;
    for (int level = 0; level < 15; ++level) {
        const std::string name(200, static_cast<char>('a' + level));
        fs::create_directory(name);
        fs::current_path(name);
        path += "/" + name;
    }
    return path;
}

bool FilesWorkAt(const std::string& path) {
    const CString first = (path + "/first").c_str();
    const CString second = (path + "/second").c_str();
    CMyFileIO file;
    const bool written =
        file.OpenFile(first, "w") && file.WriteStringNL("[A]\nk=1") && file.CloseFile();
    const bool copied = CMyFileIO::CopyFile(first, second);
    CIniFile ini(second, false);
    const bool changed = ini.WriteString("A", "k", "2", false, true) && !ini.Flush();
    const bool read = CIniFile(second, false).ReadInteger("A", "k") == 2;
    return written && copied && changed && read && CMyFileIO::DeleteFile(first) &&
           CMyFileIO::DeleteFile(CDir(second));
}

TEST(LongPath, OfThreeThousandCharactersIsAsGoodAsAnyOther) {
    const support::TemporaryFolder folder;
    EXPECT_EXIT(std::exit(FilesWorkAt(GoDeep(folder.path())) ? 42 : 1), testing::ExitedWithCode(42),
                "");
}

TEST(LongPath, OfMoreThanTheBufferAsWorkingDirectoryCannotBeTold) {
    const support::TemporaryFolder folder;
    EXPECT_EXIT(
        {
            const CDir deep(CString(GoDeep(folder.path()).c_str()));
            CDir path("old");
            const bool untold = path.GetCwd().IsEmpty() && path == CString("old") &&
                                path.ToCwd().IsEmpty() && path.IsEmpty();
            const bool reached = CDir("/").ChDir() && deep.ChDir();
            std::exit(untold && reached ? 42 : 1);
        },
        testing::ExitedWithCode(42), "");
}

}  // namespace
