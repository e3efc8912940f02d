// From physical memory to the private copies: the BIOS area and the structure table.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

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

constexpr char kCannotOpen[] = "Critical error in srvinfo: Could not open /dev/mem.\n";

/// A table of `count` enclosures with the types 0, 1, 2, ... below 100.
MachineBuilder MachineOf(int count) {
    MachineBuilder machine;
    for (int i = 0; i < count; ++i) {
        machine.Add(EnclosureOf(static_cast<uint8_t>(i % 100)));
    }
    return machine;
}

void ExpectWholeTableAt(uint32_t address, int count) {
    ExpectOn(MachineOf(count).TableAt(address), [=](const Record& record) {
        ASSERT_EQ(record.GetNumSystemEnclosures(), count);
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(record.GetSystemEnclosureType(i), i % 100) << i;
        }
    });
}

// --- Addresses ----------------------------------------------------------------------------------

TEST(TableAddress, OnAPageBoundary) {
    ExpectWholeTableAt(0xE0000, 3);
}

TEST(TableAddress, InsideAPage) {
    ExpectWholeTableAt(0xE0001, 3);
    ExpectWholeTableAt(0xE0A40, 3);
}

TEST(TableAddress, AcrossAPageBoundary) {
    ExpectWholeTableAt(0xE0FFF, 3);
    ExpectWholeTableAt(0xE0FE0, 3);
}

TEST(TableAddress, AcrossManyPages) {
    ExpectWholeTableAt(0xC0FFF, 3000);
}

TEST(TableAddress, InsideTheBIOSArea) {
    ExpectWholeTableAt(0xF0020, 3);
    ExpectWholeTableAt(0xFA123, 300);
}

TEST(TableAddress, InTheFirstPage) {
    ExpectWholeTableAt(0x10, 3);
}

TEST(TableAddress, Above2GiB) {
    ExpectWholeTableAt(0x80000000, 3);
    ExpectWholeTableAt(0xBF7C8A40, 300);
}

TEST(TableAddress, AtTheEndOf32Bits) {
    ExpectWholeTableAt(0xFFFFFFF0, 3);
    ExpectWholeTableAt(0xFFFF0123, 300);
}

// --- The copy -----------------------------------------------------------------------------------

TEST(FindHeader, ReturnsACopyOfTheTableAndTheByteBehindIt) {
    MachineBuilder machine = MachineOf(40).TableAt(0xE0ABC);
    const Bytes table = machine.EncodeTable();
    machine.Poke(static_cast<uint32_t>(0xE0ABC + table.size()), Bytes{0xEE, 0xDD});
    OnMachine(machine, [&table] {
        Record record;
        ASSERT_TRUE(record.LoadBIOSBuffer());
        const unsigned char* copy = record.FindHeader();
        ASSERT_NE(copy, nullptr);
        EXPECT_TRUE(std::equal(table.begin(), table.end(), copy));
        EXPECT_EQ(copy[table.size()], 0xEE);
        EXPECT_EQ(copy[table.size() + 1], 0x00) << "zero bytes follow the copy";
        EXPECT_TRUE(std::all_of(copy - 130, copy, [](unsigned char c) { return c == 0; }))
            << "zero bytes precede the copy";
    });
}

TEST(FindHeader, CopyIsPrivate) {
    const support::TemporaryFolder folder;
    MachineOf(1).WriteTo(folder.path() / "machine");
    OnMachine(folder.path() / "machine", [&folder] {
        Record record;
        ASSERT_TRUE(record.LoadBIOSBuffer());
        const unsigned char* copy = record.FindHeader();
        ASSERT_NE(copy, nullptr);
        fs::resize_file(folder.path() / "machine/mem", 0);
        EXPECT_EQ(copy[0], 3);
        EXPECT_EQ(copy[1], 0x0D);
    });
}

TEST(FindHeader, LongestTableIsCopiedWhole) {
    Bytes table(65535, 0xA5);
    table[65534] = 0x5A;
    MachineBuilder machine = MachineBuilder().AddRaw(table).TableAt(0xA0FFF);
    machine.Poke(0xA0FFF + 65535, Bytes{0x77});
    OnMachine(machine, [&table] {
        Record record;
        ASSERT_TRUE(record.LoadBIOSBuffer());
        const unsigned char* copy = record.FindHeader();
        ASSERT_NE(copy, nullptr);
        EXPECT_TRUE(std::equal(table.begin(), table.end(), copy));
        EXPECT_EQ(copy[65535], 0x77);
    });
}

// --- Refused ------------------------------------------------------------------------------------

