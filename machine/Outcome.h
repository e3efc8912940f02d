// A value, or the reason why there is none.
// Says nothing to the user: whoever talks to him does.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace machine {

struct Failure {
    std::string reason;
};

template <typename Value>
class Outcome {
  public:
    Outcome(Value value) : m_state(std::move(value)) {}
    Outcome(Failure failure) : m_state(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<Value>(m_state); }

    // Requires: there is a value.
    Value& operator*() { return std::get<Value>(m_state); }
    const Value& operator*() const { return std::get<Value>(m_state); }
    Value* operator->() { return &std::get<Value>(m_state); }
    const Value* operator->() const { return &std::get<Value>(m_state); }

    /// Requires: there is no value.
    const std::string& Reason() const { return std::get<Failure>(m_state).reason; }

  private:
    std::variant<Value, Failure> m_state;
};

}  // namespace machine
