// What the report must say of the guests whose firmware was told what to say.
#include "vm/Answers.h"

namespace {

// The report's lines before the PCI section.
std::string SystemPart(const std::string& report) {
    return report.substr(0, report.find("\n\n[PCI]\n") + 1);
}

class DressedServer : public vm::OnGuest {};

TEST_P(DressedServer, ReportTellsWhatTheFirmwareSays) {
    // The emulator's releases differ in this one fact.
    const std::string family = TheReport().Value("System_Processor_Family.0");
    EXPECT_EQ(SystemPart(Ran("report-ini").out),
              "[System]\n"
              "Machine_Type = 7712\n"
              "Model_Number = 00X\n"
              "Serial_Number = KQ12345\n"
              "Product_Name = Arlo 2 \n"
              "BIOS_Version = 1.07\n"
              "BIOS_Build_Level = AB1234C\n"
              "BIOS_Date = 03/15/2024\n"
              "System_Manufacturer = QEV\n"
              "BIOS_Language = US\n"
              "Number_Of_Enclosures = 1\n"
              "Enclosure_Type.0 = 01\n"
              "Processor_X64 = TRUE\n"
              "Processor_Slots = 2\n"
              "Active_Processors = 2\n"
              "Processor_Family.0 = " +
                  family +
                  "\n"
                  "Processor_Speed_MHz.0 = 2933\n"
                  "Processor_Family.1 = " +
                  family +
                  "\n"
                  "Processor_Speed_MHz.1 = 2933\n"
                  "Total_Enabled_Memory_Mb = 3072\n"
                  "ROM_Diagnostics_Build_Level = XYZ10AUS\n"
                  "TESK_Build_Level = TSK11BUS-2.30\n"
                  "KORU_Build_Level = KRU12C\n"
                  "System_UUID = 78563412BC9AF0DE1122334455667788\n"
                  "Blade_Slot = 14\n"
                  "Blade_Chassis_UUID = 00112233445566778899AABBCCDDEEFF\n");
}

TEST_P(DressedServer, IsOfTheMakersFamily) {
    EXPECT_EQ(Ran("server-family").status, 0);
    EXPECT_EQ(Ran("server-family").out, "");
}

TEST_P(DressedServer, MatchesItsOwnTypeAlone) {
    EXPECT_EQ(Ran("type-7712").status, 1);
    EXPECT_EQ(Ran("type-7712").out, "");
    EXPECT_EQ(Ran("type-7710").status, 0);
    EXPECT_EQ(Ran("type-7709").status, 0);
    EXPECT_EQ(Ran("type-Stan").status, 0);
    EXPECT_EQ(Ran("type-XXXX").status, 0);
}

TEST_P(DressedServer, SaysWhatDmidecodeSaysOfTheSameStrings) {
    const vm::SmbiosStructures structures = Dmidecode();
    EXPECT_EQ(vm::OfType(structures, 0).at(0).Field("Version"), "-[AB1234CUS-1.07]-");
    EXPECT_EQ(vm::OfType(structures, 1).at(0).Field("Product Name"), "Arlo 2 -[771200X]-");
    EXPECT_EQ(vm::OfType(structures, 2).at(0).Field("Location In Chassis"), "Bay 14");
    EXPECT_EQ(vm::OfType(structures, 2).at(0).Field("Manufacturer"), "QEV, board works");
    EXPECT_EQ(vm::OfType(structures, 3).at(0).Field("Serial Number"),
              "-[UUID:00112233445566778899AABBCCDDEEFF]-");
}

INSTANTIATE_TEST_SUITE_P(Guest, DressedServer, vm::EveryDressedGuest(), vm::GuestName);

class HighTable : public vm::OnGuest {};

// An address that is negative as a signed 32-bit number; the report above came from there.
TEST_P(HighTable, StructureTableLiesAbove2GiB) {
    EXPECT_GE(std::stoul(PeerSaysInOneLine("table-address"), nullptr, 16), 0x80000000UL);
}

INSTANTIATE_TEST_SUITE_P(Guest, HighTable, testing::Values("dressed"), vm::GuestName);

class AssembledServer : public vm::OnGuest {};

TEST_P(AssembledServer, ReportTellsWhatTheStructuresSay) {
    EXPECT_EQ(SystemPart(Ran("report-ini").out),
              "[System]\n"
              "Machine_Type = 7709\n"
              "Model_Number = \n"
              "Serial_Number = SN-0042\n"
              "Product_Name = Birch 4 \n"
              "BIOS_Version = 2.10 trial\n"
              "BIOS_Build_Level = XA94B2C\n"
              "BIOS_Date = 11/05/2019\n"
              "System_Manufacturer = Works of QEV in Corvina\n"
              "BIOS_Language = DE\n"
              "Number_Of_Enclosures = 3\n"
              "Enclosure_Type.0 = 17\n"
              "Enclosure_Type.1 = 17\n"
              "Enclosure_Type.2 = 1C\n"
              "Processor_X64 = TRUE\n"
              "Processor_Slots = 4\n"
              "Active_Processors = 3\n"
              "Processor_Family.0 = 179\n"
              "Processor_Speed_MHz.0 = 2933\n"
              "Processor_Family.1 = 254\n"
              "Processor_Speed_MHz.1 = 3600\n"
              "Processor_Family.2 = 179\n"
              "Processor_Speed_MHz.2 = -1\n"
              "Total_Enabled_Memory_Mb = 33311\n"
              "ROM_Diagnostics_Build_Level = DGN22A\n"
              "KORU_Build_Level = KRU9\n"
              "System_UUID = \n"
              "Blade_Slot = 07\n"
              "Blade_Chassis_UUID = FEDCBA98765432100123456789ABCDEF\n");
}

TEST_P(AssembledServer, IsOfTheFamilyByALongerMakersName) {
    EXPECT_EQ(Ran("server-family").status, 0);
}

TEST_P(AssembledServer, MatchesTheTypeThatItsProductNameGives) {
    EXPECT_EQ(Ran("type-7709").status, 1);
    EXPECT_EQ(Ran("type-7712").status, 0);
    EXPECT_EQ(Ran("type-XXXX").status, 0);
}

INSTANTIATE_TEST_SUITE_P(Guest, AssembledServer, testing::Values("assembled"), vm::GuestName);

// The emulator's own firmware: no maker's codes, no board, no UUID.
class PlainMachine : public vm::OnGuest {};

TEST_P(PlainMachine, TypeAndModelAreCutFromTheProductName) {
    EXPECT_TRUE(TheReport().Value("System_Product_Name").starts_with("Standard PC"));
    EXPECT_EQ(TheReport().Value("System_Machine_Type"), "Stan");
    EXPECT_EQ(TheReport().Value("System_Model_Number"), "dar");
}

TEST_P(PlainMachine, WhatTheFirmwareDoesNotSayIsLeftEmpty) {
    const vm::Report report = TheReport();
    EXPECT_EQ(report.Value("System_Serial_Number"), "");
    EXPECT_EQ(report.Value("System_ROM_Diagnostics_Build_Level"), "");
    EXPECT_EQ(report.Value("System_System_UUID"), "");
    EXPECT_EQ(report.Value("System_Blade_Slot"), "");
    EXPECT_EQ(report.Value("System_Blade_Chassis_UUID"), "");
}

TEST_P(PlainMachine, ServiceProcessorsAreLeftOutWhenUnknown) {
    EXPECT_FALSE(TheReport().Has("System_TESK_Build_Level"));
    EXPECT_FALSE(TheReport().Has("System_KORU_Build_Level"));
}

TEST_P(PlainMachine, IsOfNoFamily) {
    EXPECT_EQ(Ran("server-family").status, 1);
    EXPECT_EQ(Ran("server-family").out, "");
}

TEST_P(PlainMachine, MatchesTheTypeCutFromTheProductName) {
    EXPECT_EQ(Ran("type-Stan").status, 1);
    EXPECT_EQ(Ran("type-7712").status, 0);
    EXPECT_EQ(Ran("type-XXXX").status, 0);
}

INSTANTIATE_TEST_SUITE_P(Guest, PlainMachine, testing::Values("plain"), vm::GuestName);

}  // namespace
