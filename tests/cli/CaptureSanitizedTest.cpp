// systally-capture --sanitize: a folder that can be shared, and the report that remains.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::PciFunction;
using machine::Structure;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

const Bytes kUuid = {0x5A, 0x0E, 0x2C, 0x91, 0x77, 0x12, 0x40, 0x0B,
                     0x8E, 0x31, 0x00, 0x1A, 0x64, 0xC3, 0x7D, 0x02};

class Sanitized : public testing::Test {
  protected:
    void Capture(const MachineAtHand& machine) {
        const Result result =
            machine.Run({ProgramPath("systally-capture"), "--sanitize", m_captured});
        ASSERT_EQ(result.status, 0) << result.errors;
    }

    void Capture(const MachineBuilder& machine) { Capture(MachineAtHand(machine)); }

    std::string Report() const { return support::SystallyOn(m_captured, {"/i"}).output; }

    /// The table's and the entry point's bytes, without the empty space around them.
    std::string Memory() const {
        std::ifstream stream(m_captured / "mem", std::ios::binary);
        std::string bytes(0x20000, '?');
        stream.seekg(0xE0000);
        stream.read(bytes.data(), 0x20000);
        return bytes;
    }

    void ExpectGone(const std::string& secret) const {
        EXPECT_EQ(Memory().find(secret), std::string::npos) << secret;
    }

    std::string Dmidecode(const std::string& type) const {
        return support::Run({"dmidecode", "--no-sysfs", "-d", m_captured / "mem", "-q", "-t", type})
            .output;
    }

    static void Replace(std::string& text, const std::string& from, const std::string& to) {
        const size_t position = text.find(from);
        ASSERT_NE(position, std::string::npos) << from;
        text.replace(position, from.size(), to);
    }

    support::TemporaryFolder m_folder;
    fs::path m_captured = m_folder.path() / "captured";
};

TEST_F(Sanitized, ReportDiffersInTheIdentifyingLinesAlone) {
    Capture(machine::Arlo2());
    std::string expected = support::SystallyOn(support::Arlo2Folder(), {"/i"}).output;
    Replace(expected, "QS0012345", "XXXXXXXXX");
    Replace(expected, "5A0E2C917712400B8E31001A64C37D02", "11111111111111111111111111111111");
    Replace(expected, "9F3C0D5E6A7B41C2B8D0E1F203142536", "00000000000000000000000000000000");
    EXPECT_EQ(Report(), expected);
    std::ostringstream about;
    about << std::ifstream(m_captured / "about").rdbuf();
    EXPECT_NE(about.str().find("sanitized = yes\n"), std::string::npos);
}

TEST_F(Sanitized, SerialNumbersAndAssetTagsOfEveryTypeAreReplaced) {
    Capture(MachineBuilder()
                .Add(Structure(1, 0x1B).String(0x04, "QEV").String(0x07, "SN-SYS 1"))
                .Add(Structure(2, 0x0F).String(0x07, "sn2board").String(0x08, "at2board"))
                .Add(Structure(3, 0x11).String(0x07, "sn3case\xE9").String(0x08, "at3case"))
                .Add(Structure(4, 0x30).String(0x20, "sn4cpu").String(0x21, "at4cpu"))
                .Add(Structure(17, 0x28).String(0x18, "sn17dimm").String(0x19, "at17dimm"))
                .Add(Structure(22, 0x1A).String(0x07, "sn22battery").Word(0x10, 0x4B4F))
                .Add(Structure(39, 0x16).String(0x08, "sn39power").String(0x09, "at39power")));
    EXPECT_NE(Dmidecode("1").find("Serial Number: XX-XXX X\n"), std::string::npos);
    EXPECT_NE(Dmidecode("2").find("Serial Number: XXXXXXXX\n\tAsset Tag: XXXXXXXX\n"),
              std::string::npos);
    EXPECT_NE(Dmidecode("3").find("Serial Number: XXXXXXXX\n\tAsset Tag: XXXXXXX\n"),
              std::string::npos);
    for (const char* secret : {"sn4cpu", "at4cpu", "sn17dimm", "at17dimm", "sn22battery", "OK",
                               "sn39power", "at39power"}) {
        ExpectGone(secret);
    }
    EXPECT_NE(Memory().find("QEV"), std::string::npos);
}

TEST_F(Sanitized, CopiesInTheMakersOwnStructuresAreReplacedToo) {
    Capture(MachineBuilder()
                .Add(Structure(1, 0x1B).String(0x07, "KQ12345").Data(0x08, kUuid))
                .Add(Structure(11, 5)
                         .Byte(4, 4)
                         .Text("SN=kq12345;")
                         .Text("No number")
                         .Text("912C0E5A-1277-0B40-8E31-001A64C37D02"))
                .Add(Structure(0xDD, 0x16)
                         .Data(0x05, kUuid)
                         .Text("5a0e2c917712400b8e31001a64c37d02")
                         .Text("UUID:77AA")));
    EXPECT_NE(Dmidecode("11").find("SN=XXXXXXX;\n"), std::string::npos);
    EXPECT_NE(Dmidecode("11").find("No number\n"), std::string::npos);
    EXPECT_NE(Dmidecode("11").find("XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX\n"), std::string::npos);
    ExpectGone(std::string(kUuid.begin(), kUuid.end()));
    ExpectGone("77AA");
    ExpectGone("5a0e2c91");
}

