// execlp, execvp and system that record how they are called and start nothing.
// Only for test programs that link it: it replaces the three functions for the whole program.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace support {

/// One call: the function, the program or command that it was given, and the arguments.
struct ExecCall {
    std::string function;
    std::string program;
    std::vector<std::string> arguments;
    bool operator==(const ExecCall&) const = default;
};

void PrintTo(const ExecCall& call, std::ostream* stream);

/// The vector of the last execvp, by its addresses.
struct ExecVector {
    const void* vector = nullptr;
    std::vector<char*> entries;  // without the null at the end
};

/// Records from its construction on. At first each call succeeds, and there is an interpreter.
/// There must be one at most.
class ExecRecorder {
  public:
    ExecRecorder();
    ExecRecorder(const ExecRecorder&) = delete;
    ExecRecorder& operator=(const ExecRecorder&) = delete;
    ~ExecRecorder();

    std::vector<ExecCall> calls;
    ExecVector lastVector;
    /// What a call sets errno to before it returns -1; 0 for a call that succeeds.
    int error = 0;
    /// Whether system finds an interpreter when it is asked for one.
    bool hasInterpreter = true;
};

}  // namespace support
