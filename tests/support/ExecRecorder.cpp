// Replaces execlp, execvp and system.
#include "support/ExecRecorder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <ostream>

namespace support {

namespace {

ExecRecorder* g_recorder = nullptr;

ExecRecorder& Recorder() {
    if (g_recorder == nullptr) {
        std::abort();  // a call that no test expects
    }
    return *g_recorder;
}

int Record(const ExecCall& call) {
    Recorder().calls.push_back(call);
    const int error = Recorder().error;
    if (error == 0) {
        return 0;
    }
    errno = error;
    return -1;
}

}  // namespace

ExecRecorder::ExecRecorder() {
    g_recorder = this;
}

ExecRecorder::~ExecRecorder() {
    g_recorder = nullptr;
}

void PrintTo(const ExecCall& call, std::ostream* stream) {
    *stream << call.function << " \"" << call.program << '"';
    for (const std::string& argument : call.arguments) {
        *stream << " [" << argument << ']';
    }
}

}  // namespace support

extern "C" int execlp(const char* program, const char* argument, ...) noexcept {
    std::vector<std::string> arguments;
    va_list rest;
    va_start(rest, argument);
    for (const char* next = argument; next != nullptr; next = va_arg(rest, const char*)) {
        arguments.emplace_back(next);
    }
    va_end(rest);
    return support::Record({"execlp", program, arguments});
}

extern "C" int execvp(const char* program, char* const arguments[]) noexcept {
    support::ExecVector seen;
    seen.vector = static_cast<const void*>(arguments);
    for (char* const* entry = arguments; *entry != nullptr; ++entry) {
        seen.entries.push_back(*entry);
    }
    support::Recorder().lastVector = seen;
    return support::Record({"execvp", program, {seen.entries.begin(), seen.entries.end()}});
}

extern "C" int system(const char* command) {
    if (command == nullptr) {
        support::Recorder().calls.push_back({"system", "(is there an interpreter?)", {}});
        return support::Recorder().hasInterpreter ? 1 : 0;
    }
    return support::Record({"system", command, {}});
}
