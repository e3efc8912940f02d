// A child process for a story: its standard output and its failures come back to the test.
#include "support/InMachine.h"

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <system_error>

#include "machine/Overlay.h"
#include "support/TemporaryFolder.h"

// A sanitizer's finding must not look like an exit status of the code under test, and memory that
// cannot be had must be reported to that code.
extern "C" const char* SanitizersDefaultOptions() asm("__asan_default_options");
const char* SanitizersDefaultOptions() {
    return "exitcode=99:allocator_may_return_null=1";
}

namespace support {

namespace {

constexpr int kStoryEnded = 0;
constexpr int kStoryDidNotBegin = 126;

/// A file without a name that parent and child share.
class SharedFile {
  public:
    SharedFile() : m_fd(memfd_create("shared", MFD_CLOEXEC)) {
        if (m_fd < 0) {
            throw std::system_error(errno, std::generic_category(), "memfd_create");
        }
    }
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;
    ~SharedFile() { close(m_fd); }

    int Get() const { return m_fd; }
    std::string Text() const {
        std::string text(static_cast<size_t>(lseek(m_fd, 0, SEEK_END)), '\0');
        const ssize_t count = pread(m_fd, text.data(), text.size(), 0);
        text.resize(count < 0 ? 0 : static_cast<size_t>(count));
        return text;
    }

  private:
    int m_fd;
};

/// Writes what fails in the child to a file, and so keeps it out of standard output.
class FailureWriter : public testing::EmptyTestEventListener {
  public:
    explicit FailureWriter(int fd) : m_fd(fd) {}

    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed()) {
            const char* file = result.file_name() == nullptr ? "" : result.file_name();
            dprintf(m_fd, "%s:%d: %s\n", file, result.line_number(), result.message());
        }
    }

  private:
    int m_fd;
};

void ReportFailuresTo(int fd) {
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    listeners.Append(new FailureWriter(fd));
}

/// What the child does before its story. Returns an empty text, or what went wrong.
using Preparation = std::function<std::string()>;

[[noreturn]] void Tell(const Story& story, const Preparation& prepare) {
    try {
        if (const std::string failure = prepare(); !failure.empty()) {
            ADD_FAILURE() << failure;
            std::exit(kStoryDidNotBegin);
        }
        story();
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
    }
    std::exit(kStoryEnded);
}

Ending EndingOf(const Story& story, const Preparation& prepare) {
    const SharedFile output;
    const SharedFile failures;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        ReportFailuresTo(failures.Get());
        dup2(output.Get(), STDOUT_FILENO);
        Tell(story, prepare);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
        ADD_FAILURE() << "signal " << WTERMSIG(status) << " ended the story";
    }
    if (const std::string text = failures.Text(); !text.empty()) {
        ADD_FAILURE() << text;
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output.Text()};
}

std::string OutputOf(const Ending& ending) {
    EXPECT_EQ(ending.status, kStoryEnded) << "the story did not come to its end";
    return ending.output;
}

std::string GiveUpPrivileges() {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    return syscall(SYS_capset, &header, none) == 0 ? "" : "cannot give up privileges";
}

}  // namespace

Ending EndingOnMachine(const std::filesystem::path& folder, const Story& story) {
    return EndingOf(story, [&folder] { return machine::EnterMachine(folder); });
}

Ending EndingOnMachine(const machine::MachineBuilder& machine, const Story& story) {
    const TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    return EndingOnMachine(folder.path() / "machine", story);
}

std::string OnMachine(const std::filesystem::path& folder, const Story& story) {
    return OutputOf(EndingOnMachine(folder, story));
}

std::string OnMachine(const machine::MachineBuilder& machine, const Story& story) {
    const TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    return OnMachine(folder.path() / "machine", story);
}

std::string InPrivateNamespace(const Story& story) {
    return OutputOf(EndingOf(story, machine::EnterPrivateNamespace));
}

std::string WithoutPrivileges(const Story& story) {
    return OutputOf(EndingOf(story, GiveUpPrivileges));
}

void CoverWithEmptyDirectory(const std::filesystem::path& directory, const std::string& options) {
    if (mount("none", directory.c_str(), "tmpfs", 0, options.c_str()) != 0) {
        throw std::system_error(errno, std::generic_category(),
                                "cannot cover " + directory.string());
    }
}

}  // namespace support
