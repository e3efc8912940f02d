// How the process launcher keeps and words its failures, with calls that fail as the test says.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "support/ExecRecorder.h"
#include "util/Exec.h"

namespace {

using support::ExecCall;
using support::ExecRecorder;

/// Names alone are executed here: what fails leaves no memory behind.
constexpr char kProgram[] = "program";

std::string LastErrorOf(const CExec& exec) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(exec.DisplayLastError(), exec.GetLastError());
    return testing::internal::GetCapturedStderr();
}

void FailToExecute(CExec& exec, int error) {
    ExecRecorder recorder;
    recorder.error = error;
    EXPECT_FALSE(exec.Execute(kProgram));
    EXPECT_EQ(exec.GetLastError(), error);
}

// --- The calls of Run -----------------------------------------------------------------------

TEST(ExecRunCalls, InterpreterIsAskedForAndThenGivenTheCommand) {
    const ExecRecorder recorder;
    EXPECT_TRUE(CExec(" echo a ").Run());
    EXPECT_EQ(recorder.calls, (std::vector<ExecCall>{{"system", "(is there an interpreter?)", {}},
                                                     {"system", " echo a ", {}}}));
}

TEST(ExecRunCalls, WithoutAnInterpreterTheCommandIsNotRun) {
    ExecRecorder recorder;
    recorder.hasInterpreter = false;
    CExec exec("command");
    EXPECT_FALSE(exec.Run());
    EXPECT_EQ(recorder.calls.size(), 1U);
    EXPECT_EQ(exec.GetLastError(), 999);
}

TEST(ExecRunCalls, EmptyCommandAsksForNothing) {
    const ExecRecorder recorder;
    EXPECT_FALSE(CExec().Run());
    EXPECT_EQ(recorder.calls, std::vector<ExecCall>{});
}

// --- The error number -----------------------------------------------------------------------

TEST(ExecError, OfAFailingRunIsTheNumberOfTheSystem) {
    ExecRecorder recorder;
    recorder.error = ENOMEM;
    CExec exec("command");
    EXPECT_FALSE(exec.Run());
    EXPECT_EQ(exec.GetLastError(), 12);
}

TEST(ExecError, OfAFailingExecuteIsTheNumberOfTheSystem) {
    ExecRecorder recorder;
    recorder.error = EACCES;
    CExec exec(kProgram);
    EXPECT_FALSE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), 13);
}

TEST(ExecError, OfAFailingExecuteWithADirectoryIsTheNumberOfTheSystem) {
    ExecRecorder recorder;
    recorder.error = EACCES;
    CExec exec("/bin/program");
    EXPECT_FALSE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), 13);
    delete[] recorder.lastVector.entries.back();  // the launcher never frees it
}

TEST(ExecError, ExecuteThatReturnsWithoutFailingIsTrueAndLeavesNone) {
    const ExecRecorder recorder;
    CExec exec(kProgram);
    EXPECT_TRUE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), 0);
}

TEST(ExecError, ExecuteWithADirectoryThatReturnsWithoutFailingIsTrueAndLeavesNone) {
    const ExecRecorder recorder;
    CExec exec("/bin/program");
    EXPECT_TRUE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), 0);
    delete[] recorder.lastVector.entries.back();  // the launcher never frees it
}

TEST(ExecError, IsKeptByARunOfAnEmptyCommand) {
    CExec exec;
    FailToExecute(exec, E2BIG);
    EXPECT_FALSE(exec.Run(""));
    EXPECT_EQ(exec.GetLastError(), 7);
}

TEST(ExecError, IsKeptByAnExecuteOfAnEmptyCommand) {
    CExec exec;
    FailToExecute(exec, E2BIG);
    EXPECT_FALSE(exec.Execute(""));
    EXPECT_EQ(exec.GetLastError(), 7);
}

TEST(ExecError, IsKeptByARunThatSucceeds) {
    CExec exec;
    FailToExecute(exec, ENOENT);
    const ExecRecorder recorder;
    EXPECT_TRUE(exec.Run("command"));
    EXPECT_EQ(exec.GetLastError(), 2);
}

TEST(ExecError, IsReplacedByTheNextFailure) {
    CExec exec;
    FailToExecute(exec, ENOENT);
    FailToExecute(exec, EINVAL);
}

// --- After Initialize -----------------------------------------------------------------------

TEST(ExecInitialize, ForgetsTheError) {
    CExec exec;
    FailToExecute(exec, ENOENT);
    exec.Initialize();
    EXPECT_EQ(exec.GetLastError(), 0);
}

TEST(ExecInitialize, EmptiesTheCommand) {
    CExec exec(kProgram);
    exec.Initialize();
    const ExecRecorder recorder;
    EXPECT_FALSE(exec.Run());
    EXPECT_EQ(recorder.calls, std::vector<ExecCall>{});
}

TEST(ExecInitialize, LeavesAMessageWithoutStartCommandAndText) {
    CExec exec;
    FailToExecute(exec, ENOENT);
    exec.Initialize();
    EXPECT_EQ(LastErrorOf(exec), "\n\nGeneral System Error\n\n\n\n\n\n");
}

// --- The texts ------------------------------------------------------------------------------

std::string TextOf(int error) {
    CExec exec;
    FailToExecute(exec, error);
    return LastErrorOf(exec);
}

TEST(ExecText, OfAMissingFile) {
    EXPECT_EQ(TextOf(2),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n"
              "Path or file name not found.\n\n");
}

TEST(ExecText, OfTooManyArguments) {
    EXPECT_EQ(TextOf(7),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n"
              "Arg list too long.\n\n");
}

TEST(ExecText, OfAFileThatIsNoProgram) {
    EXPECT_EQ(TextOf(8),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n"
              "Exec format error.\n\n");
}

TEST(ExecText, OfMissingMemory) {
    EXPECT_EQ(TextOf(12),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n"
              "Not enough memory.\n\n");
}

TEST(ExecText, OfAnInvalidArgument) {
    EXPECT_EQ(TextOf(22),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n"
              "Invalid argument.\n\n");
}

TEST(ExecText, OfAnyOtherErrorIsNone) {
    EXPECT_EQ(TextOf(13),
              "\n\nGeneral System Error\n\nExec call failed.  Unable to run program\n\n\n\n");
}

TEST(ExecText, NamesTheSystemCallAfterARun) {
    ExecRecorder recorder;
    recorder.error = ENOMEM;
    CExec exec("command");
    EXPECT_FALSE(exec.Run());
    EXPECT_EQ(LastErrorOf(exec),
              "\n\nGeneral System Error\n\nSystem call failed.  Unable to run command\n\n"
              "Not enough memory.\n\n");
}

}  // namespace
