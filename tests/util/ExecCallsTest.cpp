// The calls by which the process launcher replaces this process, recorded instead of made.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>
#include <vector>

#include "support/Allocation.h"
#include "support/ExecRecorder.h"
#include "util/Exec.h"

namespace {

using support::ExecCall;

/// The one call that an Execute makes.
ExecCall CallOf(const char* command) {
    support::ExecRecorder recorder;
    CExec(command).Execute();
    EXPECT_EQ(recorder.calls.size(), 1U);
    if (!recorder.lastVector.entries.empty()) {
        delete[] recorder.lastVector.entries.back();  // the launcher never frees it
    }
    return recorder.calls.back();
}

// --- In place of this process, a name alone ----------------------------------------------------

TEST(ExecCalls, NameAloneIsTheProgramAndItsOnlyArgument) {
    EXPECT_EQ(CallOf("true"), (ExecCall{"execlp", "true", {"true"}}));
}

TEST(ExecCalls, NameAloneKeepsItsBlanks) {
    EXPECT_EQ(CallOf(" true \n"), (ExecCall{"execlp", " true \n", {" true \n"}}));
    EXPECT_EQ(CallOf("true and more"), (ExecCall{"execlp", "true and more", {"true and more"}}));
}

// --- In place of this process, with a directory or a drive --------------------------------------

TEST(ExecCalls, NameBehindTheLastSlashIsTheProgramAndTheRestItsArgument) {
    EXPECT_EQ(CallOf("/usr/bin/say"), (ExecCall{"execvp", "say", {"say", "/usr/bin/"}}));
}

TEST(ExecCalls, RestIsSplitAtBlanksAndEachArgumentTrimmed) {
    EXPECT_EQ(CallOf(" a\t b  c/say "), (ExecCall{"execvp", "say", {"say", "a", "b", "", "c/"}}));
}

TEST(ExecCalls, FirstOccurrenceOfTheNameIsTakenOut) {
    EXPECT_EQ(CallOf("a ls b/ls"), (ExecCall{"execvp", "ls", {"ls", "a", "", "b/ls"}}));
}

TEST(ExecCalls, RestIsTrimmedBeforeItIsSplit) {
    EXPECT_EQ(CallOf("ls a/ls"), (ExecCall{"execvp", "ls", {"ls", "a/ls"}}));
}

TEST(ExecCalls, SlashAtTheEndLeavesAnEmptyName) {
    EXPECT_EQ(CallOf("a b/"), (ExecCall{"execvp", "", {"", "a", "b/"}}));
}

TEST(ExecCalls, WithoutASlashTheNameIsWhatFollowsTheFirstColon) {
    EXPECT_EQ(CallOf("C:x"), (ExecCall{"execvp", "x", {"x", "C:"}}));
    EXPECT_EQ(CallOf("echo a:b"), (ExecCall{"execvp", "b", {"b", "echo", "a:"}}));
}

TEST(ExecCalls, SlashWinsOverTheColon) {
    EXPECT_EQ(CallOf("dir/a:b"), (ExecCall{"execvp", "a:b", {"a:b", "dir/"}}));
}

// --- What remains of the vector ---------------------------------------------------------------

support::ExecRecorder* g_recorder;
std::array<int, 4> g_entryFreed;  // how often each entry was freed
int g_vectorFreed;

void NoteFreed(const void* memory) {
    const support::ExecVector& seen = g_recorder->lastVector;
    for (size_t i = 0; i < seen.entries.size(); ++i) {
        g_entryFreed.at(i) += memory == seen.entries[i] ? 1 : 0;
    }
    g_vectorFreed += memory == seen.vector ? 1 : 0;
}

TEST(ExecCalls, FailureFreesTheVectorAndAllItsEntriesButTheLast) {
    support::ExecRecorder recorder;
    recorder.error = ENOENT;
    g_recorder = &recorder;
    g_entryFreed = {};
    g_vectorFreed = 0;
    CExec exec("a b c/say");
    support::ObserveArrayDeletes(NoteFreed);
    const bool executed = exec.Execute();
    support::ObserveArrayDeletes(nullptr);
    EXPECT_FALSE(executed);
    EXPECT_EQ(g_entryFreed, (std::array{1, 1, 1, 0}));
    EXPECT_EQ(g_vectorFreed, 1);
    EXPECT_STREQ(recorder.lastVector.entries.back(), "c/");
    delete[] recorder.lastVector.entries.back();
}

TEST(ExecCalls, WithoutMemoryForTheVectorNothingIsCalled) {
    const support::ExecRecorder recorder;
    std::string command;
    for (int i = 0; i < 1000; ++i) {
        command += "a ";
    }
    CExec exec((command + "/say").c_str());
    support::FailAllocationsAbove(3000);  // the text takes less, the vector more
    const bool executed = exec.Execute();
    support::AllowAllocations();
    EXPECT_FALSE(executed);
    EXPECT_EQ(recorder.calls, std::vector<ExecCall>{});
}

}  // namespace
