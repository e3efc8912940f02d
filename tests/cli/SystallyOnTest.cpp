// systally-on: the unmodified program on a machine folder, and nothing left behind.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "support/Traced.h"

namespace {

namespace fs = std::filesystem;

using support::Arguments;
using support::Arlo2Folder;
using support::ProgramPath;
using support::Result;

using support::SystallyOn;

std::string Contents(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

void ExpectComplaint(const Result& result, const std::string& message) {
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, message);
    EXPECT_EQ(result.status, 255);
}

TEST(SystallyOn, WithoutAFolderSaysHowItIsUsed) {
    ExpectComplaint(support::Run({ProgramPath("systally-on")}),
                    "systally-on: usage: systally-on FOLDER|--this SWITCH...\n");
}

TEST(SystallyOn, WithoutASwitchGivesTheProgramsUsage) {
    const Result result = SystallyOn(Arlo2Folder(), {});
    EXPECT_EQ(result.output.substr(0, 32), "QEV (R) SYSTALLY version 1.3.01\n");
    EXPECT_EQ(result.status, 255);
}

TEST(SystallyOn, RefusesAFolderThatIsNoMachine) {
    ExpectComplaint(SystallyOn(fs::path("/nowhere"), {"/i"}),
                    "systally-on: /nowhere is no machine: it lacks the file mem or the directory "
                    "pci\n");
    const support::TemporaryFolder folder;
    fs::create_directory(folder.path() / "pci");
    ExpectComplaint(SystallyOn(folder.path(), {"/i"}),
                    "systally-on: " + folder.path().string() +
                        " is no machine: it lacks the file mem or the directory pci\n");
}

TEST(SystallyOn, RefusesAnEmptyFolderName) {
    ExpectComplaint(SystallyOn(fs::path(""), {"/i"}),
                    "systally-on:  is no machine: it lacks the file mem or the directory pci\n");
}

TEST(SystallyOn, RefusesOptionsThatItDoesNotKnow) {
    ExpectComplaint(support::Run({ProgramPath("systally-on"), "--that", "/i"}),
                    "systally-on: unknown option --that; systally-on --help lists them\n");
}

TEST(SystallyOn, TwoHyphensEndTheOptions) {
    const support::TemporaryFolder folder;
    machine::Arlo2().WriteTo(folder.path() / "--this");
    const Result result =
        support::RunIn(folder.path(), {ProgramPath("systally-on"), "--", "--this", "/m:7712"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
    ExpectComplaint(support::Run({ProgramPath("systally-on"), "--"}),
                    "systally-on: usage: systally-on FOLDER|--this SWITCH...\n");
}

TEST(SystallyOn, HelpAndVersionGoToStandardOutput) {
    const Result help = support::Run({ProgramPath("systally-on"), "--help"});
    EXPECT_EQ(help.output.substr(0, 36), "usage: systally-on FOLDER SWITCH...\n");
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(help.status, 0);
    const Result version = support::Run({ProgramPath("systally-on"), "--version"});
    EXPECT_EQ(version.output, "systally-on 1.3.01\n");
    EXPECT_EQ(version.status, 0);
}

TEST(SystallyOn, OptionsBehindTheFolderAreTheProgramsBusiness) {
    const Result result = SystallyOn(Arlo2Folder(), {"--help"});
    EXPECT_EQ(result.output.substr(0, 14), "Syntax Error.\n");
    EXPECT_EQ(result.status, 255);
}

TEST(SystallyOn, SaysWhenTheFolderMayNotBeRead) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    fs::permissions(machine / "mem", fs::perms::none);
    ExpectComplaint(
        support::Run(support::WithoutRights({ProgramPath("systally-on"), machine, "/i"})),
        "systally-on: cannot read " + machine.string() + "/mem: Permission denied\n");
    fs::permissions(machine, fs::perms::none);
    ExpectComplaint(
        support::Run(support::WithoutRights({ProgramPath("systally-on"), machine, "/i"})),
        "systally-on: " + machine.string() + ": Permission denied\n");
    fs::permissions(machine, fs::perms::owner_all);
}

TEST(SystallyOn, SaysWhenTheMemoryWasCopiedHalfWay) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    fs::resize_file(machine / "mem", 0x40000000);
    ExpectComplaint(SystallyOn(machine, {"/i"}),
                    "systally-on: " + machine.string() +
                        "/mem ends before its SMBIOS table does; was it copied whole?\n");
}

TEST(SystallyOn, MemoryThatEndsWithTheTableIsEnough) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    fs::resize_file(machine / "mem", 0xBF7C8A40 + 991);
    EXPECT_EQ(SystallyOn(machine, {"/m:7712"}).status, 1);
}

TEST(SystallyOn, MemoryThatLacksTheTablesLastByteWasCopiedHalfWay) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    fs::resize_file(machine / "mem", 0xBF7C8A40 + 990);
    ExpectComplaint(SystallyOn(machine, {"/i"}),
                    "systally-on: " + machine.string() +
                        "/mem ends before its SMBIOS table does; was it copied whole?\n");
}

TEST(SystallyOn, MemoryThatEndsWithThePageOfTheTablesEndIsNotEnough) {
    // The program copies that byte too, and its mapping would have no file behind it.
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::MachineBuilder description;
    const auto size = static_cast<uint32_t>(description.EncodeTable().size());
    description.TableAt(0x200000 - size).WriteTo(machine);
    fs::resize_file(machine / "mem", 0x200000);
    ExpectComplaint(SystallyOn(machine, {"/i"}),
                    "systally-on: " + machine.string() +
                        "/mem ends before its SMBIOS table does; was it copied whole?\n");
}

