// The program beside other programs that do the same, beside the least that must be done, and by
// the number of PCI functions and structures. Every figure is printed, with what it is held to.
// Times move with the machine; instructions are the figures to trust.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/Measure.h"
#include "machine/Arlo2.h"
#include "machine/MachineBuilder.h"
#include "machine/Overlay.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::PciFunction;

const Arguments kEmpty = {SYSTALLY_EMPTY};

Arguments Systally(const std::string& argument) {
    return {SYSTALLY_STATIC_PROGRAM, argument};
}

// --- Goals --------------------------------------------------------------------------------------

struct Goal {
    std::string name;
    double figure;
    double most;

    bool IsMet() const { return figure <= most; }
};

std::vector<Goal> goals;

void Hold(const std::string& name, double figure, double most) {
    goals.push_back({name, figure, most});
}

/// Whether all goals are met.
bool PrintGoals() {
    std::printf("\n%-58s %9s %9s\n", "goals", "figure", "at most");
    bool met = true;
    for (const Goal& goal : goals) {
        std::printf("%-58s %9.2f %9.2f%s\n", goal.name.c_str(), goal.figure, goal.most,
                    goal.IsMet() ? "" : "   missed");
        met = met && goal.IsMet();
    }
    return met;
}

// --- Tables -------------------------------------------------------------------------------------

void PrintHead(const char* title) {
    std::printf("\n%-44s %9s %9s %13s %7s %7s\n", title, "us (min)", "us (med)", "instructions",
                "calls", "KiB");
}

void PrintCost(const std::string& name, const Cost& cost) {
    std::printf("  %-42s %9.0f %9.0f %13.0f %7.0f %7.0f\n", name.c_str(), cost.minimum, cost.median,
                cost.instructions, cost.systemCalls, cost.kilobytes);
}

void PrintRatio(const std::string& name, const Cost& cost, const Cost& other) {
    std::printf("  %-42s %9.2f %9.2f %13.2f %7.2f %7.2f\n", name.c_str(),
                cost.minimum / other.minimum, cost.median / other.median,
                cost.instructions / other.instructions, cost.systemCalls / other.systemCalls,
                cost.kilobytes / other.kilobytes);
}

/// Measures the commands in turn, prints them, and the first one as ratios of the others.
std::vector<Cost> Compare(const char* title, const std::vector<Command>& commands, int rounds) {
    const std::vector<Cost> costs = Measure(commands, rounds);
    PrintHead(title);
    for (size_t i = 0; i < commands.size(); ++i) {
        PrintCost(commands[i].name, costs[i]);
    }
    for (size_t i = 1; i < commands.size(); ++i) {
        PrintRatio("ratio to " + commands[i].name, costs[0], costs[i]);
    }
    std::fflush(stdout);
    return costs;
}

double TimeRatio(const Cost& cost, const Cost& other) {
    return cost.minimum / other.minimum;
}

double InstructionRatio(const Cost& cost, const Cost& other) {
    return cost.instructions / other.instructions;
}

// --- Machines -----------------------------------------------------------------------------------

/// Writes the kernel's list beside the buses, which lspci reads first.
void WriteDeviceList(const fs::path& tree) {
    std::ofstream list(tree / "devices", std::ios::binary | std::ios::trunc);
    for (const fs::directory_entry& bus : fs::directory_iterator(tree)) {
        if (!bus.is_directory()) {
            continue;
        }
        for (const fs::directory_entry& file : fs::directory_iterator(bus)) {
            unsigned device = 0;
            unsigned function = 0;
            std::sscanf(file.path().filename().c_str(), "%x.%x", &device, &function);
            std::array<unsigned char, 4> id = {};
            std::ifstream(file.path()).read(reinterpret_cast<char*>(id.data()), id.size());
            char line[128];
            std::snprintf(line, sizeof line,
                          "%s%02x\t%02x%02x%02x%02x\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\n",
                          bus.path().filename().c_str(), device * 8 + function, id[1], id[0], id[3],
                          id[2]);
            list << line;
        }
    }
}

void MustEnter(const fs::path& folder) {
    if (const std::string failure = machine::EnterMachine(folder); !failure.empty()) {
        throw std::runtime_error(failure);
    }
}

const Bytes kBIOS = {0, 5, 0, 0, 1, 'Q', 'E', 'V', 0, 0};

/// Lays a server with so many PCI functions, on up to 256 buses, over this machine.
void EnterFunctions(const fs::path& folder, size_t count) {
    constexpr size_t kBuses = 256;
    constexpr size_t kDevices = 32;
    MachineBuilder builder = MachineBuilder().AddRaw(kBIOS).AnnounceCount(1);
    for (size_t i = 0; i < count; ++i) {
        PciFunction function;
        function.bus = static_cast<uint16_t>(i % kBuses);
        function.device = static_cast<uint16_t>(i / kBuses % kDevices);
        function.function = static_cast<uint16_t>(i / kBuses / kDevices);
        function.vendorId = 0x8086;
        function.deviceId = static_cast<uint16_t>(i);
        function.classCode = 0x020000;
        builder.Add(function);
    }
    builder.WriteTo(folder);
    WriteDeviceList(folder / "pci");
    MustEnter(folder);
}

