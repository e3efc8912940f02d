// Run and dump: results, messages and what a record keeps from one reading to the next.
#include <filesystem>
#include <fstream>

#include "smbios/OnMachine.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using Record = SERVER_INFORMATION;
using support::CoverWithEmptyDirectory;
using support::OnMachine;

constexpr char kMemoryUnreadable[] =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n SERVER_INFORMATION::LoadBIOSBuffer()\n";
constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \nSERVER_INFORMATION::ParseTables()\n";

MachineBuilder Machine() {
    return MachineBuilder()
        .Add(BIOS())
        .Add(EnclosureOf(0x1C))
        .Add(Structure(4, 0x23).String(0x04, "CPU 1").Byte(0x06, 0xB3).Byte(0x18, 0x41))
        .Add(Structure(17, 0x1B).Word(0x0C, 512).String(0x10, "DIMM 1"));
}

void ExpectNothingKnown(const Record& record) {
    EXPECT_EQ(record.GetActiveProcessors(), 0);
    EXPECT_EQ(record.GetProcessorSlots(), 0);
    EXPECT_EQ(record.GetMemorySizeInMB(), 0);
    EXPECT_EQ(record.GetNumSystemEnclosures(), 0);
    EXPECT_EQ(record.GetBladeSlot(), -1);
    EXPECT_EQ(record.GetUUID(), nullptr);
    EXPECT_EQ(record.GetChassisUUID(), nullptr);
    EXPECT_STREQ(record.GetMachineBIOSName(), "");
    EXPECT_STREQ(record.GetProductName(), "");
}

// --- Run ----------------------------------------------------------------------------------------

TEST(Run, ReturnsZeroAndPrintsNothing) {
    const std::string output = OnMachine(Machine(), [] {
        Record record;
        EXPECT_EQ(record.Run(), 0);
    });
    EXPECT_EQ(output, "");
}

TEST(Run, UnreadableMemoryGivesMinusTwoAndBothMessages) {
    const std::string output = OnMachine(Machine(), [] {
        CoverWithEmptyDirectory("/dev");
        Record record;
        EXPECT_EQ(record.Run(), -2);
        ExpectNothingKnown(record);
    });
    EXPECT_EQ(output, kMemoryUnreadable);
}

TEST(Run, MissingEntryPointGivesMinusThreeAndItsMessage) {
    const std::string output = OnMachine(Machine().NoEntryPoint(), [] {
        Record record;
        EXPECT_EQ(record.Run(), -3);
        ExpectNothingKnown(record);
    });
    EXPECT_EQ(output, kNoTable);
}

TEST(Run, DirectoryInPlaceOfMemoryGivesMinusThree) {
    const std::string output = OnMachine(Machine(), [] {
        CoverWithEmptyDirectory("/dev");
        fs::create_directory("/dev/mem");
        Record record;
        EXPECT_EQ(record.Run(), -3);
        ExpectNothingKnown(record);
    });
    EXPECT_EQ(output, kNoTable);
}

// --- A second run -------------------------------------------------------------------------------

TEST(SecondRun, AddsToWhatTheFirstCounted) {
    ExpectOn(Machine(), [](const Record& record) {
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
        EXPECT_EQ(record.GetMemorySizeInMB(), 512);
    });
    OnMachine(Machine(), [] {
        Record record;
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.GetNumSystemEnclosures(), 2);
        EXPECT_EQ(record.GetSystemEnclosureType(1), 0x1C);
        EXPECT_EQ(record.GetProcessorSlots(), 2);
        EXPECT_EQ(record.GetActiveProcessors(), 2);
        EXPECT_EQ(record.GetProcessorFamily(1), 0xB3);
        EXPECT_EQ(record.GetMemorySizeInMB(), 1024);
        EXPECT_STREQ(record.GetMachineBIOSVersion(), "1.07");
    });
}

TEST(SecondRun, ReadsMemoryAnew) {
    const support::TemporaryFolder folder;
    Machine().WriteTo(folder.path() / "machine");
    OnMachine(folder.path() / "machine", [&folder] {
        Record record;
        EXPECT_EQ(record.Run(), 0);
        fs::resize_file(folder.path() / "machine/mem", 0);
        EXPECT_EQ(record.Run(), -3);
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
    });
}

// --- dump ---------------------------------------------------------------------------------------

