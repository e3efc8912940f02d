// Keeps the signals that ask a program to end from ending it half-way.
// Loses none of them: what came in the meantime takes effect afterwards. Those that the caller
// ignores stay ignored.
#pragma once

#include <array>
#include <csignal>

namespace machine {

/// There is one at most at a time.
class HeldSignals {
  public:
    HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    /// Ends the program when one of them has come.
    ~HeldSignals();

    /// Whether one of them has come. A read that waits ends when one comes.
    static bool AskToEnd();

  private:
    static constexpr std::array kEnding = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

    std::array<struct sigaction, kEnding.size()> m_before;
};

}  // namespace machine
