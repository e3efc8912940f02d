// Keeps the signals that ask a program to end from ending it half-way.
// Loses none of them: what came in the meantime takes effect afterwards.
#pragma once

#include <csignal>

namespace machine {

class HeldSignals {
  public:
    HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals();

    /// Whether one of them has come.
    static bool AskToEnd();

  private:
    sigset_t m_before;
};

}  // namespace machine
