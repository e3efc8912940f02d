// What --sanitize finds of a machine's identity, and what it leaves alone, table by table.
#include <gtest/gtest.h>

#include <algorithm>

#include "machine/MachineBuilder.h"
#include "machine/Sanitize.h"
#include "machine/StructureWalk.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;

const Bytes kUuid = {0x5A, 0x0E, 0x2C, 0x91, 0x77, 0x12, 0x40, 0x0B,
                     0x8E, 0x31, 0x00, 0x1A, 0x64, 0xC3, 0x7D, 0x02};
const Bytes kUuidInTheOtherOrder = {0x91, 0x2C, 0x0E, 0x5A, 0x12, 0x77, 0x0B, 0x40,
                                    0x8E, 0x31, 0x00, 0x1A, 0x64, 0xC3, 0x7D, 0x02};

/// A system with its manufacturer, product name, serial number and UUID.
Structure System(const std::string& serialNumber) {
    return Structure(1, 0x1B)
        .String(0x04, "QEV")
        .String(0x05, "Arlo 2 -[771200X]-")
        .String(0x07, serialNumber)
        .Data(0x08, kUuid);
}

/// The table without its identity. Each structure must be where it was.
std::string Sanitized(const MachineBuilder& machine) {
    machine::FirmwareTables tables;
    tables.table = machine.EncodeTable();
    const auto before = machine::WalkStructures(tables.table).structures;
    const size_t size = tables.table.size();
    machine::Sanitize(tables);
    const auto after = machine::WalkStructures(tables.table).structures;
    EXPECT_EQ(tables.table.size(), size);
    EXPECT_TRUE(std::equal(
        before.begin(), before.end(), after.begin(), after.end(), [](const auto& a, const auto& b) {
            return a.offset == b.offset && a.strings == b.strings && a.end == b.end;
        }));
    return {tables.table.begin(), tables.table.end()};
}

bool Holds(const std::string& table, const std::string& text) {
    return table.find(text) != std::string::npos;
}

bool Holds(const std::string& table, const Bytes& bytes) {
    return Holds(table, std::string(bytes.begin(), bytes.end()));
}

/// The one text that a maker's own structure holds, behind a system with that serial number.
std::string TextBehind(const std::string& serialNumber, const std::string& text) {
    const std::string table =
        Sanitized(MachineBuilder().Add(System(serialNumber)).Add(Structure(11, 5).Text(text)));
    const size_t end = table.size() - 8;  // two NULs close the strings, six bytes the table
    return table.substr(end - text.size(), text.size());
}

TEST(Sanitize, LongerSecretsAreReplacedFirst) {
    const std::string table = Sanitized(MachineBuilder()
                                            .Add(Structure(2, 0x0F).String(0x07, "12345"))
                                            .Add(System("1234567890"))
                                            .Add(Structure(11, 5).Text("Tag 1234567890 of 12345")));
    EXPECT_TRUE(Holds(table, "Tag XXXXXXXXXX of XXXXX"));
}

TEST(Sanitize, SerialNumberIsFoundInsideOtherWords) {
    EXPECT_EQ(TextBehind("KQ12345", "SNkq12345A"), "SNXXXXXXXA");
}

TEST(Sanitize, SerialNumberWithoutADigitIsFoundAsAWord) {
    EXPECT_EQ(TextBehind("GHJKLMN", "1[ghjklmn]"), "1[XXXXXXX]");
    EXPECT_EQ(TextBehind("GHJKLMN", "GHJKLMNO AGHJKLMN"), "GHJKLMNO AGHJKLMN");
}

TEST(Sanitize, ShortSerialNumberIsFoundAsAWord) {
    EXPECT_EQ(TextBehind("4711", "asset=4711, 4711"), "asset=XXXX, XXXX");
    EXPECT_EQ(TextBehind("4711", "84711 47110"), "84711 47110");
}

TEST(Sanitize, TextsOfOneOrTwoCharactersAreNotHuntedFor) {
    EXPECT_EQ(TextBehind("A1", "Slot A1"), "Slot A1");
    EXPECT_EQ(TextBehind("A12", "Slot A12"), "Slot XXX");
}

