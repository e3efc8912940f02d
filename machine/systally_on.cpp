// systally-on: runs the unmodified program on the machine of a folder, or on this one where its
// firmware or its kernel keep the program from answering.
// Replaces itself by systally, so status and streams are the program's own.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "machine/FirmwareTables.h"
#include "machine/MachineMemory.h"
#include "machine/Overlay.h"

namespace {

constexpr int kFailure = 255;

constexpr char kThis[] = "--this";
constexpr char kUsage[] = "usage: systally-on FOLDER|--this SWITCH...";
constexpr char kHelp[] =
    "usage: systally-on FOLDER SWITCH...\n"
    "       systally-on --this SWITCH...\n"
    "Runs systally with these switches on the machine of a folder that systally-capture wrote,\n"
    "or on this machine, wherever it shows its SMBIOS table.\n"
    "  --this      answers for this machine, with UEFI firmware and without /dev/mem too\n"
    "  --help      prints this text\n"
    "  --version   prints the version\n"
    "  --          ends the options: what follows is a folder, even if it begins with -\n"
    "Output and exit status are those of systally; 255, with a message on standard error,\n"
    "when it cannot be run.\n";

void Tell(const std::string& message) {
    std::fprintf(stderr, "systally-on: %s\n", message.c_str());
}

int Explain(const std::string& message) {
    Tell(message);
    return kFailure;
}

int Print(const char* text) {
    return std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : kFailure;
}

/// The program beside this one, as it is installed. Without knowing its own place this one would
/// take whatever bears that name in the current directory.
machine::Outcome<std::filesystem::path> FindProgram() {
    constexpr char kSelf[] = "/proc/self/exe";
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink(kSelf, error);
    if (error) {
        return machine::Failure{"cannot tell where systally lies: " + std::string(kSelf) + ": " +
                                error.message()};
    }
    if (!self.is_absolute()) {
        return machine::Failure{"cannot tell where systally lies: " + self.string() +
                                " is no absolute path"};
    }
    return self.parent_path() / "systally";
}

/// The machine's memory as systally shall see it; a failure when no source shows its table.
machine::Outcome<machine::MachineMemory> RememberThisMachine() {
    const machine::FoundTables found = machine::FindFirmwareTables();
    if (found.tables) {
        return machine::MakeMachineMemory(*found.tables);
    }
    for (const std::string& refusal : found.refusals) {
        Tell(refusal);
    }
    return machine::Failure{machine::kNoSource};
}

/// Shows the program this machine's table in the place where it looks. Where there is none to be
/// had, the machine stays as it is: the program then says what it says on such a machine.
std::string EnterThisMachine() {
    const machine::Outcome<machine::MachineMemory> memory = RememberThisMachine();
    if (!memory) {
        Tell(memory.Reason() + ": systally answers as it would alone");
        return "";
    }
    for (const std::string& loss : memory->losses) {
        Tell(loss);
    }
    return machine::EnterMemory(memory->image);
}

std::string EnterFolder(const std::string& folder) {
    if (std::string failure = machine::WhyNoMachine(folder); !failure.empty()) {
        return failure;
    }
    // systally would be killed by a signal where its mapping has no file behind it, and take what
    // is missing of the last page for zeros.
    if (!machine::HoldsItsTable(folder + "/mem")) {
        return folder + "/mem ends before its SMBIOS table does; was it copied whole?";
    }
    return machine::EnterMachine(folder);
}

/// The machine stands in the place of the program's name, its switches behind it.
int RunOn(bool isThis, char** arguments) {
    const std::string machine = arguments[0];
    const machine::Outcome<std::filesystem::path> program = FindProgram();
    if (!program) {
        return Explain(program.Reason());
    }
    // Opened first: the private /dev may cover the path.
    const int file = open(program->c_str(), O_PATH | O_CLOEXEC);
    if (file < 0) {
        return Explain("cannot open " + program->string() + ": " + std::strerror(errno));
    }
    const std::string failure = isThis ? EnterThisMachine() : EnterFolder(machine);
    if (!failure.empty()) {
        return Explain(failure);
    }
    char name[] = "systally";
    arguments[0] = name;
    fexecve(file, arguments, environ);
    return Explain("cannot run " + program->string() + ": " + std::strerror(errno));
}

int Run(char** arguments) {
    const std::string_view first = arguments[0];
    if (first == "--help") {
        return Print(kHelp);
    }
    if (first == "--version") {
        return Print("systally-on " SYSTALLY_VERSION "\n");
    }
    if (first == "--") {
        return arguments[1] == nullptr ? Explain(kUsage) : RunOn(false, arguments + 1);
    }
    if (first.starts_with('-') && first != kThis) {
        return Explain("unknown option " + std::string(first) + "; systally-on --help lists them");
    }
    return RunOn(first == kThis, arguments);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        return Explain(kUsage);
    }
    try {
        return Run(argv + 1);
    } catch (const std::exception& error) {
        return Explain(error.what());  // memory exhausted
    }
}
