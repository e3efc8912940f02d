// Notes signals rather than blocking them, so that no system call outwaits one.
#include "machine/HeldSignals.h"

namespace machine {

namespace {

volatile std::sig_atomic_t g_came = 0;  // the number of the latest

extern "C" void NoteThatItCame(int number) {
    g_came = number;
}

bool IsIgnored(int number) {
    struct sigaction current = {};
    return sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

}  // namespace

HeldSignals::HeldSignals() : m_before() {
    g_came = 0;
    struct sigaction note = {};
    note.sa_handler = NoteThatItCame;
    sigemptyset(&note.sa_mask);
    for (size_t i = 0; i < kEnding.size(); ++i) {
        sigaction(kEnding[i], nullptr, &m_before[i]);
        if (m_before[i].sa_handler != SIG_IGN) {
            sigaction(kEnding[i], &note, nullptr);
        }
    }
    // A file that grows too large is then an error of its write like any other.
    std::signal(SIGXFSZ, SIG_IGN);
}

HeldSignals::~HeldSignals() {
    for (size_t i = 0; i < kEnding.size(); ++i) {
        sigaction(kEnding[i], &m_before[i], nullptr);
    }
    if (g_came != 0) {
        std::raise(g_came);
    }
}

bool HeldSignals::AskToEnd() {
    // Where the caller blocks a signal, it waits.
    sigset_t pending;
    sigpending(&pending);
    for (const int number : kEnding) {
        if (sigismember(&pending, number) == 1 && !IsIgnored(number)) {
            return true;
        }
    }
    return g_came != 0;
}

}  // namespace machine