size_t Count(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(Dump, ReturnsZeroAndFillsTheRecord) {
    OnMachine(Machine(), [] {
        Record record;
        EXPECT_EQ(record.dump(), 0);
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
        EXPECT_STREQ(record.GetMachineBIOSVersion(), "1.07");
    });
}

TEST(Dump, ReturnsZeroEvenWhenMemoryCannotBeRead) {
    const std::string output = OnMachine(Machine(), [] {
        CoverWithEmptyDirectory("/dev");
        EXPECT_EQ(Record().dump(), 0);
    });
    EXPECT_EQ(output, kMemoryUnreadable);
}

TEST(Dump, ReturnsZeroEvenWithoutATable) {
    const std::string output =
        OnMachine(Machine().NoEntryPoint(), [] { EXPECT_EQ(Record().dump(), 0); });
    EXPECT_EQ(output, kNoTable);
}

TEST(Dump, LeavesDumpModeOnAfterSuccess) {
    const std::string output = OnMachine(MachineBuilder().Add(EnclosureOf(0x1C)), [] {
        Record record;
        record.dump();
        EXPECT_EQ(record.Run(), 0);
    });
    EXPECT_EQ(Count(output, "SMBIOS TYPE 3 \n"), 2u);
}

TEST(Dump, SwitchesDumpModeOffAfterFailure) {
    const support::TemporaryFolder folder;
    MachineBuilder().Add(EnclosureOf(0x1C)).WriteTo(folder.path() / "machine");
    fs::rename(folder.path() / "machine/mem", folder.path() / "machine/whole");
    std::ofstream(folder.path() / "machine/mem").close();
    const std::string output = OnMachine(folder.path() / "machine", [&folder] {
        Record record;
        EXPECT_EQ(record.dump(), 0);
        fs::copy_file(folder.path() / "machine/whole", folder.path() / "machine/mem",
                      fs::copy_options::overwrite_existing);
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
    });
    EXPECT_EQ(output, kNoTable);
}

class DumpedType : public testing::TestWithParam<int> {};

TEST_P(DumpedType, IsTitledAndDumpedOnce) {
    const auto type = static_cast<uint8_t>(GetParam());
    const std::string output = OnMachine(MachineBuilder().Add(Structure(type, 0x23).Text("text")),
                                         [] { EXPECT_EQ(Record().dump(), 0); });
    const std::string title =
        "SMBIOS TYPE " + std::to_string(type) + " \nDump Data Test Box \n\n hex dump\n00 00 ";
    EXPECT_EQ(output.substr(0, title.size()), title);
    EXPECT_EQ(Count(output, "SMBIOS TYPE"), 1u);
    EXPECT_EQ(Count(output, "Dump Data Test Box"), 1u);
    EXPECT_EQ(Count(output, "\n"), 44u);
}

INSTANTIATE_TEST_SUITE_P(Decoded, DumpedType, testing::Values(0, 1, 2, 3, 4, 9, 11, 17),
                         testing::PrintToStringParamName());

class UndumpedType : public testing::TestWithParam<int> {};

TEST_P(UndumpedType, IsSkippedWithoutAWord) {
    const auto type = static_cast<uint8_t>(GetParam());
    const std::string output = OnMachine(MachineBuilder().Add(Structure(type, 0x23).Text("text")),
                                         [] { Record().dump(); });
    EXPECT_EQ(output, "");
}

INSTANTIATE_TEST_SUITE_P(Skipped, UndumpedType,
                         testing::Values(5, 6, 7, 8, 10, 12, 16, 18, 127, 128, 131, 255),
                         testing::PrintToStringParamName());

TEST(Dump, ShowsStructuresInTheOrderOfTheTable) {
    const std::string output = OnMachine(MachineBuilder()
                                             .Add(EnclosureOf(0x1C))
                                             .Add(BIOS())
                                             .Add(Structure(32, 0x0B))
                                             .Add(EnclosureOf(0x1C)),
                                         [] { Record().dump(); });
    const size_t first = output.find("SMBIOS TYPE 3 \n");
    const size_t second = output.find("SMBIOS TYPE 0 \n");
    const size_t third = output.rfind("SMBIOS TYPE 3 \n");
    EXPECT_EQ(first, 0u);
    EXPECT_GT(second, first);
    EXPECT_GT(third, second);
    EXPECT_EQ(Count(output, "SMBIOS TYPE"), 3u);
}

TEST(Dump, ShortSystemInformationIsDumpedThoughNotDecoded) {
    const std::string output = OnMachine(
        MachineBuilder().Add(Structure(1, 0x18).String(0x04, "QEV")), [] { Record().dump(); });
    EXPECT_EQ(output.substr(0, 15), "SMBIOS TYPE 1 \n");
}

TEST(Dump, NothingIsAStructureBehindTheCopy) {
    // One byte is copied beyond the announced length: the copy ends with the structure.
    const Bytes table = EnclosureOf(0x1C).Encode(0);
    const auto length = static_cast<uint16_t>(table.size() - 1);
    const std::string output =
        OnMachine(MachineBuilder().AddRaw(table).AnnounceLength(length).AnnounceCount(2),
                  [] { Record().dump(); });
    EXPECT_EQ(Count(output, "SMBIOS TYPE"), 1u);
}

TEST(Dump, WindowAtTheEndOfTheTableReadsAsZero) {
    // The last byte of the copy is the type of a structure.
    const std::string output = OnMachine(
        MachineBuilder().AddRaw(Bytes{3}).AnnounceLength(0).Poke(0xE0001, Bytes(700, 0xEE)),
        [] { Record().dump(); });
    const std::string zeros =
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  _______________      \n";
    std::string expected =
        "SMBIOS TYPE 3 \nDump Data Test Box \n\n hex dump\n"
        "00 00 03 00 00 00 00 00 00 00 00 00 00 00 00  _______________      \n";
    for (int line = 1; line < 40; ++line) {
        expected += zeros;
    }
    EXPECT_EQ(output, expected);
}

}  // namespace
