// The file of -o: it appears whole or not at all, and nothing else stays behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "export/Exporter.h"

namespace {

namespace fs = std::filesystem;

using exporter::ExpectComplaint;
using exporter::Export;
using exporter::kProgram;
using reports::Arlo2;
using reports::Contents;
using reports::File;
using reports::kBare;
using reports::Replaced;
using support::Arguments;
using support::Result;
using support::TemporaryFolder;

Arguments NamesIn(const fs::path& folder) {
    Arguments names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

TEST(OutputFile, HoldsWhatStandardOutputWould) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    const File file(Arlo2());
    const Result result = Export({"--json", file.path(), "-o", target});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(Contents(target), Export({"--json", file.path()}).output);
    EXPECT_EQ(NamesIn(folder.path()), Arguments{"machine.json"});
}

TEST(OutputFile, StaysAsItWasWhenAnInputIsDamaged) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    std::ofstream(target) << "before\n";
    const File file(std::string(kBare) + "hello\n");
    EXPECT_EQ(Export({"--json", file.path(), "--output", target}).status, 1);
    EXPECT_EQ(Contents(target), "before\n");
    EXPECT_EQ(NamesIn(folder.path()), Arguments{"machine.json"});
}

TEST(OutputFile, MayBeOneOfTheInputs) {
    const File file(kBare);
    const Result expected = Export({"--json", file.path()});
    EXPECT_EQ(Export({"--json", file.path(), "-o", file.path()}).status, 0);
    EXPECT_EQ(Contents(file.path()), expected.output);
}

TEST(OutputFile, IsReadableAsTheUsersMaskSays) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    const File file(kBare);
    const std::string command =
        "umask 027; " + kProgram + " --json -o " + target.string() + " " + file.path();
    EXPECT_EQ(support::Run({"sh", "-c", command}).status, 0);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
}

TEST(OutputFile, KeepsThePermissionsOfTheFileItReplaces) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    std::ofstream(target) << "before\n";
    fs::permissions(target, fs::perms(0604));
    const File file(kBare);
    EXPECT_EQ(Export({"--json", "-o", target, file.path()}).status, 0);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0604));
}

TEST(OutputFile, KeepsTheOwnerOfTheFileItReplaces) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    std::ofstream(target) << "before\n";
    const File file(kBare);
    // An ordinary user has no other to give it to.
    const uid_t other = 65534;
    if (geteuid() == 0) {
        ASSERT_EQ(chown(target.c_str(), other, other), 0);
    }
    struct stat before = {};
    ASSERT_EQ(stat(target.c_str(), &before), 0);
    EXPECT_EQ(Export({"--json", "-o", target, file.path()}).status, 0);
    struct stat after = {};
    ASSERT_EQ(stat(target.c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_NE(after.st_ino, before.st_ino);
}

TEST(OutputFile, LinkStaysALink) {
    const TemporaryFolder folder;
    const fs::path link = folder.path() / "link.json";
    std::ofstream(folder.path() / "machine.json") << "before\n";
    fs::create_symlink("machine.json", link);
    const File file(kBare);
    EXPECT_EQ(Export({"--json", "-o", link, file.path()}).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Contents(folder.path() / "machine.json"), Export({"--json", file.path()}).output);
}

TEST(OutputFile, LinkToNowhereGetsItsFile) {
    const TemporaryFolder folder;
    const fs::path link = folder.path() / "link.json";
    fs::create_directory(folder.path() / "later");
    fs::create_symlink("later/machine.json", link);
    const File file(kBare);
    EXPECT_EQ(Export({"--json", "-o", link, file.path()}).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Contents(folder.path() / "later/machine.json"),
              Export({"--json", file.path()}).output);
    EXPECT_EQ(NamesIn(folder.path() / "later"), Arguments{"machine.json"});
}

TEST(OutputFile, LinksThatLeadToEachOtherAreReported) {
    const TemporaryFolder folder;
    const fs::path link = folder.path() / "one";
    fs::create_symlink("two", link);
    fs::create_symlink("one", folder.path() / "two");
    const File file(kBare);
    ExpectComplaint(Export({"--json", "-o", link, file.path()}), 1,
                    "cannot open " + link.string() + ": Too many levels of symbolic links");
    EXPECT_TRUE(fs::is_symlink(link));
}

TEST(OutputFile, OpenFileIsWrittenWhereItStands) {
    const TemporaryFolder folder;
    const std::string log = folder.path() / "log";
    const File file(kBare);
    const std::string json = Export({"--json", file.path()}).output;
    for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        const std::string command = "(echo start; " + kProgram + " --json -o " + name + " " +
                                    file.path() + "; echo end) >" + log;
        EXPECT_EQ(support::Run({"sh", "-c", command}).errors, "") << name;
        EXPECT_EQ(Contents(log), "start\n" + json + "end\n") << name;
    }
    EXPECT_EQ(NamesIn(folder.path()), Arguments{"log"});
}

