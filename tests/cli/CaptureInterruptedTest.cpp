// systally-capture when it is asked to end half-way: it ends soon and leaves nothing behind, unless
// the caller ignores the signal.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "machine/Arlo2.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "support/Traced.h"

namespace {

namespace fs = std::filesystem;

using support::Arguments;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

class Interrupted : public testing::Test {
  protected:
    /// Captures while strace injects a signal or a fault.
    Result Capture(const Arguments& injection) const {
        Arguments options = {"-o", m_trace};
        options.insert(options.end(), injection.begin(), injection.end());
        return m_machine.Run(
            support::Traced(options, {ProgramPath("systally-capture"), m_folder.path() / "new"}));
    }

    std::string List() const { return support::Run({"ls", "-A", m_folder.path()}).output; }

    /// How many files the program has made in the folder.
    int FilesMade() const {
        std::ifstream trace(m_trace);
        int count = 0;
        for (std::string line; std::getline(trace, line);) {
            count += line.find("O_CREAT") == std::string::npos ? 0 : 1;
        }
        return count;
    }

    support::TemporaryFolder m_folder;
    support::TemporaryFolder m_other;
    fs::path m_trace = m_other.path() / "trace";
    MachineAtHand m_machine = MachineAtHand(machine::Arlo2());
};

/// The third directory that is made is the first bus: only "mem" and the list of devices may be
/// there by then, and no function is to follow.
TEST_F(Interrupted, SignalsToEndEndACaptureInProgress) {
    for (const char* name : {"HUP", "INT", "QUIT", "TERM"}) {
        const Result result = Capture({"-e", "trace=openat,mkdirat", "-e",
                                       "inject=mkdirat:signal=" + std::string(name) + ":when=3"});
        EXPECT_EQ(result.status, -1) << name << ": " << result.errors;
        EXPECT_EQ(List(), "") << name;
        EXPECT_GE(FilesMade(), 1) << name;
        EXPECT_LE(FilesMade(), 2) << name;
    }
}

TEST_F(Interrupted, SignalThatTheCallerIgnoresChangesNothing) {
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        m_machine.With([number] { return signal(number, SIG_IGN) == SIG_ERR ? "cannot" : ""; });
    }
    for (const char* name : {"HUP", "INT", "QUIT", "TERM"}) {
        const Result result = Capture({"-e", "trace=mkdirat", "-e",
                                       "inject=mkdirat:signal=" + std::string(name) + ":when=3"});
        EXPECT_EQ(result.status, 0) << name << ": " << result.errors;
        EXPECT_EQ(List(), "new\n") << name;
        fs::remove_all(m_folder.path() / "new");
    }
}

TEST_F(Interrupted, SignalThatTheCallerBlocksAndIgnoresChangesNothing) {
    m_machine.With([] {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGTERM);
        const bool isPending = signal(SIGTERM, SIG_IGN) != SIG_ERR &&
                               sigprocmask(SIG_BLOCK, &held, nullptr) == 0 && raise(SIGTERM) == 0;
        return isPending ? "" : "cannot hold the signal";
    });
    const Result result = m_machine.Run({ProgramPath("systally-capture"), m_folder.path() / "new"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(List(), "new\n");
}

}  // namespace
