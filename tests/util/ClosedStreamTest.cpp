// Streams whose descriptor is gone, and messages to a closed standard output or error.
// Each story is told by a child, whose descriptors are its own.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "util/CDir.h"
#include "util/ErrorHandler.h"
#include "util/FaultFolder.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

/// The number that the next file opened will get.
int NextDescriptor() {
    const int next = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(next);
    return next;
}

class ClosedStream : public testing::Test {
  protected:
    /// Opens the file and closes its descriptor behind its back.
    void OpenAndLose(CMyFileIO& file, const char* mode) const {
        const int descriptor = NextDescriptor();
        ASSERT_TRUE(file.OpenFile(m_folder.Path("f"), mode));
        ASSERT_EQ(close(descriptor), 0);
    }

    FaultFolder m_folder;
};

TEST_F(ClosedStream, ReadsNothingAndIsAtItsEnd) {
    m_folder.Written("f", "a\nb\n");
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        OpenAndLose(file, "r");
        CString line("old");
        EXPECT_FALSE(file.ReadString(line));
        EXPECT_STREQ(line.GetBuffer(), "");
        EXPECT_TRUE(file.IsEOF());
        EXPECT_FALSE(file.CloseFile());
    });
}

TEST_F(ClosedStream, WriteThatFailedDoesNotKeepLinesFromBeingRead) {
    m_folder.Written("f", "a\nb\n");
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        ASSERT_TRUE(file.OpenFile(m_folder.Path("f"), "r"));
        EXPECT_FALSE(file.WriteString("x"));
        CString line;
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_STREQ(line.GetBuffer(), "a\n");
        EXPECT_FALSE(file.IsEOF());
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_STREQ(line.GetBuffer(), "b\n");
        EXPECT_FALSE(file.ReadString(line));
        EXPECT_TRUE(file.IsEOF());
    });
}

TEST_F(ClosedStream, RefusesWhatItCannotKeepBack) {
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        OpenAndLose(file, "w");
        EXPECT_FALSE(file.WriteString(std::string(100'000, 'x').c_str()));
        EXPECT_FALSE(file.CloseFile());
    });
    EXPECT_EQ(m_folder.Contents("f"), "");
}

TEST_F(ClosedStream, RefusesToCloseOverTextThatItKeptBack) {
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        OpenAndLose(file, "w");
        EXPECT_TRUE(file.WriteString("lost"));
        EXPECT_FALSE(file.Close());
        EXPECT_FALSE(file.WriteString("lost"));
    });
    EXPECT_EQ(m_folder.Contents("f"), "");
}

TEST_F(ClosedStream, OpensAgain) {
    m_folder.Written("f", "a");
    support::WithoutPrivileges([&] {
        CMyFileIO file;
        OpenAndLose(file, "r");
        EXPECT_TRUE(file.Open());
        CString line;
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_STREQ(line.GetBuffer(), "a");
        EXPECT_TRUE(file.CloseFile());
    });
}

TEST(ClosedStandardOutput, MessageOfAPathIsLostAndTheProcessGoesOn) {
    const std::string output = support::WithoutPrivileges([] {
        const int saved = dup(STDOUT_FILENO);
        close(STDOUT_FILENO);
        CDir().DisplayMessage("lost", 0);
        dup2(saved, STDOUT_FILENO);
        CDir().DisplayMessage("told", 0);
    });
    EXPECT_EQ(output, "told\n");
}

TEST(ClosedStandardError, MessageOfTheErrorHandlerIsLostAndTheProcessGoesOn) {
    support::WithoutPrivileges([] {
        close(STDERR_FILENO);
        char detail[] = "lost";
        CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE, CErrorHandler::CUSTOM_ERROR,
                                     detail);
    });
}

}  // namespace
