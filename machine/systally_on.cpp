// systally-on: runs the unmodified program on the machine of a folder.
// Replaces itself by systally, so status and streams are the program's own.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "machine/Overlay.h"

namespace {

constexpr int kFailure = 255;

int Explain(const std::string& message) {
    std::fprintf(stderr, "systally-on: %s\n", message.c_str());
    return kFailure;
}

/// The program beside this one, as it is installed.
std::filesystem::path FindProgram() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "systally";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        return Explain("usage: systally-on FOLDER SWITCH...");
    }
    const std::filesystem::path program = FindProgram();
    // Opened first: the private /dev may cover the path.
    const int file = open(program.c_str(), O_PATH | O_CLOEXEC);
    if (file < 0) {
        return Explain("cannot open " + program.string() + ": " + std::strerror(errno));
    }
    if (const std::string failure = machine::EnterMachine(argv[1]); !failure.empty()) {
        return Explain(failure);
    }
    // The folder's place in argv becomes the program's name.
    char** arguments = argv + 1;
    char name[] = "systally";
    arguments[0] = name;
    fexecve(file, arguments, environ);
    return Explain("cannot run " + program.string() + ": " + std::strerror(errno));
}
