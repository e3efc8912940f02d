// How long and in how much memory the program reads the worst tables that firmware could hand over.
// Runs the shipped program itself, on machine folders; its output goes nowhere.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "machine/MachineBuilder.h"
#include "machine/Overlay.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;

constexpr double kGoalSeconds = 5;
constexpr long kGoalKilobytes = 16 * 1024;

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes BIOS() {
    return Structure(0, 0x18).String(0x04, "QEV").String(0x05, "-[AB1234CUS-1.07]-").Encode(0);
}

/// A processor whose length of 0x90 leads 112 bytes back, to the first of many processors.
MachineBuilder BackwardSteps() {
    Bytes loop;
    for (int i = 0; i < 14; ++i) {
        loop = loop + Bytes{4, 6, 0, 0, 0, 0, 0, 0};
    }
    return MachineBuilder().AddRaw(BIOS() + loop + Bytes{4, 0x90, 0, 0}).AnnounceCount(0);
}

/// Structures without a length, each read as the strings of the one before.
MachineBuilder StructuresWithoutLength() {
    Bytes table = BIOS();
    for (int i = 0; i < 10'900; ++i) {
        table = table + Bytes{11, 0, 1, 1, 0, 0};
    }
    return MachineBuilder().AddRaw(table).AnnounceCount(65535);
}

MachineBuilder LongestString(uint8_t type, uint8_t length) {
    Bytes table = BIOS() + Bytes{type, length} + Bytes(length - 2U, 1) + Bytes(65'000, '-');
    return MachineBuilder().AddRaw(table).AnnounceCount(65535);
}

MachineBuilder ManyEnclosures() {
    Bytes table = BIOS();
    for (int i = 0; i < 4'600; ++i) {
        table = table + Bytes{3, 9, 0, 0, 1, 0x97, 0, 1, 0} + Bytes{'-', '[', 'U', 0, 0};
    }
    return MachineBuilder().AddRaw(table).AnnounceCount(65535);
}

struct Cost {
    double seconds = 0;
    long kilobytes = 0;
    int status = 0;
};

[[noreturn]] void Execute(const fs::path& folder, const char* argument) {
    if (const std::string failure = machine::EnterMachine(folder); !failure.empty()) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        _exit(126);
    }
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    execl(SYSTALLY_PROGRAM, "systally", argument, nullptr);
    _exit(126);
}

Cost Run(const fs::path& folder, const char* argument) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        Execute(folder, argument);
    }
    rusage usage = {};
    int status = 0;
    wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count(), usage.ru_maxrss, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

/// Whether the table keeps to the goals, in the report and in the dump.
bool Measure(const char* name, const MachineBuilder& machine, const fs::path& parent) {
    const fs::path folder = parent / "machine";
    machine.WriteTo(folder);
    bool good = true;
    for (const char* argument : {"/i", "/dump"}) {
        const Cost cost = Run(folder, argument);
        good = good && cost.status == 0 && cost.seconds < kGoalSeconds &&
               cost.kilobytes < kGoalKilobytes;
        std::printf("%-44s %-6s %9.3f %9.0f %11ld %9ld %7d\n", name, argument, cost.seconds,
                    kGoalSeconds, cost.kilobytes, kGoalKilobytes, cost.status);
    }
    fs::remove_all(folder);
    return good;
}

}  // namespace

int main() {
    std::string parent = (fs::temp_directory_path() / "systally-bench-XXXXXX").string();
    if (mkdtemp(parent.data()) == nullptr) {
        std::perror("mkdtemp");
        return 1;
    }
    std::printf("%-44s %-6s %9s %9s %11s %9s %7s\n", "hostile tables", "", "seconds", "goal",
                "kilobytes", "goal", "status");
    bool good = Measure("backward steps, 65,536 of them", BackwardSteps(), parent);
    good = Measure("65,535 structures without a length", StructuresWithoutLength(), parent) && good;
    good = Measure("system with a string of 64 KB", LongestString(1, 0x1B), parent) && good;
    good = Measure("OEM strings of 64 KB", LongestString(11, 5), parent) && good;
    good = Measure("4,600 enclosures with broken codes", ManyEnclosures(), parent) && good;
    fs::remove_all(parent);
    return good ? 0 : 1;
}
