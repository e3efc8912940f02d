// CMyFileIO: temporary files, which go when they are closed.
#include <unistd.h>

#include <cstdlib>

#include "util/FileFixture.h"

namespace {

namespace fs = std::filesystem;

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
                    const int next = dup(STDIN_FILENO);  // the number that mkstemp will get
                    close(next);
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

}  // namespace