TEST(Sanitize, WordsOfTheMachinesNamesAreNotHuntedFor) {
    const std::string table =
        Sanitized(MachineBuilder()
                      .Add(System("QEV"))
                      .Add(Structure(2, 0x0F).String(0x0A, "Bay 114").String(0x08, "114"))
                      .Add(Structure(4, 0x30).String(0x07, "QEV")));
    EXPECT_TRUE(Holds(table, "Bay 114"));
    EXPECT_EQ(std::count(table.begin(), table.end(), 'Q'), 2);  // but its serial number is gone
}

TEST(Sanitize, SerialNumberThatIsPartOfANameGoesAllTheSame) {
    const std::string table = Sanitized(
        MachineBuilder().Add(System("KQ12345")).Add(Structure(2, 0x0F).String(0x0A, "KQ12345-2")));
    EXPECT_TRUE(Holds(table, "XXXXXXX-2"));
}

TEST(Sanitize, WhatFirmwareWritesForNothingIsNotHuntedFor) {
    for (const char* filler :
         {"None", "To Be Filled By O.E.M.", "UNKNOWN", "00000", "Default string"}) {
        const std::string text = "It says: " + std::string(filler) + ".";
        EXPECT_EQ(TextBehind(filler, text), text);
    }
}

TEST(Sanitize, BlanksAroundASecretAreNoneOfIt) {
    EXPECT_EQ(TextBehind("  KQ12345   ", "tag=KQ12345;"), "tag=XXXXXXX;");
}

TEST(Sanitize, CopiesInTheStringsOfEveryTypeAreReplaced) {
    for (const uint8_t type : Bytes{0, 2, 3, 4, 9, 12, 16, 41, 45, 127}) {
        const std::string table =
            Sanitized(MachineBuilder()
                          .Add(System("KQ12345"))
                          .Add(Structure(type, 0x30).Text("Field").Text("Jumper KQ12345")));
        EXPECT_FALSE(Holds(table, "KQ12345")) << int{type};
    }
}

TEST(Sanitize, CopiesInTheFieldsOfTheMakersOwnStructuresAreReplaced) {
    const Bytes text = {'k', 'Q', '1', '2', '3', '4', '5'};
    const std::string table = Sanitized(
        MachineBuilder().Add(System("KQ12345")).Add(Structure(0x80, 0x10).Data(0x06, text)));
    EXPECT_FALSE(Holds(table, text));
    EXPECT_TRUE(Holds(table, std::string("\0\0XXXXXXX\0", 10)));
}

TEST(Sanitize, NumbersInTheStandardsFieldsAreNoTexts) {
    const Bytes number = {'4', '7', '1', '1'};
    EXPECT_TRUE(Holds(
        Sanitized(MachineBuilder().Add(System("4711")).Add(Structure(9, 0x11).Data(0x0C, number))),
        number));
}

TEST(Sanitize, UuidIsReplacedInEitherOrderOfItsBytes) {
    for (const Bytes& uuid : {kUuid, kUuidInTheOtherOrder}) {
        for (const uint8_t type : Bytes{43, 0xDD}) {
            const std::string table = Sanitized(MachineBuilder()
                                                    .Add(Structure(type, 0x20).Data(0x08, uuid))
                                                    .Add(System("KQ12345")));
            EXPECT_FALSE(Holds(table, uuid));
        }
    }
}

TEST(Sanitize, UuidThatIsCutShortByItsStructureIsReplacedAsFarAsItGoes) {
    const Bytes half(kUuid.begin(), kUuid.begin() + 8);
    EXPECT_FALSE(Holds(Sanitized(MachineBuilder().Add(Structure(1, 0x10).Data(0x08, half))), half));
}

TEST(Sanitize, LabelOfAUuidMayBeWrittenInAnyCase) {
    EXPECT_EQ(TextBehind("KQ12345", "-[uuid:77AAbb-00]-"), "-[uuid:000000-00]-");
    EXPECT_EQ(TextBehind("KQ12345", "Uuid: 77AA"), "Uuid: 0000");
}

