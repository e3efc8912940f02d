// Where the table of a captured machine comes from: physical memory, or the kernel's copy of a
// 2.x or 3.x table. dmidecode is the yardstick for the entry point that is made.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "machine/EntryPoint.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::EntryPoint;
using machine::MachineBuilder;
using machine::Structure;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

constexpr char kFromKernel[] = "systally-capture: the table comes from /sys/firmware/dmi/tables: ";

EntryPoint EntryFor(const Bytes& table, uint64_t address, uint16_t count) {
    EntryPoint entry;
    entry.tableAddress = address;
    entry.tableLength = static_cast<uint32_t>(table.size());
    entry.structureCount = count;
    return entry;
}

class Captured : public testing::Test {
  protected:
    /// Captures a machine and returns what systally-capture said.
    std::string Capture(const MachineAtHand& machine) {
        const Result result = machine.Run({ProgramPath("systally-capture"), m_captured});
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.errors;
    }

    std::string About() const {
        std::ostringstream text;
        text << std::ifstream(m_captured / "about").rdbuf();
        return text.str();
    }

    void ExpectAbout(const std::string& line) const {
        EXPECT_NE(("\n" + About()).find("\n" + line + "\n"), std::string::npos) << About();
    }

    /// The report of the sample server must come out, whole.
    void ExpectArlo2() const {
        for (const char* layout : {"/i", "/p"}) {
            EXPECT_EQ(support::SystallyOn(m_captured, {layout}).output,
                      support::SystallyOn(support::Arlo2Folder(), {layout}).output);
        }
    }

    std::string Dmidecode(const support::Arguments& arguments) const {
        support::Arguments command = {"dmidecode", "--no-sysfs", "-d", m_captured / "mem"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const Result result = support::Run(command);
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.status, 0);
        return result.output;
    }

    support::TemporaryFolder m_folder;
    fs::path m_captured = m_folder.path() / "captured";
    const Bytes m_table = machine::Arlo2().EncodeTable();
};

/// The sample server whose BIOS area has no entry point.
MachineAtHand Arlo2WithoutEntryPoint() {
    return MachineAtHand(machine::Arlo2().NoEntryPoint());
}

TEST_F(Captured, FromTheKernelsCopyOfA2xTable) {
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        EncodeEntryPoint(EntryFor(m_table, 0xBF7C8A40, 21)), m_table));
    EXPECT_EQ(said, "systally-capture: /dev/mem: no anchor between 0xF0000 and 0xFFFFF\n" +
                        std::string(kFromKernel) + "SMBIOS 2.8, 991 bytes, 21 structures\n");
    ExpectArlo2();
    ExpectAbout("source = /sys/firmware/dmi/tables");
    ExpectAbout("entry_point = 0x000F0000");
    ExpectAbout("table = 0xBF7C8A40");
}

TEST_F(Captured, FromTheKernelsCopyOfA3xTable) {
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithoutMemory().WithKernelsCopy(
        support::EntryPoint64(0x7F2B1000, 0x4000), m_table));
    EXPECT_EQ(said, "systally-capture: /dev/mem: No such file or directory\n" +
                        std::string(kFromKernel) + "SMBIOS 3.2, 991 bytes, 21 structures\n");
    ExpectArlo2();
    ExpectAbout("smbios = 3.2");
    ExpectAbout("table = 0x7F2B1000");
}

TEST_F(Captured, FromTheKernelsCopyBehindALegacyEntryPointAlone) {
    Bytes entry = EncodeEntryPoint(EntryFor(m_table, 0xE8000, 21));
    entry.erase(entry.begin(), entry.begin() + 0x10);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(entry, m_table));
    ExpectArlo2();
}

TEST_F(Captured, FromBehindAnEntryPointThatGivesItsSizeOneTooSmall) {
    EntryPoint description = EntryFor(m_table, 0xE8000, 21);
    description.majorVersion = 2;
    description.minorVersion = 0;
    Bytes entry = EncodeEntryPoint(description);
    // Without its last byte, which holds the version and is none of those of the checksum then.
    entry[0x15] = static_cast<uint8_t>(entry[0x15] + entry[0x1E]);
    entry[0x1E] = 0;
    entry[0x05] = 0x1E;
    entry[0x04] = static_cast<uint8_t>(entry[0x04] + 1);
    entry.pop_back();
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(entry, m_table));
    ExpectArlo2();
}

TEST_F(Captured, EntryPointThatIsMadeSatisfiesDmidecode) {
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x4000),
                                                     m_table));
    const std::string all = Dmidecode({});
    EXPECT_NE(all.find("SMBIOS 3.2 present.\n"
                       "21 structures occupying 991 bytes.\n"
                       "Table at 0x7F2B1000.\n"),
              std::string::npos)
        << all.substr(0, 200);
    EXPECT_EQ(Dmidecode({"-s", "system-serial-number"}), "QS0012345\n");
    EXPECT_EQ(Dmidecode({"-q"}),
              support::Run({"dmidecode", "--no-sysfs", "-q", "-d", support::Arlo2Folder() / "mem"})
                  .output);
}

