// The walk over well-formed tables: dispatch, count, end of table, zero bytes between structures.
#include "smbios/OnMachine.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using Record = SERVER_INFORMATION;

// --- Dispatch -----------------------------------------------------------------------------------

TEST(Walk, EveryDecodedTypeReachesItsDecoder) {
    const MachineBuilder machine =
        MachineBuilder()
            .Add(BIOS())
            .Add(Structure(1, 0x1B)
                     .String(0x04, "QEV")
                     .String(0x05, "Arlo 2 -[771200X]-")
                     .Data(0x08, Bytes(16, 0xAB)))
            .Add(Structure(2, 0x0F).String(0x0A, "Bay 14"))
            .Add(EnclosureOf(0x1C))
            .Add(Structure(4, 0x23).String(0x04, "CPU 1").Byte(0x06, 0xB3).Byte(0x18, 0x41))
            .Add(Structure(9, 0x0D).String(0x04, "Slot 1").Byte(0x05, 0x06))
            .Add(Structure(11, 0x05).Text("Diagnostics -[XYZ10AUS]-"))
            .Add(Structure(17, 0x1B).Word(0x0C, 4096).String(0x10, "DIMM 1"));
    ExpectOn(machine, [](const Record& record) {
        EXPECT_STREQ(record.GetMachineBIOSVersion(), "1.07");
        EXPECT_STREQ(record.GetMachineType(), "7712");
        EXPECT_STREQ(record.GetUUID(), "ABABABABABABABABABABABABABABABAB");
        EXPECT_EQ(record.GetBladeSlot(), 14);
        EXPECT_EQ(record.GetSystemEnclosureType(0), 0x1C);
        EXPECT_EQ(record.GetProcessorFamily(0), 0xB3);
        EXPECT_STREQ(record.GetBuses(), "PCI");
        EXPECT_STREQ(record.GetROMDiagnosticsBuild(), "XYZ10AUS");
        EXPECT_EQ(record.GetMemorySizeInMB(), 4096);
    });
}

class SkippedType : public testing::TestWithParam<int> {};

/// Fields and strings that would show if any decoder took them.
Structure Undecoded(int type) {
    Structure structure(static_cast<uint8_t>(type), 0x23);
    for (size_t offset = 0x04; offset < 0x23; ++offset) {
        structure.Byte(offset, 0x41);
    }
    return structure.Text("-[AB1234CUS-1.07]-").Text("-[771200X]-").Text("Diagnostics -[D]-");
}

TEST_P(SkippedType, IsSteppedOverWithoutBeingDecoded) {
    ExpectOn(MachineBuilder().Add(Undecoded(GetParam())).Add(EnclosureOf(0x1C)),
             [](const Record& record) {
                 EXPECT_STREQ(record.GetMachineBIOSName(), "");
                 EXPECT_STREQ(record.GetProductName(), "");
                 EXPECT_EQ(record.GetBladeSlot(), -1);
                 EXPECT_EQ(record.GetProcessorSlots(), 0);
                 EXPECT_STREQ(record.GetBuses(), "");
                 EXPECT_STREQ(record.GetROMDiagnosticsBuild(), "");
                 EXPECT_EQ(record.GetMemorySizeInMB(), 0);
                 ASSERT_EQ(record.GetNumSystemEnclosures(), 1);
                 EXPECT_EQ(record.GetSystemEnclosureType(0), 0x1C);
             });
}

INSTANTIATE_TEST_SUITE_P(Types, SkippedType,
                         testing::Values(5, 6, 7, 8, 10, 12, 13, 14, 15, 16, 18, 19, 32, 126, 128,
                                         129, 131, 145, 221, 255),
                         testing::PrintToStringParamName());

TEST(Walk, MemoryModuleAddsNoMemory) {
    ExpectOn(MachineBuilder()
                 .Add(Structure(6, 0x0C).String(0x04, "DIMM 1").Byte(0x09, 0x0A))
                 .Add(Structure(17, 0x1B).Word(0x0C, 512).String(0x10, "DIMM 1")),
             [](const Record& record) { EXPECT_EQ(record.GetMemorySizeInMB(), 512); });
}

TEST(Walk, StructuresMayComeInAnyOrder) {
    ExpectOn(MachineBuilder().Add(EnclosureOf(0x01)).Add(BIOS()).Add(EnclosureOf(0x02)),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 2);
                 EXPECT_STREQ(record.GetMachineBIOSBuildID(), "AB1234C");
             });
}

// --- Count and end of table
// -----------------------------------------------------------------------

TEST(Walk, CountEndsTheWalkBeforeTheEndOfTable) {
    for (const int count : {1, 2, 3}) {
        ExpectOn(MachineBuilder()
                     .Add(EnclosureOf(0x01))
                     .Add(EnclosureOf(0x02))
                     .Add(EnclosureOf(0x03))
                     .Add(EnclosureOf(0x04))
                     .AnnounceCount(static_cast<uint16_t>(count)),
                 [count](const Record& record) {
                     EXPECT_EQ(record.GetNumSystemEnclosures(), count);
                     EXPECT_EQ(record.GetSystemEnclosureType(count - 1), count);
                 });
    }
}