TEST(Sanitize, UuidBehindALabelIsHuntedForWithoutIt) {
    EXPECT_EQ(TextBehind("-[UUID:00112233445566778899AABBCCDDEEFF]-",
                         "Chassis 00112233445566778899aabbccddeeff"),
              "Chassis XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX");
}

TEST(Sanitize, WhateverHasTheShapeOfAUuidIsReplaced) {
    EXPECT_EQ(TextBehind("KQ12345", "{9f3c0d5e-6a7b-41c2-b8d0-e1f203142536}"),
              "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}");
    EXPECT_EQ(TextBehind("KQ12345", "9f3c0d5e-6a7b-41c2-b8d0-e1f20314253"),
              "9f3c0d5e-6a7b-41c2-b8d0-e1f20314253");
}

TEST(Sanitize, InactiveStructuresAreBlanked) {
    const std::string table = Sanitized(MachineBuilder()
                                            .Add(System("KQ12345"))
                                            .Add(Structure(126, 0x1C)
                                                     .Data(0x08, {'S', 'E', 'C', 'R', 'E', 'T'})
                                                     .String(0x18, "SNMEM555")
                                                     .String(0x19, "AT"))
                                            .Add(Structure(17, 0x1C)));
    EXPECT_FALSE(Holds(table, "SECRET"));
    EXPECT_FALSE(Holds(table, "SNMEM555"));
    EXPECT_TRUE(Holds(table, std::string("XXXXXXXX\0XX\0\0", 13)));
}

TEST(Sanitize, StringThatNoFieldNamesIsHiddenWhereTheSerialNumbersFieldIsMissing) {
    const std::string table = Sanitized(MachineBuilder().Add(
        Structure(1, 7).String(0x04, "QEV").String(0x05, "Arlo").Text("KQ12345")));
    EXPECT_TRUE(Holds(table, std::string("QEV\0Arlo\0XXXXXXX\0", 17)));
}

// --- PCI Express --------------------------------------------------------------------------------

Bytes Configuration() {
    return Bytes(4096);
}

/// A capability of the extended list: its number, where the next one is, what it holds.
void Put(Bytes& configuration, size_t place, uint8_t capability, size_t next,
         const std::string& data) {
    configuration[place] = capability;
    configuration[place + 2] = static_cast<uint8_t>(1 | next << 4);
    configuration[place + 3] = static_cast<uint8_t>(next >> 4);
    std::copy(data.begin(), data.end(),
              configuration.begin() + static_cast<std::ptrdiff_t>(place + 4));
}

TEST(SanitizeConfiguration, ListThatLeadsBackwardsIsFollowed) {
    Bytes configuration = Configuration();
    Put(configuration, 0x100, 1, 0x300, "");
    Put(configuration, 0x300, 0x0B, 0x140, "");
    Put(configuration, 0x140, 3, 0, "SECRETSN");
    machine::SanitizeConfiguration(configuration);
    EXPECT_EQ(Bytes(configuration.begin() + 0x144, configuration.begin() + 0x14C), Bytes(8));
    EXPECT_EQ(configuration[0x140], 3);
}

TEST(SanitizeConfiguration, ListThatGoesRoundEnds) {
    Bytes configuration = Configuration();
    Put(configuration, 0x100, 1, 0x200, "");
    Put(configuration, 0x200, 3, 0x100, "SECRETSN");
    machine::SanitizeConfiguration(configuration);
    EXPECT_EQ(configuration[0x204], 0);
}

TEST(SanitizeConfiguration, SerialNumberIsBlankedAsFarAsTheFileGoes) {
    Bytes configuration = Configuration();
    Put(configuration, 0x100, 3, 0, "SECRETSN");
    configuration.resize(0x108);
    machine::SanitizeConfiguration(configuration);
    EXPECT_EQ(configuration.back(), 0);
    configuration.resize(0x102);
    machine::SanitizeConfiguration(configuration);
    EXPECT_EQ(configuration.size(), 0x102U);
}

}  // namespace
