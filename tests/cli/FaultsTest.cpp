// Each system call that the program needs fails in turn: the words, the status, and nothing else.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/RefusedCall.h"
#include "support/TemporaryFolder.h"
#include "support/Traced.h"

namespace {

namespace fs = std::filesystem;

using support::Arlo2Folder;
using support::ProgramPath;
using support::RefusedCall;
using support::Result;

constexpr char kMemoryUnreadable[] =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n"
    "[ERROR]\n"
    "ERROR = 255\n";
constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n"
    "[ERROR]\n"
    "ERROR = 255\n";
constexpr char kLostOutput[] =
    "\n\nFile Write Error\n\nUnable to write to file...\n\nstandard output\n";

/// The program's path, quoted by nobody: build folders have plain names.
std::string Program() {
    return ProgramPath("systally");
}

std::string SampleReport() {
    std::ifstream file(SYSTALLY_GOLDEN "/arlo2.ini");
    return {std::istreambuf_iterator<char>(file), {}};
}

void Expect(const Result& result, const std::string& output, const std::string& errors,
            int status) {
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.errors, errors);
    EXPECT_EQ(result.status, status);
}

/// /i in a world without devices, in which a shell prepares /dev/mem.
Result ReportAfter(const std::string& preparation) {
    return support::RunWithHidden("/dev",
                                  {"/bin/sh", "-c", preparation + " && exec " + Program() + " /i"});
}

/// A shell command on the sample server.
Result OnArlo2(const std::string& command) {
    return support::RunOnMachine(Arlo2Folder(), {"/bin/sh", "-c", command});
}

Result ReportRefusing(const RefusedCall& call) {
    return support::RunOnMachineRefusing(Arlo2Folder(), call, {Program(), "/i"});
}

// --- Memory -------------------------------------------------------------------------------------

TEST(MemoryFault, MissingDeviceIsUnreadableMemory) {
    Expect(ReportAfter("true"), kMemoryUnreadable, "", 255);
}

TEST(MemoryFault, DeviceWithoutPermissionIsUnreadableMemory) {
    const std::string command = "touch /dev/mem && chmod 0 /dev/mem && exec " + Program() + " /i";
    Expect(support::RunWithHidden("/dev", support::WithoutRights({"/bin/sh", "-c", command})),
           kMemoryUnreadable, "", 255);
}

TEST(MemoryFault, DirectoryHoldsNoTable) {
    Expect(ReportAfter("mkdir /dev/mem"), kNoTable, "", 255);
}

TEST(MemoryFault, EmptyMemoryHoldsNoTable) {
    Expect(ReportAfter("touch /dev/mem"), kNoTable, "", 255);
}

TEST(MemoryFault, MemoryThatEndsBeforeTheBIOSAreaHoldsNoTable) {
    Expect(ReportAfter("truncate -s 983039 /dev/mem"), kNoTable, "", 255);
}

TEST(MemoryFault, ReadErrorLeavesNoTable) {
    // Told from the loader's reads by its length.
    Expect(ReportRefusing(
               {.number = SYS_pread64, .error = EIO, .argument = 2, .mask = ~0U, .value = 65535}),
           kNoTable, "", 255);
}

TEST(MemoryFault, RefusedMappingLeavesNoTable) {
    Expect(ReportRefusing({.number = SYS_mmap,
                           .error = EPERM,
                           .argument = 3,
                           .mask = MAP_SHARED | MAP_PRIVATE,
                           .value = MAP_SHARED}),
           kNoTable, "", 255);
}

TEST(MemoryFault, TableBehindTheEndOfAnImageReadsAsZeros) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().TableAt(0x00200000).WriteTo(machine);
    fs::resize_file(machine / "mem", 0x00100000);
    const Result result = support::RunOnMachine(machine, {Program(), "/i"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("\nProduct_Name = \n"), std::string::npos);
}

TEST(MemoryFault, TableCutByTheEndOfAnImageIsReadSoFar) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::Arlo2().TableAt(0x00200000).WriteTo(machine);
    fs::resize_file(machine / "mem", 0x00200080);
    const Result result = support::RunOnMachine(machine, {Program(), "/i"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("\nBIOS_Version = 1.07\n"), std::string::npos);
    EXPECT_NE(result.output.find("\nTotal_Enabled_Memory_Mb = 0\n"), std::string::npos);
}

