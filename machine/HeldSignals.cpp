// Blocks signals rather than handling them: a blocked one waits.
#include "machine/HeldSignals.h"

namespace machine {

namespace {

constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

}  // namespace

HeldSignals::HeldSignals() : m_before() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int number : kEndingSignals) {
        sigaddset(&ending, number);
    }
    sigprocmask(SIG_BLOCK, &ending, &m_before);
    // A file that grows too large is then an error of its write like any other.
    std::signal(SIGXFSZ, SIG_IGN);
}

HeldSignals::~HeldSignals() {
    sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

bool HeldSignals::AskToEnd() {
    sigset_t pending;
    sigpending(&pending);
    for (const int number : kEndingSignals) {
        if (sigismember(&pending, number) == 1) {
            return true;
        }
    }
    return false;
}

}  // namespace machine
