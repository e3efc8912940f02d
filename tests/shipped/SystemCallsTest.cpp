// What the shipped programs ask of the kernel, watched by strace: they read two places, read-only,
// and start and leave nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "docs/Documents.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using Lines = std::vector<std::string>;

/// The calls of one run, a line each, from the program's own start on.
struct Trace {
    Lines loader;  ///< those that load the libraries; a static program has none
    Lines own;
};

const char* const kBuilds[] = {"Static", "Dynamic"};

/// The last call of the loader: it asks how large the stack may be.
constexpr char kEndOfLoading[] = "prlimit64(0, RLIMIT_STACK, NULL, ";

// Every switch, alone or with what it needs, and no switch.
const support::Arguments kCommandLines[] = {
    {},
    {"/qMachType7712"},
    {"/m:7712"},
    {"/dumpProp"},
    {"/p"},
    {"/dumpINI"},
    {"/i"},
    {"/s"},
    {"/dump"},
    {"/vid:8086"},
    {"/did:1229"},
    {"/svid:1014"},
    {"/sdid:0"},
    {"/vid:8086", "/bn:1"},
    {"/vid:8086", "/bn:1", "/dn:4"},
    {"/vid:8086", "/add:7"},
    {"/x64"},
};

/// The switch with which an argument begins; "" when there is none.
std::string SwitchOf(const std::string& argument, const documents::Words& switches) {
    std::string found;
    for (const std::string& name : switches) {
        if (argument.starts_with(name) && name.size() > found.size()) {
            found = name;
        }
    }
    return found;
}

TEST(WatchedCommandLines, HoldEachSwitchThatTheCompletionOffers) {
    const documents::Words switches =
        support::FindWords(documents::Between(documents::Read("completions/systally"),
                                              "_systally_switches() {", "\n}\n"),
                           "/[A-Za-z0-9]+:?");
    documents::Words watched;
    for (const support::Arguments& arguments : kCommandLines) {
        for (const std::string& argument : arguments) {
            watched.insert(SwitchOf(argument, switches));
        }
    }
    EXPECT_EQ(watched, switches);
}

std::string Joined(const support::Arguments& arguments) {
    std::string text = "systally";
    for (const std::string& argument : arguments) {
        text += " " + argument;
    }
    return text;
}

Lines LinesOf(const std::string& trace) {
    std::ifstream file(trace);
    Lines lines;
    for (std::string line; std::getline(file, line);) {
        // With one process alone there is no process number in front.
        const size_t number = line.find_first_not_of("0123456789 ");
        lines.push_back(line.substr(number == std::string::npos ? 0 : number));
    }
    return lines;
}

Lines Matching(const Lines& lines, const std::string& part) {
    Lines matching;
    for (const std::string& line : lines) {
        if (line.find(part) != std::string::npos) {
            matching.push_back(line);
        }
    }
    return matching;
}

std::set<std::string> NamesOf(const Lines& lines) {
    std::set<std::string> names;
    for (const std::string& line : lines) {
        const size_t end = line.find('(');
        if (end != std::string::npos) {
            names.insert(line.substr(0, end));
        }
    }
    return names;
}

/// Files that are opened by a whole path, not by a name in an open directory.
Lines OpenedPaths(const Lines& lines) {
    return Matching(lines, "openat(AT_FDCWD");
}

/// The name behind the last slash of an opened path.
std::string OpenedName(const std::string& line) {
    const size_t end = line.find("\", ");
    const size_t start = line.rfind('/', end) + 1;
    return line.substr(start, end - start);
}

/// The program as it is packaged for rescue images, and as it is installed.
class SystemCalls : public testing::TestWithParam<const char*> {
  protected:
    static bool IsStatic() { return std::string(GetParam()) == "Static"; }

    static Trace TraceOf(const support::Arguments& arguments) {
        const support::TemporaryFolder folder;
        const std::string trace = folder.path() / "trace";
        support::Arguments command = {
            "strace", "--follow-forks", "--output=" + trace,
            IsStatic() ? SYSTALLY_STATIC : support::ProgramPath("systally")};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const support::Result result = support::RunOnMachine(support::Arlo2Folder(), command);
        EXPECT_EQ(result.errors, "");
        const Lines lines = LinesOf(trace);
        EXPECT_FALSE(lines.empty());
        if (IsStatic()) {
            return {{}, lines};
        }
        const auto isEnd = [](const std::string& line) { return line.starts_with(kEndOfLoading); };
        const auto end = std::find_if(lines.begin(), lines.end(), isEnd);
        EXPECT_NE(end, lines.end()) << "the end of loading";
        return {{lines.begin(), end}, {end, lines.end()}};
    }

    static Lines CallsOf(const std::string& argument) { return TraceOf({argument}).own; }
};

INSTANTIATE_TEST_SUITE_P(Builds, SystemCalls, testing::ValuesIn(kBuilds),
                         [](const auto& build) { return build.param; });

TEST_P(SystemCalls, OpenMemoryAndThePciTreeAlone) {
    for (const support::Arguments& arguments : kCommandLines) {
        for (const std::string& line : OpenedPaths(TraceOf(arguments).own)) {
            EXPECT_TRUE(line.starts_with("openat(AT_FDCWD, \"/dev/mem\", ") ||
                        line.starts_with("openat(AT_FDCWD, \"/proc/bus/pci\", "))
                << Joined(arguments) << ": " << line;
        }
    }
}

