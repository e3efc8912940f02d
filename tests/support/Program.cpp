// Runs a program as a shell would.
#include "support/Program.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>

#include "machine/Overlay.h"
#include "support/TemporaryFolder.h"

namespace support {

namespace {

constexpr int kCouldNotStart = 126;

/// Collects one stream without a limit and without a reader.
class StreamFile {
  public:
    StreamFile() : m_fd(memfd_create("stream", MFD_CLOEXEC)) {
        if (m_fd < 0) {
            throw std::runtime_error("memfd_create failed");
        }
    }
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;
    ~StreamFile() { close(m_fd); }

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

[[noreturn]] void Execute(const Arguments& command) {
    std::vector<char*> argv;
    for (const std::string& argument : command) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    std::fprintf(stderr, "cannot run %s; is its package installed?\n", argv[0]);
    _exit(kCouldNotStart);
}

}  // namespace

Result Run(const Arguments& command, const Preparation& prepare) {
    const StreamFile output;
    const StreamFile errors;
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("fork failed");
    }
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
        dup2(output.Get(), STDOUT_FILENO);
        dup2(errors.Get(), STDERR_FILENO);
        if (const std::string failure = prepare(); !failure.empty()) {
            std::fprintf(stderr, "%s\n", failure.c_str());
            _exit(kCouldNotStart);
        }
        Execute(command);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output.Text(), errors.Text()};
}

Result Run(const Arguments& command) {
    return Run(command, [] { return std::string(); });
}

Result RunIn(const std::filesystem::path& folder, const Arguments& command) {
    return Run(command, [&folder] {
        return chdir(folder.c_str()) == 0 ? "" : "cannot change to " + folder.string();
    });
}

Result RunOnMachine(const std::filesystem::path& folder, const Arguments& command) {
    return Run(command, [&folder] { return machine::EnterMachine(folder); });
}

Result RunWithHidden(const std::string& directory, const Arguments& command) {
    return Run(command, [&directory] {
        const std::string failure = machine::EnterPrivateNamespace();
        const bool hidden =
            failure.empty() && mount("none", directory.c_str(), "tmpfs", 0, nullptr) == 0;
        return hidden ? "" : "cannot hide " + directory + ": " + failure;
    });
}

namespace {

/// What root puts before a command to have fewer rights in it; others need nothing.
Arguments Lessened(Arguments setpriv, const Arguments& command) {
    if (geteuid() != 0) {
        return command;
    }
    setpriv.insert(setpriv.end(), command.begin(), command.end());
    return setpriv;
}

}  // namespace

Arguments WithoutRights(const Arguments& command) {
    return Lessened({"setpriv", "--inh-caps=-all", "--bounding-set=-dac_override,-dac_read_search"},
                    command);
}

Arguments AsOrdinaryUser(const Arguments& command) {
    return Lessened({"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"}, command);
}

Result SystallyOn(const std::filesystem::path& folder, const Arguments& arguments) {
    Arguments command = {ProgramPath("systally-on"), folder.string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return Run(command);
}

Result SystallyOn(const machine::MachineBuilder& machine, const Arguments& arguments) {
    const TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    return SystallyOn(folder.path() / "machine", arguments);
}

std::string ProgramPath(const std::string& name) {
    return std::string(SYSTALLY_PROGRAMS) + "/" + name;
}

std::filesystem::path Arlo2Folder() {
    return SYSTALLY_ARLO2;
}

}  // namespace support
