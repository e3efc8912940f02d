// The search for the entry point in the BIOS area.
#include <algorithm>
#include <string>

#include "smbios/OnMachine.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using Record = SERVER_INFORMATION;

constexpr uint32_t kAreaStart = 0xF0000;

/// One enclosure, whose type tells which table was found.
MachineBuilder MachineOf(uint8_t type) {
    return MachineBuilder().Add(EnclosureOf(type));
}

void ExpectFound(const MachineBuilder& machine, int type = 0x17) {
    ExpectOn(machine, [type](const Record& record) {
        EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
        EXPECT_EQ(record.GetSystemEnclosureType(0), type);
    });
}

/// An entry point of its own for a table: "_SM_", or what takes its place.
Bytes EntryPoint(const std::string& anchor, uint32_t table) {
    Bytes bytes(0x1F);
    std::copy(anchor.begin(), anchor.end(), bytes.begin());
    bytes[0x16] = 0x40;
    for (size_t i = 0; i < 4; ++i) {
        bytes[0x18 + i] = static_cast<uint8_t>(table >> (8 * i));
    }
    bytes[0x1C] = 1;
    return bytes;
}

Bytes LegacyEntryPoint(const std::string& anchor, uint32_t table) {
    Bytes bytes = EntryPoint(std::string(16, ' ') + anchor, table);
    bytes.erase(bytes.begin(), bytes.begin() + 16);
    return bytes;
}

// --- Where it may lie ---------------------------------------------------------------------------

TEST(EntryPoint, IsFoundOnEverySixteenByteBoundary) {
    for (const uint32_t address : {0xF0000u, 0xF0010u, 0xF59F0u, 0xF8000u, 0xFFFD0u}) {
        ExpectFound(MachineOf(0x17).EntryPointAt(address));
    }
}

TEST(EntryPoint, LastOneWhoseFieldsFitIsFound) {
    ExpectFound(MachineOf(0x17).EntryPointAt(0xFFFE0));
}

TEST(EntryPoint, OneInTheLastStepIsNone) {
    // Its fields would lie behind the area.
    ExpectNoTableOn(MachineOf(0x17).NoEntryPoint().Poke(0xFFFF0, EntryPoint("_SM_", 0xE0000)));
}

TEST(EntryPoint, IsNotFoundBetweenTheSteps) {
    for (const uint32_t shift : {1u, 4u, 8u, 15u}) {
        ExpectNoTableOn(MachineOf(0x17).EntryPointAt(0xF59F0 + shift));
    }
}

TEST(EntryPoint, IsNotFoundOutsideTheArea) {
    ExpectNoTableOn(MachineOf(0x17).EntryPointAt(0xEFFF0));
    ExpectNoTableOn(MachineOf(0x17).EntryPointAt(0x100000));
}

TEST(EntryPoint, MachineWithoutOneHasNoTable) {
    ExpectNoTableOn(MachineOf(0x17).NoEntryPoint());
}

// --- Its fields ---------------------------------------------------------------------------------

TEST(EntryPoint, ChecksumsAndVersionsAreNotVerified) {
    ExpectFound(MachineOf(0x17).Poke(0xF59F4, Bytes(12, 0xFF)).Poke(0xF5A05, Bytes{0xFF}));
    ExpectFound(MachineOf(0x17).Poke(0xF5A0E, Bytes{0xFF}));
}

TEST(EntryPoint, IntermediateAnchorIsNotNeeded) {
    ExpectFound(MachineOf(0x17).Poke(0xF5A00, "XXXXX"));
}

TEST(EntryPoint, FirstOneInTheAreaCounts) {
    ExpectFound(MachineOf(0x17)
                    .EntryPointAt(0xF5000)
                    .Poke(0xF6000, EntryPoint("_SM_", 0xD0000))
                    .Poke(0xF4008, EntryPoint("_SM_", 0xD0000)));
}