/// Lays a server with so many structures that say nothing, and without PCI functions, over this
/// machine.
void EnterStructures(const fs::path& folder, size_t count) {
    Bytes table = kBIOS;
    for (size_t i = 0; i < count; ++i) {
        table.insert(table.end(), {126, 4, 0, 0, 0, 0});
    }
    MachineBuilder().AddRaw(table).AnnounceCount(static_cast<uint16_t>(count + 1)).WriteTo(folder);
    MustEnter(folder);
}

// --- Rows ---------------------------------------------------------------------------------------

const Arguments kLspci = {"lspci", "-n",
                          "-A",    "linux-proc",
                          "-O",    "hwdb.disable=1",
                          "-O",    "net.cache_name=",
                          "-O",    "proc.path=/proc/bus/pci"};
const Arguments kPlainLspci = {"lspci", "-n", "-A", "linux-proc"};

void CompareStart() {
    const std::vector<Cost> costs =
        Compare("start", {{"systally /x64", {Systally("/x64")}}, {"empty program", {kEmpty}}}, 400);
    Hold("/x64 to an empty program: time", TimeRatio(costs[0], costs[1]), 1.15);
    Hold("/x64 to an empty program: instructions", InstructionRatio(costs[0], costs[1]), 1.5);
}

void CompareIdentity(const std::string& image) {
    const Command dmidecode = {
        "dmidecode -s system-product-name",
        {{"dmidecode", "--no-sysfs", "-d", image, "-s", "system-product-name"}}};
    // The one answers with 1 for yes, the other with 0.
    for (const auto& [question, yes] : {std::pair("/m:7712", 1), std::pair("/s", 0)}) {
        const std::string name = std::string("systally ") + question;
        const std::vector<Cost> costs = Compare(
            "identity", {{name, {Systally(question)}, yes}, dmidecode, {"empty program", {kEmpty}}},
            400);
        // Nothing that is started can be faster.
        PrintRatio("empty program to dmidecode", costs[2], costs[1]);
        Hold(name + " to dmidecode: time", TimeRatio(costs[0], costs[1]), 0.6);
    }
}

void CompareReport(const std::string& image) {
    const Arguments dmidecode = {"dmidecode", "--no-sysfs", "-d", image};
    for (const char* layout : {"/i", "/p"}) {
        const std::string name = std::string("systally ") + layout;
        const std::vector<Cost> costs = Compare("report on the sample server",
                                                {{name, {Systally(layout)}},
                                                 {"dmidecode, lspci -n", {dmidecode, kLspci}},
                                                 {"plain lspci -n alone", {kPlainLspci}},
                                                 {"empty program", {kEmpty}}},
                                                100);
        if (std::string(layout) == "/i") {
            Hold("/i to dmidecode and lspci: time", TimeRatio(costs[0], costs[1]), 0.35);
            Hold("/i to dmidecode and lspci: instructions", InstructionRatio(costs[0], costs[1]),
                 0.25);
            Hold("/i above an empty program: MiB", (costs[0].kilobytes - costs[3].kilobytes) / 1024,
                 1);
        }
    }
}

/// What composes a report's lines must have composed them, or it is no measure.
void MustCompose(const std::string& report, const std::string& lines, const std::string& others) {
    if (lines.empty() || !report.ends_with(lines) || others.size() != lines.size()) {
        throw std::runtime_error("lines that were composed otherwise are not those of the report");
    }
}

void CompareFloor() {
    const Arguments byHand = {SYSTALLY_BY_HAND, "text"};  // in the order of the directories
    const Arguments byHandInOrder = {SYSTALLY_BY_HAND, "report"};
    const Arguments printing = {SYSTALLY_PRINTING, "512"};  // in the order of the devices
    const std::string report = OutputOf(Systally("/i"));
    MustCompose(report, OutputOf(byHandInOrder), OutputOf(byHand));
    MustCompose(report, OutputOf(byHandInOrder), OutputOf(printing));
    const std::string bytes = std::to_string(report.size());
    const std::vector<Cost> costs =
        Compare("512 functions",
                {{"systally /i", {Systally("/i")}},
                 {"the system calls alone", {{SYSTALLY_FLOOR, bytes}}},
                 {"the same, listed by readdir", {{SYSTALLY_FLOOR_BY_READDIR, bytes}}},
                 {"the calls, and the text by hand", {byHand}},
                 {"the same, kept and ordered", {byHandInOrder}},
                 {"the calls, and the text by printf", {{SYSTALLY_FLOOR, bytes}, printing}},
                 {"lspci -n", {kLspci}}},
                100);
    const Cost& calls = costs[1];
    // What stands in the way of the goal for the instructions: this much is taken by plain C that
    // does not look at what it reads.
    PrintRatio("the text by hand to the calls alone", costs[3], calls);
    PrintRatio("the same, kept and ordered", costs[4], calls);
    Hold("/i, 512 functions, to its system calls: time", TimeRatio(costs[0], calls), 1.25);
    Hold("/i, 512 functions, to its system calls: instructions", InstructionRatio(costs[0], calls),
         1.6);
}