TEST(OutputFile, DescriptorThatIsNotOpenIsReported) {
    const File file(kBare);
    ExpectComplaint(Export({"--json", "-o", "/dev/fd/9", file.path()}), 1,
                    "cannot open /dev/fd/9: Bad file descriptor");
}

TEST(OutputFile, PipeIsWrittenAsItStands) {
    const TemporaryFolder folder;
    const fs::path pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const File file(kBare);
    const std::string command = "cat " + pipe.string() + " & " + kProgram + " --json -o " +
                                pipe.string() + " " + file.path() + "; wait";
    EXPECT_EQ(support::Run({"sh", "-c", command}).output, Export({"--json", file.path()}).output);
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(OutputFile, GetsNoMessageWhereStandardErrorIsClosed) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    const File file(Replaced(Arlo2(), "Of_Devices = 20", "Of_Devices = 24"));
    const std::string command =
        kProgram + " --json -o " + target.string() + " " + file.path() + " 2>&-";
    EXPECT_EQ(support::Run({"sh", "-c", command}).status, 0);
    EXPECT_EQ(Contents(target), Export({"--json", file.path()}).output);
}

TEST(OutputFile, ClosedStandardStreamsAreReported) {
    const File file(kBare);
    ExpectComplaint(support::Run({"sh", "-c", kProgram + " --json " + file.path() + " >&-"}), 1,
                    "cannot write standard output: Bad file descriptor");
    ExpectComplaint(support::Run({"sh", "-c", kProgram + " --json <&-"}), 1,
                    "standard input: cannot read: Bad file descriptor");
}

TEST(OutputFile, FolderThatIsMissingIsReported) {
    const File file(kBare);
    ExpectComplaint(Export({"--json", "-o", "/nowhere/machine.json", file.path()}), 1,
                    "cannot create a file beside /nowhere/machine.json: No such file or directory");
}

TEST(OutputFile, FolderIsNoFile) {
    const TemporaryFolder folder;
    const File file(kBare);
    ExpectComplaint(Export({"--json", "-o", folder.path(), file.path()}), 1,
                    "cannot open " + folder.path().string() + ": Is a directory");
}

/// How the program ends that reads a pipe nobody writes to, once `signal` comes; its folder is
/// empty then.
void ExpectNothingLeftBehind(int signal) {
    const TemporaryFolder folder;
    const fs::path target = folder.path() / "machine.json";
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore = {};
        setrlimit(RLIMIT_CORE, &noCore);
        dup2(ends[0], STDIN_FILENO);
        execl(kProgram.c_str(), kProgram.c_str(), "--json", "-o", target.c_str(), nullptr);
        _exit(126);
    }
    for (int i = 0; i < 1000 && fs::is_empty(folder.path()); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_FALSE(fs::is_empty(folder.path()));
    kill(child, signal);
    int status = 0;
    waitpid(child, &status, 0);
    close(ends[0]);
    close(ends[1]);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << signal;
    EXPECT_TRUE(fs::is_empty(folder.path())) << signal;
}

TEST(OutputFile, SignalLeavesNothingBehind) {
    for (const int signal :
         {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGXCPU, SIGRTMIN, SIGRTMAX}) {
        ExpectNothingLeftBehind(signal);
    }
}

TEST(OutputFile, FileThatGrowsBeyondTheLimitLeavesNothingBehind) {
    const TemporaryFolder folder;
    const File file(Arlo2());
    const std::string command = "ulimit -c 0; ulimit -f 1; exec " + kProgram + " --html -o " +
                                (folder.path() / "machine.html").string() + " " + file.path();
    EXPECT_NE(support::Run({"sh", "-c", command}).status, 0);
    EXPECT_EQ(NamesIn(folder.path()), Arguments{});
}

TEST(OutputFile, MessageThatNobodyReadsLeavesNothingBehind) {
    const TemporaryFolder folder;
    const File file(Replaced(Arlo2(), "Of_Devices = 20", "Of_Devices = 24"));
    const std::string command = "trap - PIPE; { sleep 0.3; exec " + kProgram + " --json -o " +
                                (folder.path() / "machine.json").string() + " " + file.path() +
                                "; } 2>&1 >/dev/null | true";
    EXPECT_EQ(support::Run({"sh", "-c", command}).status, 0);
    EXPECT_EQ(NamesIn(folder.path()), Arguments{});
}

}  // namespace
