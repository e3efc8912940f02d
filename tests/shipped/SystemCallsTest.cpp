// What the shipped program asks of the kernel, watched by strace: it reads two places, read-only,
// and starts and leaves nothing.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using Lines = std::vector<std::string>;

/// The calls of one run, a line each, from the program's own start on.
Lines CallsOf(const std::string& argument) {
    const support::TemporaryFolder folder;
    const std::string trace = folder.path() / "trace";
    support::Arguments command = {"strace", "--follow-forks", "--output=" + trace, SYSTALLY_STATIC};
    if (!argument.empty()) {
        command.push_back(argument);
    }
    const support::Result result = support::RunOnMachine(support::Arlo2Folder(), command);
    EXPECT_EQ(result.errors, "");
    std::ifstream file(trace);
    Lines lines;
    for (std::string line; std::getline(file, line);) {
        // With one process alone there is no process number in front.
        const size_t number = line.find_first_not_of("0123456789 ");
        lines.push_back(line.substr(number == std::string::npos ? 0 : number));
    }
    EXPECT_FALSE(lines.empty());
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

const char* const kEverySwitch[] = {"", "/x64", "/m:7712", "/s", "/vid:8086", "/i", "/p", "/dump"};

TEST(SystemCalls, OpenMemoryAndThePciTreeAlone) {
    for (const char* argument : kEverySwitch) {
        for (const std::string& line : OpenedPaths(CallsOf(argument))) {
            EXPECT_TRUE(line.starts_with("openat(AT_FDCWD, \"/dev/mem\", ") ||
                        line.starts_with("openat(AT_FDCWD, \"/proc/bus/pci\", "))
                << argument << ": " << line;
        }
    }
}

TEST(SystemCalls, OpenNothingForWriting) {
    for (const char* argument : kEverySwitch) {
        for (const std::string& line : Matching(CallsOf(argument), "openat(")) {
            EXPECT_NE(line.find("O_RDONLY"), std::string::npos) << argument << ": " << line;
            EXPECT_EQ(line.find("O_CREAT"), std::string::npos) << argument << ": " << line;
        }
    }
}

TEST(SystemCalls, AreAFewThatOnlyRead) {
    // Start-up and end; the report's own; nothing that makes, changes, sends or starts anything.
    const std::set<std::string> expected = {
        "execve",     "brk",      "arch_prctl", "set_tid_address", "set_robust_list", "rseq",
        "prlimit64",  "mprotect", "readlink",   "readlinkat",      "getrandom",       "openat",
        "newfstatat", "fstat",    "fcntl",      "getdents64",      "lseek",           "pread64",
        "mmap",       "munmap",   "close",      "write",           "exit_group"};
    for (const char* argument : kEverySwitch) {
        for (const std::string& name : NamesOf(CallsOf(argument))) {
            EXPECT_TRUE(name == "+++ exited with" || expected.count(name) == 1)
                << argument << ": " << name;
        }
    }
}

TEST(SystemCalls, StartNoProgram) {
    for (const char* argument : kEverySwitch) {
        EXPECT_EQ(Matching(CallsOf(argument), "execve(").size(), 1U) << argument;
    }
}

TEST(SystemCalls, WriteToTheStreamsAlone) {
    for (const char* argument : kEverySwitch) {
        for (const std::string& line : Matching(CallsOf(argument), "write(")) {
            EXPECT_TRUE(line.starts_with("write(1, ")) << argument << ": " << line;
        }
    }
}

TEST(SystemCalls, UsageAndProcessorQueryOpenNothing) {
    EXPECT_EQ(Matching(CallsOf(""), "openat("), Lines());
    EXPECT_EQ(Matching(CallsOf("/x64"), "openat("), Lines());
}

TEST(SystemCalls, IdentityQueriesReadNoPciList) {
    EXPECT_EQ(Matching(CallsOf("/m:7712"), "/proc/bus/pci"), Lines());
    EXPECT_EQ(Matching(CallsOf("/s"), "/proc/bus/pci"), Lines());
    EXPECT_EQ(Matching(CallsOf("/dump"), "/proc/bus/pci"), Lines());
}

TEST(SystemCalls, PciCountReadsNoMemory) {
    EXPECT_EQ(Matching(CallsOf("/vid:8086"), "/dev/mem"), Lines());
}

TEST(SystemCalls, EachConfigurationFileIsReadOnce) {
    const Lines calls = CallsOf("/vid:8086");
    EXPECT_EQ(Matching(calls, "pread64(").size(), 20U);
}

TEST(SystemCalls, FirmwareIsReadOnceAndMappedOnce) {
    const Lines calls = CallsOf("/s");
    EXPECT_EQ(Matching(calls, "pread64(").size(), 1U);
    EXPECT_EQ(Matching(calls, "MAP_SHARED").size(), 1U);
}

}  // namespace
