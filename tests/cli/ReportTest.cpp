// The report in both layouts, whole and line by line.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/Program.h"

namespace {

using machine::MachineBuilder;
using machine::PciFunction;
using machine::Structure;
using support::Arlo2Folder;
using support::Result;
using support::SystallyOn;

std::string Golden(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(std::string(SYSTALLY_GOLDEN) + "/" + name).rdbuf();
    return text.str();
}

/// The report of a machine, which must be complete.
std::string Report(const MachineBuilder& machine, const std::string& layout = "/i") {
    const Result result = SystallyOn(machine, {layout});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    return result.output;
}

void ExpectLines(const std::string& report, const std::string& lines) {
    EXPECT_NE(("\n" + report).find("\n" + lines), std::string::npos)
        << "no lines " << lines << "in:\n"
        << report;
}

void ExpectNoKey(const std::string& report, const std::string& key) {
    EXPECT_EQ(report.find(key), std::string::npos) << report;
}

constexpr char kEmptySystem[] =
    "[System]\n"
    "Machine_Type = XXXX\n"
    "Model_Number = \n"
    "Serial_Number = \n"
    "Product_Name = \n"
    "BIOS_Version = \n"
    "BIOS_Build_Level = \n"
    "BIOS_Date = \n"
    "System_Manufacturer = \n"
    "BIOS_Language = \n"
    "Number_Of_Enclosures = 0\n"
    "Processor_X64 = TRUE\n"
    "Processor_Slots = 0\n"
    "Active_Processors = 0\n"
    "Total_Enabled_Memory_Mb = 0\n"
    "ROM_Diagnostics_Build_Level = \n"
    "System_UUID = \n"
    "Blade_Slot = \n"
    "Blade_Chassis_UUID = \n";

TEST(Report, SampleServerInIniLayout) {
    const Result result = SystallyOn(Arlo2Folder(), {"/i"});
    EXPECT_EQ(result.output, Golden("arlo2.ini"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(Report, SampleServerInPropertiesLayout) {
    const Result result = SystallyOn(Arlo2Folder(), {"/p"});
    EXPECT_EQ(result.output, Golden("arlo2.properties"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(Report, FirmwareThatSaysNothingLeavesValuesEmpty) {
    EXPECT_EQ(Report(MachineBuilder()),
              std::string(kEmptySystem) + "\n[PCI]\nTotal_Number_Of_Devices = 0\n");
}

TEST(Report, PropertiesLayoutHasPrefixesAndNoSectionLines) {
    EXPECT_EQ(Report(MachineBuilder().Add(PciFunction{}), "/p"),
              "System_Machine_Type = XXXX\n"
              "System_Model_Number = \n"
              "System_Serial_Number = \n"
              "System_Product_Name = \n"
              "System_BIOS_Version = \n"
              "System_BIOS_Build_Level = \n"
              "System_BIOS_Date = \n"
              "System_System_Manufacturer = \n"
              "System_BIOS_Language = \n"
              "System_Number_Of_Enclosures = 0\n"
              "System_Processor_X64 = TRUE\n"
              "System_Processor_Slots = 0\n"
              "System_Active_Processors = 0\n"
              "System_Total_Enabled_Memory_Mb = 0\n"
              "System_ROM_Diagnostics_Build_Level = \n"
              "System_System_UUID = \n"
              "System_Blade_Slot = \n"
              "System_Blade_Chassis_UUID = \n"
              "PCI_Total_Number_Of_Devices = 1\n"
              "PCI_Bus_Number.0 = 0\n"
              "PCI_Device_Number.0 = 0\n"
              "PCI_Function_Number.0 = 0\n"
              "PCI_Class_Code.0 = 000000\n"
              "PCI_Revision.0 = 00\n"
              "PCI_Header_Type.0 = 00\n"
              "PCI_Vendor_ID.0 = 0000\n"
              "PCI_Device_ID.0 = 0000\n"
              "PCI_Subvendor_ID.0 = 0000\n"
              "PCI_Subdevice_ID.0 = 0000\n");
}

TEST(Report, MachineTypeComesFromTheModelTableWhenTheFirmwareGivesNone) {
    ExpectLines(Report(MachineBuilder().Add(
                    Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Birch -[ ]-"))),
                "Machine_Type = 7709\nModel_Number = \n");
}

TEST(Report, EnclosureTypesAreTwoHexadecimalDigits) {
    ExpectLines(Report(MachineBuilder()
                           .Add(Structure(3, 0x11).String(0x04, "QEV").Byte(0x05, 17))
                           .Add(Structure(3, 0x11).String(0x04, "QEV").Byte(0x05, 0x80 | 3))),
                "Number_Of_Enclosures = 2\nEnclosure_Type.0 = 11\nEnclosure_Type.1 = 03\n");
}

TEST(Report, EveryEnclosureIsReportedBeyondThirtyTwo) {
    MachineBuilder machine;
    for (int i = 0; i < 40; ++i) {
        machine.Add(Structure(3, 0x11).String(0x04, "QEV").Byte(0x05, 0x17));
    }
    const std::string report = Report(machine);
    ExpectLines(report, "Number_Of_Enclosures = 40\n");
    ExpectLines(report, "Enclosure_Type.39 = 17\nProcessor_X64 = TRUE\n");
}

TEST(Report, ProcessorLinesAlternateAndCountTheActiveOnes) {
    MachineBuilder machine;
    machine.Add(
        Structure(4, 0x20).String(0x04, "CPU").Byte(0x06, 0xB3).Word(0x16, 2933).Byte(0x18, 0x41));
    machine.Add(
        Structure(4, 0x20).String(0x04, "CPU").Byte(0x06, 0x02).Word(0x16, 0).Byte(0x18, 0x00));
    machine.Add(
        Structure(4, 0x20).String(0x04, "CPU").Byte(0x06, 0x06).Word(0x16, 1200).Byte(0x18, 0x40));
    ExpectLines(Report(machine),
                "Processor_Slots = 3\n"
                "Active_Processors = 2\n"
                "Processor_Family.0 = 179\n"
                "Processor_Speed_MHz.0 = 2933\n"
                "Processor_Family.1 = 6\n"
                "Processor_Speed_MHz.1 = 1200\n"
                "Total_Enabled_Memory_Mb = 0\n");
}

TEST(Report, ProcessorSpeedIsPrintedAsASignedNumber) {
    ExpectLines(Report(MachineBuilder().Add(Structure(4, 0x20)
                                                .String(0x04, "CPU")
                                                .Byte(0x06, 1)
                                                .Word(0x16, 0xFFFF)
                                                .Byte(0x18, 0x01))),
                "Processor_Speed_MHz.0 = -1\n");
}

TEST(Report, MemoryIsTheSumOfTheDevices) {
    ExpectLines(Report(MachineBuilder()
                           .Add(Structure(17, 0x1B).Word(0x0C, 0x0200))
                           .Add(Structure(17, 0x1B).Word(0x0C, 0x8400))),
                "Total_Enabled_Memory_Mb = 513\n");
}

TEST(Report, DiagnosticsLineIsAlwaysThereAndTheControllerLinesOnlyWhenKnown) {
    const std::string tesk =
        Report(MachineBuilder().Add(Structure(11, 5).Text("Tesk Controller -[T1]-")));
    ExpectLines(tesk, "ROM_Diagnostics_Build_Level = \nTESK_Build_Level = T1\nSystem_UUID = \n");
    ExpectNoKey(tesk, "KORU_Build_Level");
    const std::string koru =
        Report(MachineBuilder().Add(Structure(11, 5).Text("Koru Adapter -[K1]-")));
    ExpectLines(koru, "ROM_Diagnostics_Build_Level = \nKORU_Build_Level = K1\nSystem_UUID = \n");
    ExpectNoKey(koru, "TESK_Build_Level");
}

TEST(Report, BladeSlotHasTwoDigits) {
    ExpectLines(Report(MachineBuilder().Add(Structure(2, 0x0F).String(0x0A, "Slot 03"))),
                "Blade_Slot = 03\n");
    ExpectLines(Report(MachineBuilder().Add(Structure(2, 0x0F).String(0x0A, "Slot 01"))),
                "Blade_Slot = 01\n");
}

TEST(Report, BladeSlotOfZeroOrBelowIsAbsent) {
    ExpectLines(Report(MachineBuilder().Add(Structure(2, 0x0F).String(0x0A, "Slot 00"))),
                "Blade_Slot = \n");
    ExpectLines(Report(MachineBuilder().Add(Structure(2, 0x0F).String(0x0A, "Slot 0"))),
                "Blade_Slot = \n");
}

TEST(Report, UuidThatBeginsWithAZeroByteIsAbsent) {
    ExpectLines(
        Report(MachineBuilder().Add(Structure(1, 0x1B).Data(0x08, {0x00, 0x11, 0x22, 0x33}))),
        "System_UUID = \nBlade_Slot = \n");
}

TEST(Report, PciKeysStandInOrderWithTheirFormats) {
    ExpectLines(Report(MachineBuilder().Add(PciFunction{.bus = 0x0A,
                                                        .device = 31,
                                                        .function = 7,
                                                        .vendorId = 0x8086,
                                                        .deviceId = 0x00AB,
                                                        .classCode = 0x060000,
                                                        .revision = 0x0C,
                                                        .headerType = 0x80,
                                                        .subVendorId = 0x10DE,
                                                        .subDeviceId = 0x0001})),
                "\n[PCI]\n"
                "Total_Number_Of_Devices = 1\n"
                "Bus_Number.0 = 10\n"
                "Device_Number.0 = 31\n"
                "Function_Number.0 = 7\n"
                "Class_Code.0 = 060000\n"
                "Revision.0 = 0C\n"
                "Header_Type.0 = 80\n"
                "Vendor_ID.0 = 8086\n"
                "Device_ID.0 = 00AB\n"
                "Subvendor_ID.0 = 10DE\n"
                "Subdevice_ID.0 = 0001\n");
}

TEST(Report, PciFunctionsStandInOrderWhateverTheTreesOrder) {
    MachineBuilder machine;
    for (const uint16_t bus : std::initializer_list<uint16_t>{0x80, 0x00, 0xFF, 0x0A, 0x01}) {
        machine.Add(PciFunction{.bus = bus, .device = 2});
        machine.Add(PciFunction{.bus = bus, .device = 0x1F});
    }
    const std::string report = Report(machine);
    ExpectLines(report, "Bus_Number.0 = 0\nDevice_Number.0 = 2\n");
    ExpectLines(report, "Bus_Number.1 = 0\nDevice_Number.1 = 31\n");
    ExpectLines(report, "Bus_Number.2 = 1\nDevice_Number.2 = 2\n");
    ExpectLines(report, "Bus_Number.4 = 10\nDevice_Number.4 = 2\n");
    ExpectLines(report, "Bus_Number.6 = 128\nDevice_Number.6 = 2\n");
    ExpectLines(report, "Bus_Number.9 = 255\nDevice_Number.9 = 31\n");
}

TEST(Report, FunctionsWithImpossibleNumbersCountButHaveNoKeys) {
    const std::string report =
        Report(MachineBuilder().Add(PciFunction{.device = 3}).Add(PciFunction{.device = 0x20}));
    ExpectLines(report, "Total_Number_Of_Devices = 2\nBus_Number.0 = 0\nDevice_Number.0 = 3\n");
    ExpectNoKey(report, "Bus_Number.1");
}

TEST(Report, FirmwareTextIsPrintedUnchanged) {
    ExpectLines(Report(MachineBuilder().Add(
                    Structure(1, 0x1B).String(0x04, "Q%s\xE9\t").String(0x05, "a = b"))),
                "System_Manufacturer = Q%s\xE9\t\n");
}

// --- Where the table lies and how it is found ---------------------------------------------------

void ExpectFound(MachineBuilder machine) {
    machine.Add(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Arlo 2 -[771200X]-"));
    ExpectLines(Report(machine), "Machine_Type = 7712\n");
}

void ExpectNotFound(const MachineBuilder& machine) {
    const Result result = SystallyOn(machine, {"/i"});
    EXPECT_EQ(result.output,
              "Catastrophic ParseTables() failure -3 \n"
              "SERVER_INFORMATION::ParseTables()\n"
              "[ERROR]\n"
              "ERROR = 255\n");
    EXPECT_EQ(result.status, 255);
}

TEST(FirmwareTable, NeedNotBePageAligned) {
    ExpectFound(MachineBuilder().TableAt(0x000E0123));
}

TEST(FirmwareTable, MayCrossAPage) {
    ExpectFound(MachineBuilder().TableAt(0x000E0FF0));
    ExpectFound(MachineBuilder().TableAt(0x000E0FFF));
}

TEST(FirmwareTable, MayLieAbove2GiB) {
    ExpectFound(MachineBuilder().TableAt(0x80000000));
    ExpectFound(MachineBuilder().TableAt(0xFFFF0FF8));
}

TEST(FirmwareTable, EntryPointMayLieOnAnyParagraph) {
    ExpectFound(MachineBuilder().EntryPointAt(0xF0000));
    ExpectFound(MachineBuilder().EntryPointAt(0xFFFE0));
}

TEST(FirmwareTable, LegacyEntryPointWillDo) {
    ExpectFound(MachineBuilder().LegacyEntryPoint());
    ExpectFound(MachineBuilder().LegacyEntryPoint().EntryPointAt(0xFFFF0));
}

TEST(FirmwareTable, DecoysAreNoEntryPoints) {
    ExpectNotFound(MachineBuilder().NoEntryPoint());
    ExpectNotFound(MachineBuilder().EntryPointAt(0xF59F8));
    ExpectNotFound(MachineBuilder().EntryPointAt(0xFFFF0));
    ExpectNotFound(MachineBuilder().NoEntryPoint().Poke(0xF1000, "_DMI-"));
    ExpectNotFound(MachineBuilder().NoEntryPoint().Poke(0xF1000, "_SM3_"));
    ExpectNotFound(MachineBuilder().NoEntryPoint().Poke(0xF0000, "_DMI_"));
}

TEST(FirmwareTable, DecoysBeforeTheEntryPointArePassedOver) {
    ExpectFound(MachineBuilder()
                    .Poke(0xF0008, "_SM_")
                    .Poke(0xF0000, "_DMI_")
                    .Poke(0xF0100, "_DMI-")
                    .Poke(0xF0200, "_SM3_"));
}

}  // namespace