TEST_F(Captured, TableThatNo32BitEntryPointCanNameIsMoved) {
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x1234567890, 0x4000),
                                                     m_table));
    ExpectArlo2();
    ExpectAbout("table = 0x000E0000");
    ExpectAbout("moved_from = 0x1234567890");
}

TEST_F(Captured, TableAtTheEndOfThe32BitAddressesStaysWhereItIs) {
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        support::EntryPoint64(0xFFFFFFFF - m_table.size(), 0x4000), m_table));
    ExpectArlo2();
    EXPECT_EQ(About().find("moved_from"), std::string::npos);
}

TEST_F(Captured, TableInTheWayOfTheEntryPointIsMoved) {
    Capture(
        Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0xEFF00, 0x4000), m_table));
    ExpectArlo2();
    ExpectAbout("table = 0x000E0000");
    ExpectAbout("moved_from = 0x000EFF00");
}

TEST_F(Captured, TableBesideTheEntryPointStaysEvenWhenItLooksLikeOne) {
    // A string that stands where an anchor would.
    const Bytes table =
        MachineBuilder()
            .Add(Structure(1, 0x1C).Text("QEV").Text("_SM_ is no anchor here, but a text"))
            .EncodeTable();
    Capture(
        Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0xF5000, 0x4000), table));
    ExpectAbout("table = 0x000F5000");
    EXPECT_EQ(support::SystallyOn(m_captured, {"/dump"}).output.substr(0, 14), "SMBIOS TYPE 1 ");
}

// --- Which source serves ------------------------------------------------------------------------

TEST_F(Captured, PhysicalMemoryComesFirst) {
    const Bytes other = MachineBuilder().EncodeTable();
    const std::string said =
        Capture(MachineAtHand(machine::Arlo2())
                    .WithKernelsCopy(EncodeEntryPoint(EntryFor(other, 0x1000, 1)), other));
    EXPECT_EQ(said,
              "systally-capture: the table comes from /dev/mem: SMBIOS 2.8, 991 bytes, "
              "21 structures\n");
    ExpectArlo2();
}

TEST_F(Captured, LegacyEntryPointAloneIsEnoughInPhysicalMemory) {
    Capture(MachineAtHand(machine::Arlo2().LegacyEntryPoint()));
    ExpectArlo2();
}

TEST_F(Captured, WrongChecksumsAreNoHindranceAsTheProgramAsksForNone) {
    Capture(MachineAtHand(machine::Arlo2().Poke(0xF59F4, Bytes{0}).Poke(0xF5A05, Bytes{0})));
    ExpectArlo2();
}

TEST_F(Captured, FirstAnchorCountsAsItDoesForTheProgram) {
    MachineAtHand machine(machine::Arlo2().Poke(0xF0100, "_SM_"));
    Capture(machine);
    const Result there = machine.Run({ProgramPath("systally"), "/i"});
    const Result here = support::SystallyOn(m_captured, {"/i"});
    EXPECT_EQ(here.output, there.output);
    EXPECT_EQ(here.status, there.status);
    ExpectAbout("entry_point = 0x000F0100");
}

TEST_F(Captured, TableThatPhysicalMemoryWithholdsComesFromTheKernel) {
    MachineAtHand machine(machine::Arlo2());
    fs::resize_file(machine.Folder() / "mem", 0x100000);
    const std::string said = Capture(
        machine.WithKernelsCopy(EncodeEntryPoint(EntryFor(m_table, 0xBF7C8A40, 21)), m_table));
    EXPECT_EQ(said,
              "systally-capture: /dev/mem: the table at 0xBF7C8A40 cannot be read: the memory ends "
              "before it does\n" +
                  std::string(kFromKernel) + "SMBIOS 2.8, 991 bytes, 21 structures\n");
    ExpectArlo2();
}

TEST_F(Captured, UserWithoutRightsNeedsOnlyWhatHeMayRead) {
    MachineAtHand machine = Arlo2WithoutEntryPoint();
    machine.WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x4000), m_table)
        .WithUnreadableMemory();
    EXPECT_EQ(Capture(machine), "systally-capture: /dev/mem: Permission denied\n" +
                                    std::string(kFromKernel) +
                                    "SMBIOS 3.2, 991 bytes, 21 structures\n");
    ExpectArlo2();
}

// --- Tables that do not fit, and damaged ones ---------------------------------------------------

/// A system with many OEM structures of 1006 bytes each behind it.
MachineBuilder LongTable(int structures) {
    MachineBuilder machine;
    machine.Add(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2 -[771200X]-"));
    for (int i = 0; i < structures; ++i) {
        machine.Add(Structure(0xDD, 4).Text(std::string(1000, 'x')));
    }
    return machine;
}

TEST_F(Captured, OversizedTableIsCutBehindTheLastStructureThatFits) {
    const Bytes table = LongTable(70).EncodeTable();
    ASSERT_EQ(table.size(), 27 + 24 + 70 * 1006 + 6U);
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        support::EntryPoint64(0x7F2B1000, 0x20000), table));
    const std::string loss =
        "the table of 70477 bytes and 72 structures is cut to 65441 bytes and 66 structures";
    EXPECT_EQ(said, "systally-capture: /dev/mem: no anchor between 0xF0000 and 0xFFFFF\n" +
                        std::string(kFromKernel) + "SMBIOS 3.2, 65441 bytes, 66 structures\n" +
                        "systally-capture: " + loss + "\n");
    ExpectAbout("loss = " + loss);
    ExpectAbout("table_bytes = 65441");
    EXPECT_EQ(support::SystallyOn(m_captured, {"/m:7712"}).status, 1);
    EXPECT_NE(Dmidecode({}).find("66 structures occupying 65441 bytes.\n"), std::string::npos);
}