TEST(LoadBIOSBuffer, MissingDeviceGivesItsMessage) {
    const std::string output = OnMachine(MachineBuilder(), [] {
        CoverWithEmptyDirectory("/dev");
        Record record;
        EXPECT_FALSE(record.LoadBIOSBuffer());
    });
    EXPECT_EQ(output, kCannotOpen);
}

TEST(FindHeader, MissingDeviceGivesNullWithoutAMessage) {
    const std::string output = OnMachine(MachineOf(1), [] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        CoverWithEmptyDirectory("/dev");
        EXPECT_EQ(record.FindHeader(), nullptr);
        EXPECT_FALSE(record.ParseTables());
    });
    EXPECT_EQ(output, "");
}

TEST(FindHeader, RefusedMappingGivesNullWithoutAMessage) {
    const std::string output = OnMachine(MachineOf(1), [] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        CoverWithEmptyDirectory("/dev");
        // A directory can be opened, not mapped.
        fs::create_directory("/dev/mem");
        EXPECT_EQ(record.FindHeader(), nullptr);
        EXPECT_FALSE(record.ParseTables());
    });
    EXPECT_EQ(output, "");
}

TEST(FindHeader, AreaWithoutAnchorGivesNullWithoutAMessage) {
    const std::string output = OnMachine(MachineOf(1).NoEntryPoint(), [] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        EXPECT_EQ(record.FindHeader(), nullptr);
        EXPECT_FALSE(record.ParseTables());
    });
    EXPECT_EQ(output, "");
}

TEST(ParseTables, ReturnsTrueOnceATableIsFound) {
    const std::string output = OnMachine(MachineOf(2), [] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        EXPECT_TRUE(record.ParseTables());
        EXPECT_EQ(record.GetNumSystemEnclosures(), 2);
    });
    EXPECT_EQ(output, "");
}

// --- Short memory -------------------------------------------------------------------------------

void ExpectWithMemoryCutAt(uint64_t size, int result) {
    const support::TemporaryFolder folder;
    MachineOf(2).WriteTo(folder.path() / "machine");
    fs::resize_file(folder.path() / "machine/mem", size);
    const std::string output = OnMachine(folder.path() / "machine", [result] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer()) << "a short read is not detected";
        EXPECT_EQ(record.Run(), result);
    });
    EXPECT_EQ(output == "", result == 0) << output;
}

TEST(ShortMemory, EmptyDeviceHasNoTable) {
    ExpectWithMemoryCutAt(0, -3);
}

TEST(ShortMemory, DeviceThatEndsBeforeTheAreaHasNoTable) {
    ExpectWithMemoryCutAt(0x1000, -3);
    ExpectWithMemoryCutAt(0xF0000, -3);
}

TEST(ShortMemory, DeviceThatEndsInsideTheAreaIsSearchedAsFarAsItGoes) {
    // The entry point lies at 0xF59F0.
    ExpectWithMemoryCutAt(0xF5A20, 0);
    ExpectWithMemoryCutAt(0xF5000, -3);
}

TEST(ShortMemory, RestOfTheAreaIsZero) {
    // The count's two bytes lie behind the end: a count of 0 ends with the table.
    ExpectWithMemoryCutAt(0xF5A0C, 0);
}

TEST(ShortMemory, DirectoryInPlaceOfTheDeviceHasNoTable) {
    const std::string output = OnMachine(MachineOf(1), [] {
        CoverWithEmptyDirectory("/dev");
        fs::create_directory("/dev/mem");
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        EXPECT_EQ(record.FindHeader(), nullptr);
    });
    EXPECT_EQ(output, "");
}

// --- Nothing is left behind ---------------------------------------------------------------------

std::ptrdiff_t OpenDescriptors() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

bool IsMapped(const std::string& name) {
    std::ifstream maps("/proc/self/maps");
    const std::string text((std::istreambuf_iterator<char>(maps)), {});
    return text.find(name) != std::string::npos;
}

TEST(Run, LeavesNoDescriptorAndNoMapping) {
    OnMachine(MachineOf(2), [] {
        const std::ptrdiff_t before = OpenDescriptors();
        Record record;
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(OpenDescriptors(), before);
        EXPECT_FALSE(IsMapped("/mem"));
    });
}

TEST(FindHeader, RefusedMappingLeavesNoDescriptor) {
    OnMachine(MachineOf(1), [] {
        Record record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        CoverWithEmptyDirectory("/dev");
        fs::create_directory("/dev/mem");
        const std::ptrdiff_t before = OpenDescriptors();
        EXPECT_EQ(record.FindHeader(), nullptr);
        EXPECT_EQ(OpenDescriptors(), before);
    });
}

}  // namespace
