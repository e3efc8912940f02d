// systally-on --this: every switch answers on machines where the program alone cannot, with the
// output and the status that it has on a machine with an entry point in the BIOS area.
#include <gtest/gtest.h>

#include "machine/Arlo2.h"
#include "machine/EntryPoint.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using support::Arguments;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

constexpr char kMemoryUnreadable[] =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n";

class ThisMachine : public testing::Test {
  protected:
    static Result This(const MachineAtHand& machine, const Arguments& switches) {
        Arguments command = {ProgramPath("systally-on"), "--this"};
        command.insert(command.end(), switches.begin(), switches.end());
        return machine.Run(command);
    }

    /// Each switch must answer as on the sample server.
    static void ExpectArlo2(const MachineAtHand& machine) {
        for (const Arguments& switches : std::vector<Arguments>{{"/s"},
                                                                {"/m:7712"},
                                                                {"/qMachType7710"},
                                                                {"/i"},
                                                                {"/p"},
                                                                {"/dumpINI"},
                                                                {"/dumpProp"},
                                                                {"/dump"},
                                                                {"/x64"},
                                                                {"/vid:8086"},
                                                                {"/did:1639", "/add:300"},
                                                                {"/svid:51E5", "/sdid:3A9"},
                                                                {"/vid:8086", "/bn:0", "/dn:7"},
                                                                {"/bn:1"},
                                                                {}}) {
            const Result expected = support::SystallyOn(support::Arlo2Folder(), switches);
            const Result result = This(machine, switches);
            const std::string what = switches.empty() ? "no switch" : switches.front();
            EXPECT_EQ(result.output, expected.output) << what;
            EXPECT_EQ(result.errors, "") << what;
            EXPECT_EQ(result.status, expected.status) << what;
        }
    }

    const Bytes m_table = machine::Arlo2().EncodeTable();
    const Bytes m_entryPoint = support::EntryPoint64(0x7F2B1000, 0x4000);
};

TEST_F(ThisMachine, AnswersUnderUefiFirmware) {
    MachineAtHand machine(machine::Arlo2().NoEntryPoint());
    ASSERT_EQ(
        machine.WithKernelsCopy(m_entryPoint, m_table).Run({ProgramPath("systally"), "/s"}).status,
        255);
    ExpectArlo2(machine);
}

TEST_F(ThisMachine, AnswersOnAKernelWithoutMemoryDevice) {
    MachineAtHand machine(machine::Arlo2());
    ExpectArlo2(machine.WithoutMemory().WithKernelsCopy(m_entryPoint, m_table));
}

TEST_F(ThisMachine, AnswersWhereADirectoryStandsForTheMemoryDevice) {
    MachineAtHand machine(machine::Arlo2());
    machine.WithoutMemory().With(support::MakeMemoryADirectory);
    ExpectArlo2(machine.WithKernelsCopy(m_entryPoint, m_table));
}

TEST_F(ThisMachine, AnswersWhereTheMemoryDeviceIsRefused) {
    MachineAtHand machine(machine::Arlo2());
    ExpectArlo2(machine.WithUnreadableMemory().WithKernelsCopy(m_entryPoint, m_table));
}

TEST_F(ThisMachine, AnswersWithAnEntryPointInTheBiosAreaAsTheProgramAlone) {
    ExpectArlo2(MachineAtHand(machine::Arlo2()));
}

