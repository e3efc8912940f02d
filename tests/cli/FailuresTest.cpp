// What the machine refuses: the words on the screen and the status.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using support::Result;
using support::SystallyOn;

constexpr char kMemoryUnreadable[] =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n";
constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n";
constexpr char kInternalError[] =
    "Internal error.\n"
    "Note: This program cannot run with expanded memory drivers (EMM386) loaded.\n";

/// The sample server in a folder of its own, to be damaged.
class DamagedServer : public testing::Test {
  protected:
    DamagedServer() { machine::Arlo2().WriteTo(m_machine); }

    Result Run(const std::string& argument) const { return SystallyOn(m_machine, {argument}); }

    /// Expects these words, nothing on standard error, and the status.
    void Expect(const std::string& argument, const std::string& output, int status) const {
        const Result result = Run(argument);
        EXPECT_EQ(result.output, output) << argument;
        EXPECT_EQ(result.errors, "") << argument;
        EXPECT_EQ(result.status, status) << argument;
    }

  private:
    support::TemporaryFolder m_folder;

  protected:
    fs::path m_machine = m_folder.path() / "machine";
};

class ServerWithoutMemory : public testing::Test {
  protected:
    static void Expect(const std::string& argument, const std::string& output, int status) {
        const Result result =
            support::RunWithHidden("/dev", {support::ProgramPath("systally"), argument});
        EXPECT_EQ(result.output, output) << argument;
        EXPECT_EQ(result.errors, "") << argument;
        EXPECT_EQ(result.status, status) << argument;
    }
};

TEST_F(ServerWithoutMemory, IdentityQueriesExplainAndEndWith255) {
    Expect("/s", std::string(kMemoryUnreadable) + kInternalError, 255);
    Expect("/m:7712", std::string(kMemoryUnreadable) + kInternalError, 255);
}

TEST_F(ServerWithoutMemory, ReportConsistsOfItsErrorLines) {
    Expect("/i", std::string(kMemoryUnreadable) + "[ERROR]\nERROR = 255\n", 255);
    Expect("/p", std::string(kMemoryUnreadable) + "ERROR = 255\n", 255);
}

TEST_F(ServerWithoutMemory, DumpEndsWith0AllTheSame) {
    Expect("/dump", kMemoryUnreadable, 0);
}

TEST_F(ServerWithoutMemory, ProcessorQueryStillAnswers) {
    Expect("/x64", "", 0);
}

class ServerWithoutEntryPoint : public testing::Test {
  protected:
    static void Expect(const std::string& argument, const std::string& output, int status) {
        const Result result = SystallyOn(machine::MachineBuilder().NoEntryPoint(), {argument});
        EXPECT_EQ(result.output, output) << argument;
        EXPECT_EQ(result.errors, "") << argument;
        EXPECT_EQ(result.status, status) << argument;
    }
};

TEST_F(ServerWithoutEntryPoint, IdentityQueriesExplainAndEndWith255) {
    Expect("/s", std::string(kNoTable) + kInternalError, 255);
    Expect("/m:7712", std::string(kNoTable) + kInternalError, 255);
    Expect("/qMachType7712", std::string(kNoTable) + kInternalError, 255);
}

TEST_F(ServerWithoutEntryPoint, ReportConsistsOfItsErrorLines) {
    Expect("/i", std::string(kNoTable) + "[ERROR]\nERROR = 255\n", 255);
    Expect("/p", std::string(kNoTable) + "ERROR = 255\n", 255);
}

TEST_F(ServerWithoutEntryPoint, DumpEndsWith0AllTheSame) {
    Expect("/dump", kNoTable, 0);
}

TEST_F(DamagedServer, ShortMemoryHasNoEntryPoint) {
    fs::resize_file(m_machine / "mem", 0xE0000);
    Expect("/s", std::string(kNoTable) + kInternalError, 255);
}

TEST_F(DamagedServer, MemoryThatEndsInTheBiosAreaIsReadAsFarAsItGoes) {
    machine::MachineBuilder machine;
    machine.EntryPointAt(0xF0000).TableAt(0x1000);
    machine.Add(machine::Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2 -[771200X]-"));
    fs::remove_all(m_machine);
    machine.WriteTo(m_machine);
    fs::resize_file(m_machine / "mem", 0xF0020);
    Expect("/m:7712", "", 1);
}

// --- The PCI tree -------------------------------------------------------------------------------

TEST_F(DamagedServer, BusThatIsNoDirectoryEndsTheProgramWith1) {
    std::ofstream(m_machine / "pci" / "02");
    Expect("/vid:8086", "Cannot open /proc/bus/pci/02\n", 1);
}

TEST_F(DamagedServer, UnopenableBusWinsOverTheAddedNumber) {
    std::ofstream(m_machine / "pci" / "02");
    const Result result = SystallyOn(m_machine, {"/vid:8086", "/add:7"});
    EXPECT_EQ(result.status, 1);
}

TEST_F(DamagedServer, ReportStopsBetweenItsSectionsWhenABusCannotBeOpened) {
    std::ofstream(m_machine / "pci" / "02");
    const Result result = Run("/i");
    EXPECT_EQ(result.status, 1);
    const std::string end =
        "Blade_Slot = 14\n"
        "Blade_Chassis_UUID = 9F3C0D5E6A7B41C2B8D0E1F203142536\n"
        "Cannot open /proc/bus/pci/02\n";
    ASSERT_GT(result.output.size(), end.size());
    EXPECT_EQ(result.output.substr(result.output.size() - end.size()), end);
    EXPECT_EQ(result.output.substr(0, 9), "[System]\n");
}

TEST_F(DamagedServer, UnopenableFunctionEndsTheProgramWith1WithoutAWord) {
    fs::create_symlink("nowhere", m_machine / "pci" / "01" / "05.0");
    Expect("/vid:8086", "", 1);
    const Result result = Run("/p");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output.find("PCI_"), std::string::npos);
}

TEST(ServerWithoutPciTree, PciQueryEndsWith1WhateverIsToBeAdded) {
    const Result result = support::RunWithHidden(
        "/proc/bus", {support::ProgramPath("systally"), "/vid:8086", "/add:7"});
    EXPECT_EQ(result.output, "Cannot open /proc/bus/pci\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DamagedServer, ShortConfigurationFilesReadAsZeroBehindTheirEnd) {
    fs::resize_file(m_machine / "pci" / "01" / "00.0", 2);
    const Result result = Run("/i");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("Class_Code.11 = 000000\n"
                                 "Revision.11 = 00\n"
                                 "Header_Type.11 = 00\n"
                                 "Vendor_ID.11 = 1000\n"
                                 "Device_ID.11 = 0000\n"
                                 "Subvendor_ID.11 = 0000\n"
                                 "Subdevice_ID.11 = 0000\n"),
              std::string::npos);
}

}  // namespace