TEST(EntryPoint, LegacyOneBeforeItCountsFirst) {
    ExpectFound(MachineOf(0x17)
                    .EntryPointAt(0xF5000)
                    .Poke(0xD0000, EnclosureOf(0x0A).Encode(0))
                    .Poke(0xF4000, LegacyEntryPoint("_DMI_", 0xD0000)),
                0x0A);
}

// --- The legacy kind ----------------------------------------------------------------------------

TEST(LegacyEntryPoint, YieldsAddressLengthAndCount) {
    ExpectFound(MachineOf(0x17).LegacyEntryPoint());
}

TEST(LegacyEntryPoint, CountIsItsOwn) {
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(EnclosureOf(0x02))
                 .Add(EnclosureOf(0x03))
                 .LegacyEntryPoint()
                 .AnnounceCount(2),
             [](const Record& record) { EXPECT_EQ(record.GetNumSystemEnclosures(), 2); });
}

TEST(LegacyEntryPoint, LengthIsItsOwn) {
    ExpectOn(MachineBuilder()
                 .Add(EnclosureOf(0x01))
                 .Add(EnclosureOf(0x02))
                 .LegacyEntryPoint()
                 .AnnounceLength(0),
             [](const Record& record) {
                 EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
                 EXPECT_EQ(record.GetSystemEnclosureType(0), 0);
             });
}

TEST(LegacyEntryPoint, IsFoundInTheSecondStepAndInTheLast) {
    ExpectFound(MachineOf(0x17).LegacyEntryPoint().EntryPointAt(0xF0010));
    ExpectFound(MachineOf(0x17).LegacyEntryPoint().EntryPointAt(0xFFFF0));
}

TEST(LegacyEntryPoint, OneAtTheFirstPositionIsNone) {
    ExpectNoTableOn(MachineOf(0x17).LegacyEntryPoint().EntryPointAt(kAreaStart));
}

TEST(LegacyEntryPoint, SearchGoesOnBehindOneAtTheFirstPosition) {
    ExpectFound(MachineOf(0x17).Poke(kAreaStart, LegacyEntryPoint("_DMI_", 0xD0000)));
    ExpectFound(
        MachineOf(0x17).LegacyEntryPoint().Poke(kAreaStart, LegacyEntryPoint("_DMI_", 0xD0000)));
}

TEST(LegacyEntryPoint, IsNotFoundBetweenTheSteps) {
    ExpectNoTableOn(MachineOf(0x17).LegacyEntryPoint().EntryPointAt(0xF59F8));
}

TEST(LegacyEntryPoint, NeedsTheFifthCharacterOfItsAnchor) {
    for (const char* anchor : {"_DMI", "_DMIX", "_DMI2_", "_DMI "}) {
        ExpectNoTableOn(
            MachineOf(0x17).NoEntryPoint().Poke(0xF4000, LegacyEntryPoint(anchor, 0xE0000)));
    }
}

// --- What looks like one ------------------------------------------------------------------------

TEST(Decoy, OtherAnchorsAreNone) {
    for (const char* anchor :
         {"_SM3_", "_SM", "_sm_", "_SM-", " _SM_", "$SM_", "_32_", "RSD PTR "}) {
        ExpectNoTableOn(MachineOf(0x17).NoEntryPoint().Poke(0xF4000, EntryPoint(anchor, 0xE0000)));
    }
}

TEST(Decoy, SearchGoesOnBehindThem) {
    ExpectFound(MachineOf(0x17)
                    .Poke(kAreaStart, EntryPoint("_SM3_", 0xD0000))
                    .Poke(0xF1004, EntryPoint("_SM_", 0xD0000))
                    .Poke(0xF2000, LegacyEntryPoint("_DMI", 0xD0000))
                    .Poke(0xF3008, LegacyEntryPoint("_DMI_", 0xD0000)));
}

TEST(Decoy, AnchorAcrossTheEndOfTheAreaIsNone) {
    ExpectNoTableOn(MachineOf(0x17).NoEntryPoint().Poke(0xFFFFC, "_SM_").Poke(0xFFFFB, "_DMI_"));
}

}  // namespace