TEST_F(ThisMachine, ShowsTheMachinesOwnPciTree) {
    MachineAtHand machine(machine::Arlo2());
    machine.WithKernelsCopy(m_entryPoint, m_table).WithoutPciTree();
    const Result result = This(machine, {"/vid:8086", "/add:7"});
    EXPECT_EQ(result.output, "Cannot open /proc/bus/pci\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(This(machine, {"/m:7712"}).status, 1);
}

TEST_F(ThisMachine, SaysWhatWasCutAndAnswersFromTheRest) {
    MachineBuilder longOne;
    longOne.Add(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2 -[771200X]-"));
    for (int i = 0; i < 70; ++i) {
        longOne.Add(Structure(0xDD, 4).Text(std::string(1000, 'x')));
    }
    MachineAtHand machine(machine::Arlo2().NoEntryPoint());
    machine.WithKernelsCopy(m_entryPoint, longOne.EncodeTable());
    const Result result = This(machine, {"/m:7712"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "systally-on: the table of 70477 bytes and 72 structures is cut to 65441 bytes and "
              "66 structures\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(ThisMachine, LeavesNothingBehind) {
    MachineAtHand machine(machine::Arlo2().NoEntryPoint());
    machine.WithKernelsCopy(m_entryPoint, m_table);
    const std::string look = "cat /proc/self/mountinfo; ls -lA /dev; ";
    const Result after = machine.Run(
        {"sh", "-c", look + "\"$1\" --this /m:7712; test $? -eq 1 || echo wrong; " + look, "sh",
         ProgramPath("systally-on")});
    const std::string& text = after.output;
    EXPECT_NE(text.find(" /dev/mem "), std::string::npos);
    EXPECT_EQ(text.substr(0, text.size() / 2), text.substr(text.size() / 2));
    EXPECT_EQ(after.errors, "");
}

/// As the program does by itself where firmware shows as little of a table.
TEST_F(ThisMachine, AnswersFromAFirstStructureThatBreaksOff) {
    const Bytes cut(m_table.begin(), m_table.begin() + 30);
    MachineBuilder other;
    other.AddRaw(cut).AnnounceCount(1);
    MachineAtHand machine(MachineBuilder().NoEntryPoint());
    machine.WithKernelsCopy(m_entryPoint, cut);
    const Result result = This(machine, {"/i"});
    EXPECT_EQ(result.output, support::SystallyOn(other, {"/i"}).output);
    EXPECT_NE(result.output.find("System_Manufacturer = \n"), std::string::npos);
    EXPECT_EQ(result.errors, "systally-on: the table breaks off within its first structure\n");
    EXPECT_EQ(result.status, 0);
}

// --- Where there is no table to be had ----------------------------------------------------------

TEST_F(ThisMachine, WithoutAnySourceTheProgramSaysWhatItSaysThere) {
    MachineAtHand machine(machine::Arlo2());
    machine.WithoutMemory();
    const Result result = This(machine, {"/i"});
    EXPECT_EQ(result.output, std::string(kMemoryUnreadable) + "[ERROR]\nERROR = 255\n");
    EXPECT_EQ(result.errors,
              "systally-on: /dev/mem: No such file or directory\n"
              "systally-on: /sys/firmware/dmi/tables/smbios_entry_point: No such file or "
              "directory\n"
              "systally-on: no source shows this machine's SMBIOS table: systally answers as it "
              "would alone\n");
    EXPECT_EQ(result.status, 255);
}

TEST_F(ThisMachine, WithoutAnySourceTheOtherQuestionsAreAnswered) {
    MachineAtHand machine(machine::Arlo2());
    machine.WithoutMemory().WithoutSysfs();
    EXPECT_EQ(This(machine, {"/x64"}).status, 0);
    EXPECT_EQ(This(machine, {"/vid:14E4"}).status, 4);
}

TEST_F(ThisMachine, TableThatHoldsNothingIsNoSource) {
    MachineAtHand machine(machine::Arlo2().NoEntryPoint());
    machine.WithKernelsCopy(m_entryPoint, Bytes(3, 0xFF));
    const Result result = This(machine, {"/s"});
    EXPECT_EQ(result.errors,
              "systally-on: /sys/firmware/dmi/tables: the table begins with no structure: systally "
              "answers as it would alone\n");
    EXPECT_EQ(result.status, 255);
}

TEST_F(ThisMachine, SaysWhenNamespacesAreForbidden) {
    const std::string script =
        "echo 0 > /proc/sys/user/max_mnt_namespaces && "
        "echo 0 > /proc/sys/user/max_user_namespaces && exec \"$@\"";
    MachineAtHand machine(machine::Arlo2().NoEntryPoint());
    machine.WithKernelsCopy(m_entryPoint, m_table);
    const Result result = machine.Run(
        {"unshare", "-r", "sh", "-c", script, "sh", ProgramPath("systally-on"), "--this", "/i"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "systally-on: cannot enter a user namespace: No space left on device; this system "
              "forbids it to this user\n");
    EXPECT_EQ(result.status, 255);
}

}  // namespace
