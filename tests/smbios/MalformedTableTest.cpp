// The walk over tables that do not keep to the standard: it ends, and what is right is kept.
#include <chrono>
#include <cstdio>

#include "smbios/OnMachine.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using Record = SERVER_INFORMATION;

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// --- Outside the copy ---------------------------------------------------------------------------

TEST(MalformedTable, WalkEndsWithTheTableWhenTheCountIsTooLarge) {
    ExpectOn(MachineBuilder()
                 .AddRaw(EnclosureOf(0x01).Encode(0) + EnclosureOf(0x02).Encode(1))
                 .AnnounceCount(65535),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 2); });
}

TEST(MalformedTable, StructuresBehindTheAnnouncedLengthAreNotRead) {
    const Bytes first = EnclosureOf(0x01).Encode(0);
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(Structure(32, 0x0B))
                 .Add(EnclosureOf(0x02))
                 .AnnounceLength(static_cast<uint16_t>(first.size() + 5)),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(MalformedTable, FieldsBehindTheCopyReadAsZero) {
    // The copy ends behind the processor's family.
    ExpectOn(MachineBuilder()
                 .Add(Structure(4, 0x23).String(0x04, "CPU").Byte(0x06, 0xB3).Byte(0x18, 0x41))
                 .AnnounceLength(6),
             [](const Record& record) {
                 EXPECT_EQ(record.GetProcessorSlots(), 1);
                 EXPECT_EQ(record.GetActiveProcessors(), 0);
             });
}

TEST(MalformedTable, ByteBehindTheTableIsWalkedToo) {
    const Bytes enclosure = EnclosureOf(0x01).Encode(0);
    ExpectOn(MachineBuilder()
                 .AddRaw(enclosure + Bytes{4})
                 .AnnounceLength(static_cast<uint16_t>(enclosure.size()))
                 .AnnounceCount(9),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
                 EXPECT_EQ(record.GetProcessorSlots(), 1);
             });
}

TEST(MalformedTable, ZeroBytesAtTheEndEndTheWalk) {
    // The address sanitizer watches how far they are stepped over.
    ExpectOn(MachineBuilder().AddRaw(BIOS().Encode(0) + Bytes(3000, 0)).AnnounceCount(65535),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 0); });
}

TEST(MalformedTable, LengthOfZeroGivesATableOfOneByte) {
    ExpectOn(MachineBuilder().Add(EnclosureOf(0x17)).Add(EnclosureOf(0x17)).AnnounceLength(0),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
                 EXPECT_EQ(record.GetSystemEnclosureType(0), 0);
             });
}

// --- Strings ------------------------------------------------------------------------------------

TEST(MalformedTable, StringsEndAtTheEndOfTheCopy) {
    const Structure system =
        Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2").String(0x07, "QS0012345");
    // Six characters and both NULs of the serial number's end lie outside.
    ExpectOn(MachineBuilder()
                 .AddRaw(system.Encode(0))
                 .AnnounceLength(static_cast<uint16_t>(system.Encode(0).size() - 2 - 6 - 1)),
             [](const Record& record) {
                 EXPECT_STREQ(record.GetProductName(), "Arlo 2");
                 EXPECT_STREQ(record.GetMachineSerialNumber(), "QS0");
             });
}

TEST(MalformedTable, UnterminatedSetSwallowsTheStructureBehindIt) {
    Bytes board = Structure(8, 0x09).Text("J1").Encode(0);
    board.pop_back();
    ExpectOn(
        MachineBuilder().AddRaw(board + EnclosureOf(0x01).Encode(1) + EnclosureOf(0x02).Encode(2)),
        [](const Record& record) {
            ASSERT_EQ(record.GetNumSystemEnclosures(), 1);
            EXPECT_EQ(record.GetSystemEnclosureType(0), 2);
        });
}

TEST(MalformedTable, NumbersWithoutStringsReadTheBytesBehindTheSet) {
    // The vendor takes the first NUL of the empty set, the version the second.
    ExpectOn(MachineBuilder()
                 .AddRaw(Structure(0, 0x18).Byte(0x04, 1).Byte(0x05, 2).Byte(0x08, 3).Encode(0) +
                         Bytes{'d', 'a', 't', 'e', 0, 0})
                 .AnnounceCount(1),
             [](const Record& record) {
                 EXPECT_STREQ(record.GetMachineBIOSName(), "");
                 EXPECT_STREQ(record.GetMachineBIOSDate(), "date");
             });
}

TEST(MalformedTable, TableOfTextAloneEnds) {
    ExpectOn(MachineBuilder().AddRaw(Bytes(65535, 'A')).AnnounceCount(0),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 0); });
}