TEST_P(SystemCalls, OpenNothingForWriting) {
    for (const support::Arguments& arguments : kCommandLines) {
        const Trace trace = TraceOf(arguments);
        for (const Lines& lines : {trace.loader, trace.own}) {
            for (const std::string& line : Matching(lines, "openat(")) {
                EXPECT_NE(line.find("O_RDONLY"), std::string::npos)
                    << Joined(arguments) << ": " << line;
                EXPECT_EQ(line.find("O_CREAT"), std::string::npos)
                    << Joined(arguments) << ": " << line;
            }
        }
    }
}

TEST_P(SystemCalls, AreAFewThatOnlyRead) {
    // Start-up and end; the report's own; nothing that makes, changes, sends or starts anything.
    const std::set<std::string> expected = {
        "execve",     "brk",      "arch_prctl", "set_tid_address", "set_robust_list", "rseq",
        "prlimit64",  "mprotect", "readlink",   "readlinkat",      "getrandom",       "openat",
        "newfstatat", "fstat",    "getdents64", "lseek",           "pread64",         "mmap",
        "munmap",     "close",    "write",      "exit_group"};
    for (const support::Arguments& arguments : kCommandLines) {
        for (const std::string& name : NamesOf(TraceOf(arguments).own)) {
            EXPECT_TRUE(name == "+++ exited with" || expected.count(name) == 1)
                << Joined(arguments) << ": " << name;
        }
    }
}

TEST_P(SystemCalls, StartNoProgram) {
    for (const support::Arguments& arguments : kCommandLines) {
        const Trace trace = TraceOf(arguments);
        EXPECT_EQ(Matching(trace.loader, "execve").size() + Matching(trace.own, "execve").size(),
                  1U)
            << Joined(arguments);
    }
}

TEST_P(SystemCalls, WriteToTheStreamsAlone) {
    for (const support::Arguments& arguments : kCommandLines) {
        for (const std::string& line : Matching(TraceOf(arguments).own, "write(")) {
            EXPECT_TRUE(line.starts_with("write(1, ")) << Joined(arguments) << ": " << line;
        }
    }
}

TEST_P(SystemCalls, UsageAndProcessorQueryOpenNothing) {
    EXPECT_EQ(Matching(TraceOf({}).own, "openat("), Lines());
    EXPECT_EQ(Matching(CallsOf("/x64"), "openat("), Lines());
}

TEST_P(SystemCalls, IdentityQueriesReadNoPciList) {
    EXPECT_EQ(Matching(CallsOf("/m:7712"), "/proc/bus/pci"), Lines());
    EXPECT_EQ(Matching(CallsOf("/s"), "/proc/bus/pci"), Lines());
    EXPECT_EQ(Matching(CallsOf("/dump"), "/proc/bus/pci"), Lines());
}

TEST_P(SystemCalls, PciCountReadsNoMemory) {
    EXPECT_EQ(Matching(CallsOf("/vid:8086"), "/dev/mem"), Lines());
}

TEST_P(SystemCalls, EachConfigurationFileIsReadOnce) {
    const Lines calls = CallsOf("/vid:8086");
    EXPECT_EQ(Matching(calls, "pread64(").size(), 20U);
}

TEST_P(SystemCalls, FirmwareIsReadOnceAndMappedOnce) {
    const Lines calls = CallsOf("/s");
    EXPECT_EQ(Matching(calls, "pread64(").size(), 1U);
    EXPECT_EQ(Matching(calls, "MAP_SHARED").size(), 1U);
}

// --- The loader of the dynamic program ----------------------------------------------------------

/// What starts every dynamic program; its opens are its own, not the program's.
class Loader : public SystemCalls {};

INSTANTIATE_TEST_SUITE_P(Builds, Loader, testing::Values("Dynamic"),
                         [](const auto& build) { return build.param; });

TEST_P(Loader, OpensTheLibrariesOfTheLanguageAlone) {
    const std::set<std::string> expected = {"ld.so.cache", "libstdc++.so.6", "libgcc_s.so.1",
                                            "libm.so.6", "libc.so.6"};
    for (const support::Arguments& arguments : kCommandLines) {
        const Lines opened = Matching(TraceOf(arguments).loader, "openat(");
        EXPECT_GE(opened.size(), 2U);
        for (const std::string& line : opened) {
            EXPECT_EQ(expected.count(OpenedName(line)), 1U) << Joined(arguments) << ": " << line;
        }
    }
}

TEST_P(Loader, OnlyReadsAndMaps) {
    const std::set<std::string> expected = {
        "execve", "brk",   "mmap",       "munmap",          "mprotect",       "access",
        "openat", "read",  "pread64",    "newfstatat",      "fstat",          "close",
        "rseq",   "lseek", "arch_prctl", "set_tid_address", "set_robust_list"};
    for (const support::Arguments& arguments : kCommandLines) {
        for (const std::string& name : NamesOf(TraceOf(arguments).loader)) {
            EXPECT_EQ(expected.count(name), 1U) << Joined(arguments) << ": " << name;
        }
    }
}

}  // namespace