TEST(SystallyOn, MemoryThatIsAFifoIsNoMachineAndNobodyWaits) {
    const support::TemporaryFolder folder;
    fs::create_directory(folder.path() / "pci");
    ASSERT_EQ(mkfifo((folder.path() / "mem").c_str(), 0600), 0);
    ExpectComplaint(
        support::Run({"timeout", "20", ProgramPath("systally-on"), folder.path(), "/i"}),
        "systally-on: " + folder.path().string() +
            " is no machine: it lacks the file mem or the directory pci\n");
}

TEST(SystallyOn, RelativeFolderIsFound) {
    const Result result =
        support::RunIn(Arlo2Folder().parent_path(), {ProgramPath("systally-on"), "arlo2", "/s"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(SystallyOn, FolderBelowDevIsFound) {
    const fs::path folder = "/dev/shm/systally-on-test-" + std::to_string(getpid());
    machine::Arlo2().WriteTo(folder);
    const Result result = SystallyOn(folder, {"/m:7712"});
    fs::remove_all(folder);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST(SystallyOn, LeavesNoMountAndNoDeviceBehind) {
    const std::string mounts = Contents("/proc/self/mountinfo");
    const bool hadMemory = fs::exists("/dev/mem");
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/s"}).status, 0);
    EXPECT_EQ(Contents("/proc/self/mountinfo"), mounts);
    EXPECT_EQ(fs::exists("/dev/mem"), hadMemory);
}

TEST(SystallyOn, ChangesNothingInTheFolder) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    const auto written = fs::last_write_time(machine / "mem");
    EXPECT_EQ(SystallyOn(machine, {"/i"}).status, 0);
    EXPECT_EQ(fs::last_write_time(machine / "mem"), written);
    EXPECT_EQ(support::Run({"ls", machine.string()}).output, "mem\npci\n");
}

TEST(SystallyOn, WorksForAnOrdinaryUser) {
    // In a folder that is open to everyone, as the build's may lie in a private one.
    const support::TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms::all);
    for (const char* program : {"systally", "systally-on"}) {
        fs::copy(ProgramPath(program), folder.path() / program);
    }
    machine::Arlo2().WriteTo(folder.path() / "machine");
    // A build with coverage counters would put them beside its private objects.
    const Arguments command = support::AsOrdinaryUser(
        {"env", "GCOV_PREFIX=" + folder.path().string(), folder.path() / "systally-on",
         folder.path() / "machine", "/m:7712"});
    const Result result = support::Run(command);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST(SystallyOn, SaysWhenNamespacesAreForbidden) {
    const std::string script =
        "echo 0 > /proc/sys/user/max_mnt_namespaces && "
        "echo 0 > /proc/sys/user/max_user_namespaces && exec \"$@\"";
    ExpectComplaint(support::Run({"unshare", "-r", "sh", "-c", script, "sh",
                                  ProgramPath("systally-on"), Arlo2Folder(), "/i"}),
                    "systally-on: cannot enter a user namespace: No space left on device; this "
                    "system forbids it to this user\n");
}

TEST(SystallyOn, SaysWhenTheProgramIsMissing) {
    const support::TemporaryFolder folder;
    fs::copy(ProgramPath("systally-on"), folder.path() / "systally-on");
    ExpectComplaint(support::Run({folder.path() / "systally-on", Arlo2Folder(), "/i"}),
                    "systally-on: cannot open " + (folder.path() / "systally").string() +
                        ": No such file or directory\n");
}

TEST(SystallyOn, WithoutProcRunsNoProgramOfTheCurrentDirectory) {
    const support::TemporaryFolder folder;
    std::ofstream(folder.path() / "systally") << "#!/bin/sh\necho planted\n";
    fs::permissions(folder.path() / "systally", fs::perms::owner_all);
    for (const std::string& machine : {std::string("--this"), Arlo2Folder().string()}) {
        const Result result = support::RunIn(
            folder.path(), support::Traced({"-o", "/dev/null", "-P", "/proc/self/exe", "-e",
                                            "inject=readlink,readlinkat:error=ENOENT"},
                                           {ProgramPath("systally-on"), machine, "/s"}));
        EXPECT_EQ(result.output, "");
        // A sanitizer misses the link as well, and says so first.
        EXPECT_TRUE(result.errors.ends_with(
            "systally-on: cannot tell where systally lies: /proc/self/exe: No such file or "
            "directory\n"))
            << result.errors;
        EXPECT_EQ(result.status, 255);
    }
}

// --- What a program sees on the machine
// -----------------------------------------------------------

TEST(OnTheMachine, DevicesOfTheHostAreStillThere) {
    const Result result =
        support::RunOnMachine(Arlo2Folder(), {"sh", "-c",
                                              "echo lost > /dev/null && "
                                              "head -c 4 /dev/zero | od -An -tx1 && "
                                              "readlink /dev/fd && "
                                              "test -d /dev/shm && test -f /dev/mem"});
    EXPECT_EQ(result.output, " 00 00 00 00\n/proc/self/fd\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(OnTheMachine, PciTreeIsTheFoldersOwn) {
    const Result result = support::RunOnMachine(Arlo2Folder(), {"ls", "/proc/bus/pci"});
    EXPECT_EQ(result.output, "00\n01\n06\n10\ndevices\nfe\n");
}

TEST(OnTheMachine, CurrentDirectoryStaysTheSame) {
    const Result here = support::Run({"pwd", "-P"});
    EXPECT_EQ(support::RunOnMachine(Arlo2Folder(), {"pwd", "-P"}).output, here.output);
}

}  // namespace