TEST(MalformedTable, LongestTableOfOneStringEnds) {
    Bytes table = Structure(11, 0x05).Text("Diagnostics -[D]-" + std::string(65500, 'x')).Encode(0);
    table.resize(65535, 'y');
    ExpectOn(MachineBuilder().AddRaw(table).AnnounceCount(0),
             [](const Record& record) { EXPECT_STREQ(record.GetROMDiagnosticsBuild(), "D"); });
}

// --- Lengths of 0 -------------------------------------------------------------------------------

TEST(MalformedTable, LengthZeroIsWalkedAsItStands) {
    // The type byte is taken for a string of the set.
    ExpectOn(MachineBuilder().AddRaw(Bytes{5, 0, 0} + EnclosureOf(0x01).Encode(0)),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(MalformedTable, TableOfZerosEnds) {
    ExpectOn(MachineBuilder().AddRaw(Bytes(65535, 0)).AnnounceCount(0), [](const Record& record) {
        EXPECT_STREQ(record.GetMachineBIOSName(), "");
        EXPECT_EQ(record.GetNumSystemEnclosures(), 0);
    });
}

// --- Lengths of 128 and more --------------------------------------------------------------------

TEST(MalformedTable, StepToBeforeTheCopyEndsTheWalk) {
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(Structure(221, 0x80).Text("far behind"))
                 .Add(EnclosureOf(0x02))
                 .AnnounceCount(65535),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(MalformedTable, StepToBeforeTheCopyEndsTheWalkOnceTheBIOSNameIsKnown) {
    ExpectOn(MachineBuilder()
                 .Add(BIOS())
                 .Add(EnclosureOf(0x01))
                 .Add(Structure(221, 0x80).Text("far behind"))
                 .AnnounceCount(65535),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

/// An enclosure and a structure that leads back to it: its length, taken as signed, reaches two
/// zero bytes in front of the table.
MachineBuilder Loop() {
    const Bytes enclosure = EnclosureOf(0x01).Encode(0);
    const auto back = static_cast<uint8_t>(256 - (enclosure.size() + 2));
    return MachineBuilder().AddRaw(enclosure + Bytes{221, back, 1, 0, 0, 0});
}

TEST(MalformedTable, CountBoundsBackwardSteps) {
    ExpectOn(Loop().AnnounceCount(11),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 6); });
    ExpectOn(Loop().AnnounceCount(65535),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 32768); });
}

TEST(MalformedTable, CountOfZeroBoundsBackwardStepsAt65536) {
    ExpectOn(Loop().AnnounceCount(0),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 32768); });
}

TEST(MalformedTable, CountBoundsStepsOfZeroBytes) {
    // Length -1 leads to a zero byte before the processor and from there to it again.
    const Bytes processor = {4, 0xFF};
    ExpectOn(MachineBuilder().AddRaw(processor).AnnounceCount(100),
             [](const Record& record) { EXPECT_EQ(record.GetProcessorSlots(), 100); });
    ExpectOn(MachineBuilder().AddRaw(processor).AnnounceCount(40000),
             [](const Record& record) { EXPECT_EQ(record.GetProcessorSlots(), -25536); });
    ExpectOn(MachineBuilder().AddRaw(processor).AnnounceCount(0),
             [](const Record& record) { EXPECT_EQ(record.GetProcessorSlots(), 0); });
}

TEST(MalformedTable, DumpOfALoopEndsWithinSeconds) {
    // 65,536 structures, half of them enclosures, each shown in a dump.
    const auto start = std::chrono::steady_clock::now();
    const support::Ending ending = support::EndingOnMachine(Loop().AnnounceCount(0), [] {
        EXPECT_NE(std::freopen("/dev/null", "w", stdout), nullptr);
        Record record;
        EXPECT_EQ(record.dump(), 0);
        EXPECT_EQ(record.GetNumSystemEnclosures(), 32768);
    });
    EXPECT_EQ(ending.status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

// --- 8-bit bytes --------------------------------------------------------------------------------

TEST(MalformedTable, EightBitBytesAreText) {
    ExpectOn(MachineBuilder()
                 .Add(Structure(0, 0x18).String(0x05, "\xFF\x80\xE9").String(0x08, "\xFE"))
                 .Add(EnclosureOf(0x01)),
             [](const Record& record) {
                 EXPECT_STREQ(record.GetMachineBIOSName(), "\xFF\x80\xE9");
                 EXPECT_STREQ(record.GetMachineBIOSDate(), "\xFE");
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
             });
}

TEST(MalformedTable, TableOfOnesEnds) {
    ExpectOn(MachineBuilder().AddRaw(Bytes(65535, 0xFF)).AnnounceCount(0),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 0); });
}

}  // namespace
