// The process launcher: through the interpreter, in place of this process, and its messages.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/TemporaryFolder.h"
#include "util/Exec.h"

namespace {

namespace fs = std::filesystem;

std::string LastErrorOf(const CExec& exec, int number) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(exec.DisplayLastError(), number);
    return testing::internal::GetCapturedStderr();
}

std::string Message(const std::string& text) {
    return "\n\nGeneral System Error\n\n" + text + "\n\n";
}

TEST(ExecRun, RunsACommandWhateverItsStatus) {
    const support::TemporaryFolder folder;
    const std::string file = folder.path() / "ran";
    CExec exec;
    EXPECT_TRUE(exec.Run(CString(("touch " + file).c_str())));
    EXPECT_TRUE(fs::exists(file));
    EXPECT_TRUE(exec.Run("exit 3"));
    EXPECT_TRUE(CExec("true").Run());
    EXPECT_EQ(exec.GetLastError(), 0);
}

TEST(ExecRun, EmptyCommandIsRefusedAndKeepsTheError) {
    CExec exec;
    EXPECT_FALSE(exec.Run());
    EXPECT_EQ(exec.GetLastError(), 0);
    EXPECT_EQ(LastErrorOf(exec, 0), Message("System call failed.  Unable to run \n\n"));
}

/// What Run says where no interpreter can be started: there is no address space for one.
bool RunWithoutInterpreter(CExec& exec) {
    rlimit limit = {};
    getrlimit(RLIMIT_AS, &limit);
    const rlimit none = {0, limit.rlim_max};
    setrlimit(RLIMIT_AS, &none);
    const bool ran = exec.Run();
    setrlimit(RLIMIT_AS, &limit);
    return ran;
}

TEST(ExecRun, WithoutAnInterpreterErrorIs999) {
    setenv("COMSPEC", "C:\\shell", 1);
    CExec exec("command");
    EXPECT_FALSE(RunWithoutInterpreter(exec));
    EXPECT_EQ(exec.GetLastError(), 999);
    EXPECT_EQ(LastErrorOf(exec, 999),
              Message("System call failed.  Unable to run command\n\n"
                      "Command interpreter not found.\n\nCOMSPEC = C:\\shell"));
}

TEST(ExecRun, UnsetInterpreterVariableAddsNothing) {
    unsetenv("COMSPEC");
    CExec exec("command");
    EXPECT_FALSE(RunWithoutInterpreter(exec));
    EXPECT_EQ(LastErrorOf(exec, 999), Message("System call failed.  Unable to run command\n\n"
                                              "Command interpreter not found.\n\nCOMSPEC = "));
}

TEST(ExecExecute, ReplacesTheProcessByAProgramOfTheSearchPath) {
    EXPECT_EXIT(
        {
            CExec exec;
            exec.Execute("false");
            std::exit(42);
        },
        testing::ExitedWithCode(1), "");
    EXPECT_EXIT(
        {
            CExec("true").Execute();
            std::exit(42);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ExecExecute, CommandWithoutASlashIsOneProgramName) {
    CExec exec("true and more");
    EXPECT_FALSE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), ENOENT);
    EXPECT_EQ(LastErrorOf(exec, 2), Message("Exec call failed.  Unable to run true and more\n\n"
                                            "Path or file name not found."));
}

TEST(ExecExecute, RestBeforeTheNameGivesTheArguments) {
    // The name is what follows the last "/", here a script of the search path that is told "a/"
    // and "b/" by the rest.
    const support::TemporaryFolder folder;
    const fs::path script = folder.path() / "say";
    std::ofstream(script) << "#!/bin/sh\nprintf '[%s]' \"$@\" >&2\nexit 7\n";
    fs::permissions(script, fs::perms::owner_all);
    EXPECT_EXIT(
        {
            setenv("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str(), 1);
            CExec(" a b/say ").Execute();
            std::exit(42);
        },
        testing::ExitedWithCode(7), "\\[a\\]\\[b/\\]");
}

TEST(ExecExecute, UnknownNameWithADirectoryFails) {
    CExec exec("/no/such/program-of-ours");
    EXPECT_EXIT(
        {
            const bool failed = !exec.Execute() && exec.GetLastError() == ENOENT;
            _exit(failed ? 42 : 1);  // one argument's copy is not freed
        },
        testing::ExitedWithCode(42), "");
}

TEST(ExecExecute, EmptyCommandIsRefused) {
    CExec exec;
    EXPECT_FALSE(exec.Execute());
    EXPECT_EQ(exec.GetLastError(), 0);
    EXPECT_EQ(LastErrorOf(exec, 0), Message("Exec call failed.  Unable to run \n\n"));
}

TEST(ExecMessage, AfterInitializeIsAlmostEmpty) {
    CExec exec("command");
    exec.Run("");
    exec.Initialize();
    EXPECT_EQ(LastErrorOf(exec, 0), Message("\n\n"));
}

/// The message for an error number that a failing Execute left behind.
std::string TextFor(const char* command, int number) {
    CExec exec(command);
    EXPECT_FALSE(exec.Execute());
    return LastErrorOf(exec, number);
}

TEST(ExecMessage, TooManyArguments) {
    EXPECT_EXIT(
        {
            std::string command;
            for (int i = 0; i < 200; ++i) {
                command += std::string(100'000, 'x') + " ";
            }
            CExec exec(CString((command + "/true").c_str()));
            const bool failed = !exec.Execute() && exec.GetLastError() == E2BIG;
            _exit(failed ? 42 : 1);  // one argument's copy is not freed
        },
        testing::ExitedWithCode(42), "");
}

TEST(ExecMessage, UnlistedErrorHasNoText) {
    const std::string name(300, 'x');  // longer than any file name: ENAMETOOLONG
    EXPECT_EQ(TextFor(name.c_str(), ENAMETOOLONG),
              Message("Exec call failed.  Unable to run " + name + "\n\n"));
}

}  // namespace
