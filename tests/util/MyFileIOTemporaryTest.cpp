// CMyFileIO: temporary files, which go when they are closed.
#include <unistd.h>

#include <cstdlib>

#include "util/FileFixture.h"

namespace {

namespace fs = std::filesystem;

std::string Number(int number) {
    return std::to_string(number);
}

/// The names of all files in a folder, one behind the other.
std::string Names(const char* folder) {
    std::string names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names += entry.path().filename().string();
    }
    return names;
}

/// The number that the second of two descriptors will get.
int SecondDescriptor() {
    const int first = dup(STDIN_FILENO);
    const int second = NextDescriptor();
    close(first);
    return second;
}

/// In a child process: mkstemp's own file appears in the current directory.
class TemporaryFiles : public Files {
  protected:
    [[noreturn]] void InChild(bool (*story)(const CString& folder)) const {
        if (chdir(Folder().c_str()) != 0) {
            std::exit(2);
        }
        fs::create_directory("temp");
        std::exit(story((Folder() / "temp").c_str()) ? 42 : 1);
    }
};

TEST_F(TemporaryFiles, AreNamedAfterADescriptorNumberAndGoWhenClosed) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    const int next = NextDescriptor();  // mkstemp will get it
                    CMyFileIO file;
                    const bool opened = file.OpenTempFile(folder);
                    CString expected = folder + "/";
                    expected += CString(next);
                    const bool named = file.GetFileName() == expected;
                    const bool there = fs::exists(expected.GetBuffer());
                    const bool used = file.WriteString("x") && file.Rewind() &&
                                      Next(file) == "x!$" && file.CloseFile();
                    return opened && named && there && used && !fs::exists(expected.GetBuffer());
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, LeaveMkstempsOwnFileInTheCurrentDirectory) {
    EXPECT_EXIT(
        InChild([](const CString& folder) {
            CMyFileIO file;
            file.OpenTempFile(CDir(folder));
            file.CloseFile();
            int files = 0;
            for (const auto& entry : fs::directory_iterator(".")) {
                files +=
                    entry.is_regular_file() && entry.path().filename().string().size() == 6 ? 1 : 0;
            }
            return files == 1 && fs::is_empty("temp");
        }),
        testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, GoWithTheirObject) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    {
                        CMyFileIO file;
                        file.OpenTempFile(folder);
                        file.WriteString("x");
                    }
                    return fs::is_empty("temp");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, DeletingOneThatIsOpenFindsItGone) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    CMyFileIO file;
                    return file.OpenTempFile(folder) && !file.DeleteFile() && fs::is_empty("temp");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, InAMissingDirectoryAreRefused) {
    EXPECT_EXIT(InChild([](const CString& /*folder*/) {
                    CMyFileIO file;
                    return !file.OpenTempFile("/no/such/dir");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, TwiceInOneObjectLeaveTheSecondAlone) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    const std::string first = Number(NextDescriptor());
                    // The stream's the first time, and free when mkstemp is called again.
                    const std::string second = Number(SecondDescriptor());
                    CMyFileIO file;
                    return file.OpenTempFile(folder) && Names("temp") == first &&
                           file.OpenTempFile(folder) && Names("temp") == second && file.Close() &&
                           Names("temp").empty();
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, CloseAnOpenFileFirstAndKeepIt) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    CMyFileIO file;
                    const bool written = file.OpenFile("kept", "w") && file.WriteString("text");
                    const bool replaced = file.OpenTempFile(folder);
                    return written && replaced && fs::file_size("kept") == 4 && file.Close() &&
                           fs::exists("kept") && fs::is_empty("temp");
                }),
                testing::ExitedWithCode(42), "");
}

// Closing comes after the new name is taken, so what is removed is the file of that name.
TEST_F(TemporaryFiles, OpeningAnotherFileRemovesThatOneInstead) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    const CString other = folder + "/other";
                    std::ofstream(other.GetBuffer()) << "text";
                    const int next = NextDescriptor();
                    CMyFileIO file;
                    const bool temporary = file.OpenTempFile(folder);
                    const bool opened = file.OpenFile(other);
                    return temporary && !opened && file.IsEOF() && Names("temp") == Number(next);
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, FileOpenedAfterOneIsNotTemporary) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    CMyFileIO file;
                    return file.OpenTempFile(folder) && file.OpenFile("kept", "w") &&
                           file.Close() && fs::exists("kept");
                }),
                testing::ExitedWithCode(42), "");
}

TEST_F(TemporaryFiles, StayTemporaryWhenClosingFails) {
    EXPECT_EXIT(InChild([](const CString& folder) {
                    const std::string name = Number(NextDescriptor());
                    const int stream = SecondDescriptor();
                    CMyFileIO file;
                    const bool opened = file.OpenTempFile(folder);
                    close(stream);  // behind the object's back
                    const bool closed = file.CloseFile();
                    const bool stays = Names("temp") == name;
                    return opened && !closed && stays && file.Open() && file.CloseFile() &&
                           Names("temp").empty();
                }),
                testing::ExitedWithCode(42), "");
}

}  // namespace
