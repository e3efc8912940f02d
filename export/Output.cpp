// Standard output, or a file that appears whole or not at all.
#include "export/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace report {

namespace {

namespace fs = std::filesystem;

/// The temporary file, for the signal handler alone; empty when there is none.
std::array<char, PATH_MAX> g_temporary;

/// Those that end a process unless it asks for something else, and can be asked. The real-time
/// signals do too.
constexpr int kEndingSignals[] = {
    SIGHUP,    SIGINT,  SIGQUIT, SIGILL,  SIGTRAP,   SIGABRT, SIGBUS,  SIGFPE,
    SIGUSR1,   SIGSEGV, SIGUSR2, SIGPIPE, SIGALRM,   SIGTERM, SIGXCPU, SIGXFSZ,
    SIGVTALRM, SIGPROF, SIGIO,   SIGPWR,  SIGSTKFLT, SIGSYS,
};

void RemoveTemporaryAndEnd(int signal) {
    unlink(g_temporary.data());
    // The default action, which was restored on entry, ends the process.
    raise(signal);
}

/// Holds all signals off as long as it lives.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }

  private:
    sigset_t m_before;
};

void RemoveOnSignals(const std::string& temporary) {
    std::snprintf(g_temporary.data(), g_temporary.size(), "%s", temporary.c_str());
    struct sigaction action = {};
    action.sa_handler = RemoveTemporaryAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    const auto removeOn = [&action](int signal) {
        struct sigaction current = {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler == SIG_DFL) {
            sigaction(signal, &action, nullptr);
        }
    };
    std::for_each(std::begin(kEndingSignals), std::end(kEndingSignals), removeOn);
    for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) {
        removeOn(signal);
    }
}

/// The permissions of a new file.
mode_t NewMode() {
    constexpr mode_t kNewFile = 0666;
    const mode_t mask = umask(0);
    umask(mask);
    return kNewFile & ~mask;
}

/// Gives `file` the permissions of the file to be replaced and, as far as the caller may, its owner
/// and its group.
bool TakeAfter(const std::string& target, int file) {
    constexpr mode_t kPermissions = 0777;
    struct stat status = {};
    if (stat(target.c_str(), &status) != 0) {
        return fchmod(file, NewMode()) == 0;
    }
    if (fchown(file, status.st_uid, status.st_gid) != 0) {
        // Another's file becomes the caller's; its group may be one of the caller's.
        [[maybe_unused]] const int ignored = fchown(file, static_cast<uid_t>(-1), status.st_gid);
    }
    return fchmod(file, status.st_mode & kPermissions) == 0;
}

/// Where a path leads.
struct Destination {
    std::string path;     ///< no link itself, whether there is a file or not
    int descriptor = -1;  ///< of this process, when the path leads to one: /dev/stdout
};

/// The open file that an entry of /proc stands for, such as /proc/self/fd/1; -1 for other paths.
int DescriptorOf(const fs::path& path) {
    std::error_code error;
    const std::string folder = fs::canonical(path.parent_path(), error).string();
    const std::string name = path.filename().string();
    int descriptor = -1;
    if (folder.starts_with("/proc/" + std::to_string(getpid()) + "/") && folder.ends_with("/fd")) {
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
    }
    return descriptor;
}

/// Links stay links: the file that one leads to is the one to replace. Fails when they go round in
/// a circle.
std::error_code FollowLinks(fs::path path, Destination& destination) {
    constexpr int kMost = 40;  // as the kernel follows
    std::error_code error;
    for (int i = 0; i < kMost; ++i) {
        destination = {path.string(), DescriptorOf(path)};
        if (destination.descriptor >= 0 || !fs::is_symlink(fs::symlink_status(path, error))) {
            return {};
        }
        const fs::path next = fs::read_symlink(path, error);
        if (error) {
            return error;
        }
        path = path.parent_path() / next;
    }
    return std::make_error_code(std::errc::too_many_symbolic_link_levels);
}

}  // namespace

void ReserveStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            // The lowest free number is this one. Opened for what nobody does with it.
            [[maybe_unused]] const int opened =
                open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

Output::~Output() {
    if (m_file > STDERR_FILENO) {
        close(m_file);
    }
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
}

std::string Output::Open(const std::string& path) {
    if (path.empty() || path == "-") {
        m_file = STDOUT_FILENO;
        return "";
    }
    m_name = path;
    Destination destination;
    if (const std::error_code error = FollowLinks(path, destination)) {
        errno = error.value();
        return Failed("open");
    }
    if (destination.descriptor >= 0) {
        m_file = fcntl(destination.descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        return m_file < 0 ? Failed("open") : "";
    }
    std::error_code error;
    const fs::file_status status = fs::status(destination.path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        m_file = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        return m_file < 0 ? Failed("open") : "";
    }
    m_target = destination.path;
    return OpenTemporary();
}

/// A file beside the target, where renaming it needs no copy. Its name ends in nothing that a
/// program watching the folder looks for.
std::string Output::OpenTemporary() {
    std::string name = (fs::path(m_target).parent_path() / ".systally-export.XXXXXX").string();
    {
        const SignalsHeld held;
        m_file = mkostemp(name.data(), O_CLOEXEC);
        if (m_file < 0) {
            return Failed("create a file beside");
        }
        m_temporary = name;
        RemoveOnSignals(m_temporary);
    }
    return TakeAfter(m_target, m_file) ? "" : Failed("set the permissions of");
}

std::string Output::Write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(m_file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return Failed("write");
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
    }
    return "";
}

std::string Output::Commit() {
    if (m_temporary.empty()) {
        return "";
    }
    // On the disk before the name: a crash must not leave an empty file in its place.
    if (fsync(m_file) != 0) {
        return Failed("write");
    }
    if (rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        return Failed("replace");
    }
    m_temporary.clear();
    g_temporary.front() = '\0';
    return "";
}

std::string Output::Failed(const char* what) const {
    return std::string("cannot ") + what + " " + m_name + ": " + std::strerror(errno);
}

}  // namespace report
