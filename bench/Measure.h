// What a command costs: time, instructions, system calls, memory.
// Measures side by side: times are taken in turn, so that a busy moment meets every command.
#pragma once

#include <string>
#include <vector>

using Arguments = std::vector<std::string>;

/// One or more programs that are run one after the other. Their costs add up, but for memory.
struct Command {
    std::string name;
    std::vector<Arguments> programs;
    int status = 0;  ///< with which each of them ends; queries answer by it
};

struct Cost {
    double minimum = 0;  ///< wall time in microseconds, of all runs
    double median = 0;
    double instructions = 0;  ///< in user space, as valgrind's callgrind counts them
    double systemCalls = 0;   ///< as strace counts them
    double kilobytes = 0;     ///< the largest resident size
};

/// The costs in the order of the commands. Each command is run `rounds` times for its time, and
/// once for each other figure. Output goes nowhere. Throws std::runtime_error when a program cannot
/// be run or ends with another status.
std::vector<Cost> Measure(const std::vector<Command>& commands, int rounds);

/// What a program that ends with 0 writes to standard output. Throws as Measure() does.
std::string OutputOf(const Arguments& program);