TEST_F(Captured, TableOfTheLargestLengthStaysWhole) {
    MachineBuilder machine = LongTable(65);
    const size_t missing = 65535 - machine.EncodeTable().size();
    machine.Add(Structure(0xDD, 4).Text(std::string(missing - 6, 'y')));
    const Bytes table = machine.EncodeTable();
    ASSERT_EQ(table.size(), 65535U);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x20000),
                                                     table));
    ExpectAbout("table_bytes = 65535");
    EXPECT_EQ(About().find("loss"), std::string::npos);
}

TEST_F(Captured, PaddingBehindTheLastStructureIsNoLoss) {
    Bytes table = m_table;
    table.resize(70000);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x20000),
                                                     table));
    ExpectArlo2();
    ExpectAbout("table_bytes = 991");
    EXPECT_EQ(About().find("loss"), std::string::npos);
}

TEST_F(Captured, TableThatIsCutShortSaysSo) {
    const Bytes table(m_table.begin(), m_table.begin() + 300);
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        EncodeEntryPoint(EntryFor(m_table, 0x7F2B1000, 21)), table));
    EXPECT_NE(said.find("systally-capture: the table breaks off after 5 structures\n"),
              std::string::npos)
        << said;
    ExpectAbout("loss = the table breaks off after 5 structures");
    ExpectAbout("table_bytes = 300");
    EXPECT_EQ(support::SystallyOn(m_captured, {"/m:7712"}).status, 1);
}

TEST_F(Captured, TableThatIsCutShortWithinItsFirstStructureSaysSo) {
    const Bytes table(m_table.begin(), m_table.begin() + 10);
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithoutMemory().WithKernelsCopy(
        support::EntryPoint64(0x7F2B1000, 0x4000), table));
    EXPECT_EQ(said, "systally-capture: /dev/mem: No such file or directory\n" +
                        std::string(kFromKernel) +
                        "SMBIOS 3.2, 10 bytes, 1 structures\n"
                        "systally-capture: the table breaks off within its first structure\n");
    ExpectAbout("loss = the table breaks off within its first structure");
}

/// Sound structures, then one of no length, then more sound ones that nobody can reach.
Bytes BrokenInTheMiddle(int soundStructures, int all) {
    Bytes table = LongTable(soundStructures).AddRaw({0xDD, 0, 0, 0}).EncodeTable();
    const Bytes rest = LongTable(all - soundStructures).EncodeTable();
    table.insert(table.end(), rest.begin(), rest.end());
    return table;
}

TEST_F(Captured, OversizedTableThatBreaksOffWhereItStillFitsSaysSo) {
    const Bytes table = BrokenInTheMiddle(30, 90);
    ASSERT_GT(table.size(), 65535U);
    const std::string said = Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        support::EntryPoint64(0x7F2B1000, 0x20000), table));
    const std::string loss = "the table breaks off after 31 structures";
    EXPECT_NE(said.find("systally-capture: " + loss + "\n"), std::string::npos) << said;
    ExpectAbout("loss = " + loss);
    ExpectAbout("structures = 31");
}

TEST_F(Captured, OversizedTableThatBreaksOffBehindTheCutSaysBoth) {
    const Bytes table = BrokenInTheMiddle(80, 90);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x20000),
                                                     table));
    ExpectAbout("loss = the table breaks off after 81 structures");
    ExpectAbout("loss = the table of " + std::to_string(table.size()) +
                " bytes and 81 structures is cut to 65441 bytes and 66 structures");
}

TEST_F(Captured, TableBeyondTheLimitOfReadingSaysSo) {
    Bytes table = m_table;
    table.resize((16 << 20) + 1);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x1000001),
                                                     table));
    ExpectAbout("loss = only the first 16777216 bytes of /sys/firmware/dmi/tables/DMI are read");
    ExpectArlo2();
}

TEST_F(Captured, TableOfTheLimitOfReadingIsReadWhole) {
    Bytes table = m_table;
    table.resize(16 << 20);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(support::EntryPoint64(0x7F2B1000, 0x1000000),
                                                     table));
    EXPECT_EQ(About().find("loss"), std::string::npos);
}

TEST_F(Captured, TableWithoutItsEndButWithItsCountIsWhole) {
    const Bytes table(m_table.begin(), m_table.end() - 6);
    Capture(Arlo2WithoutEntryPoint().WithKernelsCopy(
        EncodeEntryPoint(EntryFor(table, 0x7F2B1000, 20)), table));
    EXPECT_EQ(About().find("loss"), std::string::npos);
    ExpectArlo2();
}

}  // namespace