TEST_F(Sanitized, TextsThatIdentifyNothingAreNotHuntedForElsewhere) {
    Capture(MachineBuilder()
                .Add(Structure(1, 0x1B).String(0x07, "Not Specified"))
                .Add(Structure(11, 5).Byte(4, 1).Text("Not Specified at all")));
    EXPECT_NE(Dmidecode("11").find("Not Specified at all\n"), std::string::npos);
}

TEST_F(Sanitized, MachineWithoutAUuidStaysWithoutOne) {
    Capture(MachineBuilder().Add(Structure(1, 0x1B).Data(0x08, Bytes(16, 0xFF))));
    EXPECT_NE(Dmidecode("1").find("UUID: Not Present\n"), std::string::npos);
}

TEST_F(Sanitized, UuidThatTheProgramTakesForNoneStaysSuch) {
    Bytes uuid = kUuid;
    uuid[0] = 0;
    Capture(MachineBuilder().Add(Structure(1, 0x1B).Data(0x08, uuid)));
    EXPECT_NE(Report().find("System_UUID = \n"), std::string::npos);
    ExpectGone(std::string(uuid.begin(), uuid.end()));
}

TEST_F(Sanitized, NumberThatNamesNoStringHidesThemAll) {
    Capture(MachineBuilder().Add(
        Structure(1, 0x1B).Byte(0x07, 9).Text("stray-serial-1").Text("stray-serial-2")));
    ExpectGone("stray-serial-1");
    ExpectGone("stray-serial-2");
}

TEST_F(Sanitized, ManagementControllersAddressesAreBlanked) {
    Capture(MachineBuilder().Add(Structure(42, 0x20)
                                     .Byte(0x04, 0x40)
                                     .Byte(0x05, 4)
                                     .Data(0x08, {'m', 'a', 'c', 'a', 'd', 'r'})));
    ExpectGone("macadr");
}

TEST_F(Sanitized, NothingBehindTheLastWholeStructureIsKept) {
    const std::string secret = "serial-behind-the-table";
    MachineBuilder machine;
    machine.Add(Structure(1, 0x1B).String(0x07, "KQ12345"));
    machine.AnnounceLength(200).Poke(0xE0000 + 100, secret);
    Capture(machine);
    ExpectGone(secret);
}

TEST_F(Sanitized, OnlyTheEntryPointRemainsOfTheBiosArea) {
    MachineBuilder machine = machine::Arlo2();
    machine.Poke(0xF0100, "serial-in-the-rom").Poke(0xFFF00, "serial-behind-it");
    Capture(machine);
    ExpectGone("serial-in-the-rom");
    ExpectGone("serial-behind-it");
    EXPECT_EQ(support::SystallyOn(m_captured, {"/m:7712"}).status, 1);
}

TEST_F(Sanitized, KernelsCopyIsSanitizedToo) {
    const Bytes table = machine::Arlo2().EncodeTable();
    MachineAtHand machine(machine::Arlo2());
    machine.WithoutMemory().WithKernelsCopy(support::EntryPoint64(0xE0000, 0x1000), table);
    Capture(machine);
    ExpectGone("QS0012345");
    EXPECT_NE(Report().find("Serial_Number = XXXXXXXXX\n"), std::string::npos);
}

TEST_F(Sanitized, DeviceSerialNumbersOfPciExpressAreBlanked) {
    MachineAtHand machine(MachineBuilder().Add(
        PciFunction{.bus = 2, .device = 1, .vendorId = 0x8086, .configurationSize = 4096}));
    {
        std::ofstream file(machine.Folder() / "pci/02/01.0",
                           std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(0x100);
        file.write("\x01\x00\x02\x14", 4);  // another capability; the next one is at 0x140
        file.seekp(0x140);
        file.write("\x03\x00\x01\x00MAC-SNo.KEPT", 16);
    }
    Capture(machine);
    std::ostringstream bytes;
    bytes << std::ifstream(m_captured / "pci/02/01.0").rdbuf();
    ASSERT_EQ(bytes.str().size(), 4096U);
    EXPECT_EQ(bytes.str().substr(0x140, 16), std::string("\x03\0\x01\0\0\0\0\0\0\0\0\0KEPT", 16));
    EXPECT_EQ(support::SystallyOn(m_captured, {"/vid:8086"}).status, 1);
}

TEST_F(Sanitized, CapabilitiesThatGoRoundAreLeftBehind) {
    MachineAtHand machine(
        MachineBuilder().Add(PciFunction{.bus = 2, .device = 1, .configurationSize = 4096}));
    {
        std::ofstream file(machine.Folder() / "pci/02/01.0",
                           std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(0x100);
        file.write("\x01\x00\x02\x10", 4);  // its own place
    }
    Capture(machine);
    EXPECT_EQ(fs::file_size(m_captured / "pci/02/01.0"), 4096U);
}

TEST_F(Sanitized, OptionMayStandBehindTheFolder) {
    const Result result = MachineAtHand(machine::Arlo2())
                              .Run({ProgramPath("systally-capture"), m_captured, "--sanitize"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(Report().find("Serial_Number = XXXXXXXXX\n"), std::string::npos);
}

}  // namespace
