// Runs commands under a clock, callgrind, strace and the kernel's memory accounts.
#include "bench/Measure.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

/// Starts a program with standard output and standard error in files.
pid_t Start(const Arguments& program, const char* output, const char* errors) {
    std::vector<char*> argv;
    for (const std::string& argument : program) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors, O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    pid_t child = -1;
    const int failure = posix_spawnp(&child, argv[0], &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0) {
        throw std::runtime_error("cannot run " + program[0]);
    }
    return child;
}

/// A program that ends otherwise has done something else than what is measured.
void Run(const Arguments& program, int status, const char* output, const char* errors) {
    int end = 0;
    waitpid(Start(program, output, errors), &end, 0);
    if (!WIFEXITED(end) || WEXITSTATUS(end) != status) {
        throw std::runtime_error(program.back() + " of " + program[0] + " did not end with " +
                                 std::to_string(status));
    }
}

/// A file that ends with the object.
class Scratch {
  public:
    Scratch() {
        const int file = mkstemp(m_path.data());
        if (file < 0) {
            throw std::runtime_error("cannot make a file in /tmp");
        }
        close(file);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { unlink(m_path.c_str()); }

    const char* Path() const { return m_path.c_str(); }
    std::string Text() const {
        std::ifstream file(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::string m_path = "/tmp/systally-bench-XXXXXX";
};

Arguments Behind(Arguments tool, const Arguments& program) {
    tool.insert(tool.end(), program.begin(), program.end());
    return tool;
}

double Instructions(const Arguments& program, int status) {
    const Scratch errors;
    const Scratch profile;
    Run(Behind(
            {"valgrind", "--tool=callgrind", std::string("--callgrind-out-file=") + profile.Path()},
            program),
        status, "/dev/null", errors.Path());
    constexpr char kLabel[] = "Collected : ";
    const std::string text = errors.Text();
    const size_t position = text.find(kLabel);
    if (position == std::string::npos) {
        throw std::runtime_error("valgrind counts no instructions of " + program[0]);
    }
    return std::strtod(text.c_str() + position + sizeof kLabel - 1, nullptr);
}

double SystemCalls(const Arguments& program, int status) {
    const Scratch trace;
    Run(Behind({"strace", std::string("--output=") + trace.Path()}, program), status, "/dev/null",
        "/dev/null");
    const std::string text = trace.Text();
    // A line for each call, and one for the end.
    return static_cast<double>(std::count(text.begin(), text.end(), '\n')) - 1;
}

double Kilobytes(const Arguments& program, int status) {
    const Scratch output;
    Run(Behind({SYSTALLY_PEAK}, program), status, output.Path(), "/dev/null");
    return std::strtod(output.Text().c_str(), nullptr);
}

double Microseconds(const Command& command) {
    const auto start = std::chrono::steady_clock::now();
    for (const Arguments& program : command.programs) {
        Run(program, command.status, "/dev/null", "/dev/null");
    }
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

using Figure = double (*)(const Arguments& program, int status);

double Sum(const Command& command, Figure figure) {
    double sum = 0;
    for (const Arguments& program : command.programs) {
        sum += figure(program, command.status);
    }
    return sum;
}

double Largest(const Command& command, Figure figure) {
    double largest = 0;
    for (const Arguments& program : command.programs) {
        largest = std::max(largest, figure(program, command.status));
    }
    return largest;
}

}  // namespace

std::vector<Cost> Measure(const std::vector<Command>& commands, int rounds) {
    std::vector<std::vector<double>> times(commands.size());
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < commands.size(); ++i) {
            times[i].push_back(Microseconds(commands[i]));
        }
    }
    std::vector<Cost> costs;
    for (size_t i = 0; i < commands.size(); ++i) {
        std::sort(times[i].begin(), times[i].end());
        costs.push_back({times[i].front(), times[i][times[i].size() / 2],
                         Sum(commands[i], Instructions), Sum(commands[i], SystemCalls),
                         Largest(commands[i], Kilobytes)});
    }
    return costs;
}

std::string OutputOf(const Arguments& program) {
    const Scratch output;
    Run(program, 0, output.Path(), "/dev/null");
    return output.Text();
}
