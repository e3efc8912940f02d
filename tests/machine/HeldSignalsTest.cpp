// Signals that ask to end: what waits is ended, what is in the middle is not.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "machine/Files.h"
#include "machine/HeldSignals.h"

namespace {

using machine::HeldSignals;

/// Asks a process to end until it has ended.
[[noreturn]] void AskAgainAndAgain(pid_t process, int number) {
    while (getppid() == process) {
        usleep(20000);
        kill(process, number);
    }
    _exit(0);
}

/// The signal that ends a child with this story, which is asked to end again and again; none when
/// it ends by itself.
template <typename Story>
std::optional<int> EndOf(int number, const Story& story) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        const pid_t self = getpid();
        if (fork() == 0) {
            AskAgainAndAgain(self, number);
        }
        story();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? std::optional(WTERMSIG(status)) : std::nullopt;
}

TEST(HeldSignals, ReadThatWaitsIsEndedAndTheSignalTakesEffectAfterwards) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) {
        EXPECT_EQ(EndOf(number,
                        [&ends] {
                            const HeldSignals held;
                            const machine::ReadBytes read = machine::ReadToEnd(ends[0], 1);
                            if (read.error != EINTR || !HeldSignals::AskToEnd()) {
                                _exit(1);
                            }
                        }),
                  number);
    }
    close(ends[0]);
    close(ends[1]);
}

TEST(HeldSignals, WithoutASignalNobodyAsksToEnd) {
    const HeldSignals held;
    EXPECT_FALSE(HeldSignals::AskToEnd());
}

TEST(HeldSignals, FormerHandlersAreBackAfterwards) {
    struct sigaction before = {};
    struct sigaction after = {};
    ASSERT_EQ(sigaction(SIGTERM, nullptr, &before), 0);
    { const HeldSignals held; }
    ASSERT_EQ(sigaction(SIGTERM, nullptr, &after), 0);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}

}  // namespace
