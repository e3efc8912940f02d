// Times two ways to do the same work side by side and prints their ratio.
// The goal stands beside the figure.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace bench {

/// One measurement: minimum and median over the runs, in milliseconds.
struct Times {
    double minimum;
    double median;
};

inline Times Summary(std::vector<double> runs) {
    std::sort(runs.begin(), runs.end());
    return {runs.front(), runs[runs.size() / 2]};
}

template <typename Work>
double Milliseconds(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

/// Runs both in turn and prints a row: ours, the other, the ratio of the minima and the goal.
/// Whether the goal is met.
template <typename Ours, typename Other>
bool Pair(const char* name, double goal, const Ours& ours, const Other& other) {
    constexpr int kRuns = 9;
    std::vector<double> ourRuns;
    std::vector<double> otherRuns;
    for (int run = 0; run < kRuns; ++run) {
        ourRuns.push_back(Milliseconds(ours));
        otherRuns.push_back(Milliseconds(other));
    }
    const Times our = Summary(ourRuns);
    const Times theirs = Summary(otherRuns);
    const double ratio = our.minimum / theirs.minimum;
    std::printf("%-58s %9.2f %9.2f %9.2f %9.2f %7.2f %6.2f%s\n", name, our.minimum, our.median,
                theirs.minimum, theirs.median, ratio, goal, ratio <= goal ? "" : "   missed");
    return ratio <= goal;
}

inline void PrintHeading() {
    std::printf("%-58s %9s %9s %9s %9s %7s %6s\n", "milliseconds", "ours min", "median",
                "other min", "median", "ratio", "goal");
}

}  // namespace bench