// --- The PCI tree -------------------------------------------------------------------------------

/// The sample server with a tree that a test damages.
class PciFault : public testing::Test {
  protected:
    PciFault() { machine::Arlo2().WriteTo(m_machine); }

    Result Count() const { return support::SystallyOn(m_machine, {"/vid:8086"}); }
    /// Counts under strace, with a fault in the calls on one path.
    Result CountWithFault(const std::string& path, const std::string& fault) const {
        return support::RunOnMachine(
            m_machine, support::Traced({"-o", "/dev/null", "-P", path, "-e", "inject=" + fault},
                                       {Program(), "/vid:8086"}));
    }

    support::TemporaryFolder m_folder;
    fs::path m_machine = m_folder.path() / "machine";
    fs::path m_bus = m_machine / "pci" / "00";
};

TEST_F(PciFault, MissingTreeEndsWith1) {
    Expect(support::RunWithHidden("/proc/bus", {Program(), "/vid:8086"}),
           "Cannot open /proc/bus/pci\n", "", 1);
}

TEST_F(PciFault, TreeThatIsAFileEndsWith1) {
    Expect(support::RunWithHidden(
               "/proc/bus",
               {"/bin/sh", "-c", "touch /proc/bus/pci && exec " + Program() + " /vid:8086"}),
           "Cannot open /proc/bus/pci\n", "", 1);
}

TEST_F(PciFault, TreeThatCannotBeListedEndsWith1) {
    Expect(CountWithFault("/proc/bus/pci", "getdents64:error=EIO"), "Cannot open /proc/bus/pci\n",
           "", 1);
}

TEST_F(PciFault, BusThatCannotBeListedToItsEndEndsWith1AndItsName) {
    Expect(CountWithFault("/proc/bus/pci/00", "getdents64:error=EIO:when=2"),
           "Cannot open /proc/bus/pci/00\n", "", 1);
}

TEST_F(PciFault, BusThatIsRemovedWhileItIsListedHasNoFunctions) {
    const Result result = CountWithFault("/proc/bus/pci/00", "getdents64:error=ENOENT");
    Expect(result, "", "", 3);
}

TEST_F(PciFault, UnreadableBusEndsWith1AndItsName) {
    const fs::path bus = m_machine / "pci" / "01";
    fs::permissions(bus, fs::perms::none);
    Expect(support::RunOnMachine(m_machine, support::WithoutRights({Program(), "/vid:8086"})),
           "Cannot open /proc/bus/pci/01\n", "", 1);
    fs::permissions(bus, fs::perms::owner_all);
}

TEST_F(PciFault, UnreadableFunctionEndsWith1WithoutAWord) {
    const std::string command =
        "chmod 0 " + (m_bus / "00.0").string() + " && exec " + Program() + " /vid:8086";
    Expect(support::RunOnMachine(m_machine, support::WithoutRights({"/bin/sh", "-c", command})), "",
           "", 1);
}

TEST_F(PciFault, EmptyFileHasNoIdentity) {
    std::ofstream(m_bus / "1f.7").close();
    EXPECT_EQ(Count().status, 14);
    EXPECT_EQ(support::SystallyOn(m_machine, {"/vid:0"}).status, 1);
}

TEST_F(PciFault, FileOfSixteenBytesHasNoSubsystem) {
    std::ofstream(m_bus / "1f.7") << std::string("\x86\x80\x29\x12", 4) << std::string(12, '\0');
    EXPECT_EQ(Count().status, 15);
    EXPECT_EQ(support::SystallyOn(m_machine, {"/did:1229", "/svid:0", "/sdid:0"}).status, 1);
}

TEST_F(PciFault, NameThatIsNoNumberIsDeviceZero) {
    std::ofstream(m_bus / "zz") << std::string("\x86\x80\x29\x12", 4);
    EXPECT_EQ(Count().status, 15);
}

TEST_F(PciFault, FileWhoseSizeCannotBeToldHasNoIdentity) {
    Expect(support::RunOnMachineRefusing(m_machine, {.number = SYS_lseek, .error = ESPIPE},
                                         {Program(), "/vid:0"}),
           "", "", 20);
}