TEST(Walk, SkippedStructuresCountToo) {
    ExpectOn(MachineBuilder()
                 .Add(Structure(32, 0x0B))
                 .Add(Structure(221, 0x0B))
                 .Add(EnclosureOf(0x01))
                 .Add(EnclosureOf(0x02))
                 .AnnounceCount(3),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(Walk, EndOfTableEndsTheWalkBeforeTheCount) {
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(Structure(127, 4))
                 .Add(EnclosureOf(0x02))
                 .AnnounceCount(100),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(Walk, EndOfTableInFirstPlaceIsSkippedLikeAnyOther) {
    ExpectOn(MachineBuilder().Add(Structure(127, 4)).Add(EnclosureOf(0x02)),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(Walk, FirstStructureIsDecodedWhateverTheCount) {
    ExpectOn(MachineBuilder().Add(EnclosureOf(0x01)).Add(EnclosureOf(0x02)).AnnounceCount(1),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(Walk, CountOfZeroLetsTheCounterGoRound) {
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(EnclosureOf(0x02))
                 .Add(EnclosureOf(0x03))
                 .AnnounceCount(0),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 3); });
}

MachineBuilder MachineOfEnclosures(int count) {
    MachineBuilder machine;
    for (int i = 0; i < count; ++i) {
        machine.Add(EnclosureOf(static_cast<uint8_t>(i % 100)));
    }
    return machine;
}

TEST(Walk, CountHasSixteenBits) {
    ExpectOn(MachineOfEnclosures(600).AnnounceCount(0x0201), [](const Record& record) {
        EXPECT_EQ(record.GetNumSystemEnclosures(), 513);
        EXPECT_EQ(record.GetSystemEnclosureType(512), 12);
    });
}

TEST(Walk, MoreThan256ProcessorsAreKept) {
    MachineBuilder machine;
    for (int i = 0; i < 400; ++i) {
        machine.Add(Structure(4, 0x23)
                        .String(0x04, "CPU")
                        .Byte(0x06, static_cast<uint8_t>(i))
                        .Word(0x16, static_cast<uint16_t>(1000 + i))
                        .Byte(0x18, 0x41));
    }
    ExpectOn(machine, [](const Record& record) {
        EXPECT_EQ(record.GetProcessorSlots(), 400);
        ASSERT_EQ(record.GetActiveProcessors(), 400);
        EXPECT_EQ(record.GetProcessorFamily(399), 399 - 256);
        EXPECT_EQ(record.GetProcessorSpeed(399), 1399);
    });
}

// --- The zero-byte rule -------------------------------------------------------------------------

TEST(Walk, EmptySetsAreSteppedOverOnceTheBIOSNameIsKnown) {
    // Without strings the decoders stop on the second NUL; skipping steps over both.
    ExpectOn(MachineBuilder()
                 .Add(BIOS())
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x01))
                 .Add(Structure(4, 0x23).Byte(0x18, 0x41))
                 .Add(Structure(9, 0x0D).Byte(0x05, 0x06))
                 .Add(Structure(11, 0x05))
                 .Add(Structure(2, 0x0F))
                 .Add(Structure(1, 0x1B))
                 .Add(Structure(17, 0x1B).Word(0x0C, 512))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x02)),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 2);
                 EXPECT_EQ(record.GetActiveProcessors(), 1);
                 EXPECT_STREQ(record.GetBuses(), "PCI");
                 EXPECT_EQ(record.GetMemorySizeInMB(), 512);
             });
}

TEST(Walk, BIOSNameOfOneCharacterIsOneToo) {
    ExpectOn(MachineBuilder()
                 .Add(Structure(0, 0x18).String(0x05, "X"))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x01))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x02)),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 2); });
}

TEST(Walk, AllConsecutiveZeroBytesAreSteppedOver) {
    Bytes table = BIOS().Encode(0);
    table.insert(table.end(), 50, 0);
    for (const Bytes& bytes : {EnclosureOf(0x01).Encode(1), Structure(127, 4).Encode(2)}) {
        table.insert(table.end(), bytes.begin(), bytes.end());
    }
    ExpectOn(MachineBuilder().AddRaw(table).AnnounceCount(3), [](const Record& record) {
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
        EXPECT_EQ(record.GetSystemEnclosureType(0), 1);
    });
}

TEST(Walk, SteppedOverZeroBytesDoNotCount) {
    ExpectOn(MachineBuilder()
                 .Add(BIOS())
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x01))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x02))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x03))
                 .AnnounceCount(3),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 2); });
}

TEST(Walk, BeforeTheBIOSNameIsKnownTheSecondNulIsWalkedAsAStructure) {
    // The NUL is taken for BIOS information of length 3, the type of the enclosure behind it.
    ExpectOn(MachineBuilder()
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x17))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x17))
                 .AnnounceCount(2),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
                 EXPECT_STREQ(record.GetMachineBIOSName(), "");
             });
}

TEST(Walk, BIOSInformationWithoutANameDoesNotStartTheZeroByteRule) {
    // Its vendor alone has a string. Structures with strings are walked all the same.
    ExpectOn(MachineBuilder()
                 .Add(Structure(0, 0x18).String(0x04, "QEV"))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x17))
                 .Add(Structure(3, 0x0D).Byte(0x05, 0x17))
                 .AnnounceCount(3),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 1); });
}

TEST(Walk, FurtherBIOSInformationLosesItsTypeToTheZeroByteRule) {
    ExpectOn(MachineBuilder().Add(BIOS()).Add(
                 Structure(0, 0x18).String(0x04, "QEV").String(0x05, "OTHER")),
             [](const Record& record) {
                 EXPECT_STREQ(record.GetMachineBIOSName(), "-[AB1234CUS-1.07]-");
             });
}

}  // namespace