void CompareThisMachine() {
    Compare("this machine's own /proc/bus/pci",
            {{"systally /vid:FFFF", {Systally("/vid:FFFF")}}, {"lspci -n", {kLspci}}}, 100);
}

// --- Growth -------------------------------------------------------------------------------------

/// What each of `count` things costs beyond a machine without them.
Cost Each(const Cost& cost, const Cost& without, size_t count) {
    const auto number = static_cast<double>(count);
    return {(cost.minimum - without.minimum) / number, (cost.median - without.median) / number,
            (cost.instructions - without.instructions) / number,
            (cost.systemCalls - without.systemCalls) / number,
            (cost.kilobytes - without.kilobytes) / number};
}

using Enter = void (*)(const fs::path& folder, size_t count);

/// Prints the cost of each for growing numbers. Holds that of the last one to that of the one at
/// `from`.
void MeasureGrowth(const char* what, Enter enter, const std::vector<size_t>& counts, size_t from,
                   const fs::path& parent) {
    const std::vector<Command> report = {{"", {Systally("/i")}}};
    // Callgrind counts the instruction that copies a whole table once for each byte. The C library
    // takes it for large blocks alone, which would look like growth.
    setenv("GLIBC_TUNABLES", "glibc.cpu.x86_rep_movsb_threshold=0x7fffffff", 1);
    enter(parent / (std::string(what) + "-0"), 0);
    const Cost without = Measure(report, 50).front();
    std::printf("\nfor each of so many %-24s %9s %9s %13s %7s %7s\n", what, "us (min)", "us (med)",
                "instructions", "calls", "KiB");
    std::vector<Cost> each;
    for (const size_t count : counts) {
        const fs::path folder = parent / (what + ("-" + std::to_string(count)));
        enter(folder, count);
        each.push_back(Each(Measure(report, count > 10'000 ? 5 : 50).front(), without, count));
        std::printf("  %-42zu %9.3f %9.3f %13.1f %7.2f %7.3f\n", count, each.back().minimum,
                    each.back().median, each.back().instructions, each.back().systemCalls,
                    each.back().kilobytes);
        std::fflush(stdout);
    }
    const std::string name = std::string("growth of the cost for each of the ") + what;
    Hold(name + ": instructions", InstructionRatio(each.back(), each[from]), 1.1);
    // Where each one's cost is lost in the noise of starting, so is growth from it.
    constexpr double kNoiseKilobytes = 0.05;
    constexpr double kNoiseMicroseconds = 1;
    Hold(name + ": memory", each.back().kilobytes / std::max(each[from].kilobytes, kNoiseKilobytes),
         1.1);
    Hold(name + ": time", each.back().minimum / std::max(each[from].minimum, kNoiseMicroseconds),
         1.1);
    unsetenv("GLIBC_TUNABLES");
}

void CompareAll(const fs::path& parent) {
    std::printf("Times of %ld processors; the first command of each table is held to the others.\n",
                sysconf(_SC_NPROCESSORS_ONLN));
    CompareThisMachine();
    CompareStart();
    const fs::path sample = parent / "sample";
    machine::Arlo2().WriteTo(sample);
    WriteDeviceList(sample / "pci");
    MustEnter(sample);
    CompareIdentity(sample / "mem");
    CompareReport(sample / "mem");
    EnterFunctions(parent / "512", 512);
    CompareFloor();
    MeasureGrowth("functions", EnterFunctions, {8, 64, 512, 4'096, 65'536}, 2, parent);
    MeasureGrowth("structures", EnterStructures, {10, 100, 1'000, 10'000}, 1, parent);
    Hold("the stripped static program: MB",
         static_cast<double>(fs::file_size(SYSTALLY_STATIC_PROGRAM)) / 1e6, 1.0);
}

/// Measures everything under a folder. Returns the exit status.
int MeasureIn(const fs::path& parent) {
    try {
        CompareAll(parent);
        return PrintGoals() ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "program_bench: %s\n", failure.what());
        return 1;
    }
}

}  // namespace

int main() {
    // A small environment, the same for all that are compared: the C library looks at every
    // variable when it starts, so that more of them would make the programs look alike.
    clearenv();
    setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    std::string parent = (fs::temp_directory_path() / "systally-bench-XXXXXX").string();
    if (mkdtemp(parent.data()) == nullptr) {
        std::perror("mkdtemp");
        return 1;
    }
    // In a process of its own: the folders are in use until its mounts end with it.
    const pid_t child = fork();
    if (child == 0) {
        const int status = MeasureIn(parent);
        std::fflush(stdout);
        _exit(status);
    }
    int status = 0;
    waitpid(child, &status, 0);
    fs::remove_all(parent);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