TEST_F(PciFault, FileThatCannotBeReadHasNoIdentity) {
    // Those of 256 bytes, eleven of the twenty; others can still be read.
    Expect(support::RunOnMachineRefusing(
               m_machine,
               {.number = SYS_pread64, .error = EIO, .argument = 2, .mask = ~0U, .value = 256},
               {Program(), "/vid:0"}),
           "", "", 11);
}

TEST_F(PciFault, LongFileThatCannotBeReadHasNoIdentity) {
    // The others can still be read, before them and between them.
    constexpr uint32_t kLong = 8192;
    for (const char* name : {"1d.0", "1d.1", "1d.7", "1f.0", "1f.2", "1f.3"}) {
        fs::resize_file(m_bus / name, kLong);
    }
    Expect(support::RunOnMachineRefusing(
               m_machine,
               {.number = SYS_pread64, .error = EIO, .argument = 2, .mask = ~0U, .value = kLong},
               {Program(), "/vid:0"}),
           "", "", 6);
}

// --- Output and input ---------------------------------------------------------------------------

TEST(OutputFault, ReportOnAFullDeviceIsAFailure) {
    for (const char* argument : {"/i", "/p"}) {
        Expect(OnArlo2("exec " + Program() + " " + argument + " >/dev/full"), "", kLostOutput, 255);
    }
}

TEST(OutputFault, ReportOnAClosedOutputIsAFailure) {
    Expect(OnArlo2("exec " + Program() + " /i >&-"), "", kLostOutput, 255);
}

TEST(OutputFault, ReportThatCannotBeWrittenIsAFailure) {
    Expect(support::RunOnMachineRefusing(
               Arlo2Folder(),
               {.number = SYS_write, .error = ENOSPC, .argument = 0, .mask = ~0U, .value = 1},
               {Program(), "/i"}),
           "", kLostOutput, 255);
}

TEST(OutputFault, LongReportThatLosesItsBeginningIsAFailure) {
    // More than one write, of which the first alone fails: the end says nothing of the loss.
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    machine::MachineBuilder builder = machine::Arlo2();
    for (uint16_t bus = 0x40; bus < 0xF0; ++bus) {
        for (uint16_t device = 0; device < 2; ++device) {
            machine::PciFunction function;
            function.bus = bus;
            function.device = device;
            builder.Add(function);
        }
    }
    builder.WriteTo(machine);
    const std::string report = folder.path() / "report";
    const Result result = support::RunOnMachine(
        machine,
        support::Traced({"-o", "/dev/null", "-P", report, "-e", "inject=write:error=ENOSPC:when=1"},
                        {"/bin/sh", "-c", "exec " + Program() + " /i >" + report}));
    EXPECT_GT(fs::file_size(report), 0U);
    EXPECT_EQ(result.errors, kLostOutput);
    EXPECT_EQ(result.status, 255);
}

TEST(OutputFault, LostDumpIsSaidAndKeepsItsStatus) {
    Expect(OnArlo2("exec " + Program() + " /dump >/dev/full"), "", kLostOutput, 0);
}

TEST(OutputFault, LostUsageKeepsItsStatus) {
    Expect(OnArlo2("exec " + Program() + " >/dev/full"), "", kLostOutput, 255);
}

TEST(OutputFault, QueriesPrintNothingAndNeedNoOutput) {
    Expect(OnArlo2("exec " + Program() + " /m:7712 >&-"), "", "", 1);
    Expect(OnArlo2("exec " + Program() + " /s >/dev/full"), "", "", 0);
    Expect(OnArlo2("exec " + Program() + " /vid:8086 >/dev/full"), "", "", 14);
}

TEST(OutputFault, LostMessagesOfAFailureKeepItsStatus) {
    Expect(ReportAfter("exec >&- && true"), "", kLostOutput, 255);
}

TEST(InputFault, ClosedInputChangesNothing) {
    Expect(OnArlo2("exec " + Program() + " /i <&-"), SampleReport(), "", 0);
}

TEST(InputFault, AllStreamsClosedChangesNoStatus) {
    Expect(OnArlo2("exec " + Program() + " /m:7712 <&- >&- 2>&-"), "", "", 1);
}

}  // namespace
