// How many instructions the shipped program takes for fixed runs, counted by valgrind's callgrind:
// the same number on every run, so that a change for the worse is seen when it is made.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

#include "support/Program.h"

namespace {

constexpr double kSlack = 1.05;

/// The budgets: a line "NUMBER SWITCH..." for each run.
std::map<std::string, double> Budgets() {
    std::map<std::string, double> budgets;
    std::ifstream file(SYSTALLY_BUDGETS);
    double number = 0;
    for (std::string switches; file >> number && std::getline(file >> std::ws, switches);) {
        budgets[switches] = number;
    }
    return budgets;
}

/// Counted in an environment that is always the same: the C library looks at every variable.
double InstructionsOf(const std::string& argument) {
    const support::Result result = support::RunOnMachine(
        support::Arlo2Folder(),
        {"env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "valgrind", "--tool=callgrind",
         "--callgrind-out-file=/dev/null", SYSTALLY_STATIC, argument});
    constexpr char kLabel[] = "Collected : ";
    const size_t position = result.errors.find(kLabel);
    EXPECT_NE(position, std::string::npos) << "install the Debian package valgrind\n"
                                           << result.errors;
    return position == std::string::npos
               ? 0
               : std::stod(result.errors.substr(position + sizeof kLabel - 1));
}

TEST(Instructions, StayWithinTheirBudgets) {
    const std::map<std::string, double> budgets = Budgets();
    ASSERT_EQ(budgets.size(), 5U);
    for (const auto& [switches, budget] : budgets) {
        const double counted = InstructionsOf(switches);
        EXPECT_GT(counted, 0) << switches;
        EXPECT_LE(counted, budget * kSlack)
            << switches << ": if that is meant, write " << static_cast<long>(counted) << " into "
            << SYSTALLY_BUDGETS;
        EXPECT_GE(counted, budget / kSlack)
            << switches << " has become quicker: write " << static_cast<long>(counted) << " into "
            << SYSTALLY_BUDGETS << " so that it stays so";
    }
}

}  // namespace
