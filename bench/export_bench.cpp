// systally-export on the reports of a fleet: time per thousand, and memory by their number.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

struct Cost {
    double seconds = 0;
    long kilobytes = 0;  ///< the largest resident size
    bool succeeded = false;
};

/// Runs the program with its output thrown away.
Cost Measure(const char* program, const char* shape, const fs::path& reports) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        execl(program, program, shape, reports.c_str(), nullptr);
        _exit(126);
    }
    int status = 0;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return {time.count(), usage.ru_maxrss, WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

void WriteReports(const fs::path& file, const std::string& report, int count) {
    std::ofstream stream(file, std::ios::binary);
    for (int i = 0; i < count; ++i) {
        stream << report << '\n';
    }
}

double PerThousand(const Cost& cost, int count) {
    return cost.seconds * 1000 / count;
}

Cost PrintRow(const char* program, const char* shape, const fs::path& file, int count) {
    const Cost cost = Measure(program, shape, file);
    std::printf("%-14s %9d %16.3f %12.1f\n", shape, count, PerThousand(cost, count),
                static_cast<double>(cost.kilobytes) / 1024);
    return cost;
}

/// JSON lines of a hundred machines, a thousand, ten thousand: whether they keep to the goals.
bool MeasureJson(const char* program, const std::string& report, const fs::path& file) {
    constexpr double kGoalSeconds = 2;
    constexpr double kGoalGrowth = 1.1;  // of memory, from the first to the last
    bool met = true;
    long first = 0;
    for (const int count : {100, 1'000, 10'000}) {
        WriteReports(file, report, count);
        const Cost cost = PrintRow(program, "--json", file, count);
        first = first == 0 ? cost.kilobytes : first;
        met = met && cost.succeeded && PerThousand(cost, count) <= kGoalSeconds &&
              static_cast<double>(cost.kilobytes) <= kGoalGrowth * static_cast<double>(first);
    }
    std::printf("%-14s %9s %16.3f %12s%s\n", "goal: --json", "", kGoalSeconds, "no growth",
                met ? "" : "   missed");
    return met;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: export_bench PROGRAM REPORT\n", stderr);
        return 2;
    }
    std::ostringstream report;
    report << std::ifstream(argv[2]).rdbuf();
    const fs::path file = fs::temp_directory_path() / "systally-export-bench.ini";
    std::printf("%-14s %9s %16s %12s\n", "", "machines", "s per thousand", "MiB at most");
    const bool met = MeasureJson(argv[1], report.str(), file);
    const bool succeeded = PrintRow(argv[1], "--html", file, 10'000).succeeded;
    fs::remove(file);
    return met && succeeded ? 0 : 1;
}
