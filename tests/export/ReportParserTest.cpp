// What is read from a report, and which files are none.
#include <gtest/gtest.h>

#include "export/ReportParser.h"
#include "export/Reports.h"

namespace {

using report::Report;
using report::ReportParser;
using reports::Arlo2;
using reports::File;
using reports::kBare;
using reports::Replaced;
using Outcome = ReportParser::Outcome;

/// All reports of a file, which must be whole.
std::vector<Report> ReadAll(const std::string& text) {
    const File file(text);
    ReportParser parser(file.path());
    std::vector<Report> found;
    for (Report report; parser.Next(report) == Outcome::kReport;) {
        found.push_back(report);
    }
    EXPECT_EQ(parser.Damage(), "");
    return found;
}

Report Read(const std::string& text) {
    const std::vector<Report> found = ReadAll(text);
    EXPECT_EQ(found.size(), 1U);
    return found.empty() ? Report() : found.front();
}

/// What is wrong with a file whose last report is damaged, without the path's folder.
std::string DamageOf(const std::string& text) {
    const File file(text);
    ReportParser parser(file.path());
    Report report;
    Outcome outcome = parser.Next(report);
    while (outcome == Outcome::kReport) {
        outcome = parser.Next(report);
    }
    EXPECT_EQ(outcome, Outcome::kDamage);
    const std::string& damage = parser.Damage();
    return damage.substr(damage.find("web1.ini"));
}

void ExpectIsArlo2(const Report& report) {
    EXPECT_EQ(report.machineType, "7712");
    EXPECT_EQ(report.modelNumber, "00X");
    EXPECT_EQ(report.serialNumber, "QS0012345");
    EXPECT_EQ(report.productName, "Arlo 2 ");
    EXPECT_EQ(report.biosVersion, "1.07");
    EXPECT_EQ(report.biosBuildLevel, "AB1234C");
    EXPECT_EQ(report.biosDate, "03/18/2010");
    EXPECT_EQ(report.manufacturer, "QEV");
    EXPECT_EQ(report.biosLanguage, "US");
    EXPECT_EQ(report.enclosures, 2);
    EXPECT_EQ(report.enclosureTypes, (std::vector<uint32_t>{0x1C, 0x1D}));
    EXPECT_TRUE(report.x64);
    EXPECT_EQ(report.processorSlots, 4);
    EXPECT_EQ(report.activeProcessors, 3);
    EXPECT_EQ(report.processorFamilies, (std::vector<int>{179, 179, 179}));
    EXPECT_EQ(report.processorSpeeds, (std::vector<int>{2933, 2933, 2933}));
    EXPECT_EQ(report.memoryMb, 11280);
    EXPECT_EQ(report.diagnosticsBuildLevel, "XYZ10AUS");
    EXPECT_EQ(report.teskBuildLevel, "TKB037A");
    EXPECT_EQ(report.koruBuildLevel, "KRU026B");
    EXPECT_EQ(report.systemUuid, "5A0E2C917712400B8E31001A64C37D02");
    EXPECT_EQ(report.bladeSlot, 14);
    EXPECT_EQ(report.chassisUuid, "9F3C0D5E6A7B41C2B8D0E1F203142536");
    EXPECT_EQ(report.pciTotal, 20);
    ASSERT_EQ(report.pciFunctions.size(), 20U);
    const report::PciFunction& disks = report.pciFunctions[9];
    EXPECT_EQ(disks.bus, 0U);
    EXPECT_EQ(disks.device, 31U);
    EXPECT_EQ(disks.function, 2U);
    EXPECT_EQ(disks.classCode, 0x01018FU);
    EXPECT_EQ(disks.revision, 0U);
    EXPECT_EQ(disks.headerType, 0U);
    EXPECT_EQ(disks.vendorId, 0x8086U);
    EXPECT_EQ(disks.deviceId, 0x3A20U);
    EXPECT_EQ(disks.subVendorId, 0x51E5U);
    EXPECT_EQ(disks.subDeviceId, 0x03BFU);
}

// --- Whole reports ------------------------------------------------------------------------------

TEST(ReportParser, ReadsTheIniLayout) {
    ExpectIsArlo2(Read(Arlo2("ini")));
}

TEST(ReportParser, ReadsThePropertiesLayout) {
    ExpectIsArlo2(Read(Arlo2("properties")));
}

TEST(ReportParser, EmptyValuesAreAbsent) {
    const Report report = Read(kBare);
    EXPECT_EQ(report.machineType, "XXXX");
    EXPECT_EQ(report.serialNumber, "");
    EXPECT_EQ(report.enclosureTypes.size(), 0U);
    EXPECT_FALSE(report.x64);
    EXPECT_EQ(report.teskBuildLevel, "");
    EXPECT_EQ(report.koruBuildLevel, "");
    EXPECT_EQ(report.bladeSlot, std::nullopt);
    EXPECT_EQ(report.pciTotal, 0);
}

TEST(ReportParser, OneServiceProcessorMayBeMissing) {
    const Report report = Read(Replaced(Arlo2(), "TESK_Build_Level = TKB037A\n", ""));
    EXPECT_EQ(report.teskBuildLevel, "");
    EXPECT_EQ(report.koruBuildLevel, "KRU026B");
}

TEST(ReportParser, TextsMayHoldAnythingThatALineMay) {
    EXPECT_EQ(Read(Replaced(kBare, "Serial_Number = ", "Serial_Number =  a = [b] ")).serialNumber,
              " a = [b] ");
}

TEST(ReportParser, TextsThatAreNoUtf8AreTakenAsLatin1) {
    EXPECT_EQ(Read(Replaced(kBare, "Product_Name = ", "Product_Name = caf\xE9")).productName,
              "caf\xC3\xA9");
    EXPECT_EQ(Read(Replaced(kBare, "Product_Name = ", "Product_Name = caf\xC3\xA9")).productName,
              "caf\xC3\xA9");
}

TEST(ReportParser, NegativeNumbersAreKept) {
    EXPECT_EQ(Read(Replaced(kBare, "Memory_Mb = 0", "Memory_Mb = -2048")).memoryMb, -2048);
}

TEST(ReportParser, FunctionsWithoutKeysCountInTheTotalAlone) {
    const Report report =
        Read(Replaced(Arlo2(), "Number_Of_Devices = 20", "Number_Of_Devices = 24"));
    EXPECT_EQ(report.pciTotal, 24);
    EXPECT_EQ(report.pciFunctions.size(), 20U);
}

TEST(ReportParser, BlanksThatAnEditorRemovedDoNotMatter) {
    EXPECT_EQ(Read(Replaced(kBare, "System_UUID = \n", "System_UUID =\n")).systemUuid, "");
}

TEST(ReportParser, CarriageReturnsOfATransferDoNotMatter) {
    for (const char* layout : {"ini", "properties"}) {
        std::string text;
        for (const char c : Arlo2(layout)) {
            text += c == '\n' ? "\r\n" : std::string(1, c);
        }
        ExpectIsArlo2(Read(text));
        EXPECT_EQ(ReadAll(text + "\r\n" + text).size(), 2U);
    }
}

// --- Several reports ----------------------------------------------------------------------------

TEST(ReportParser, ReadsReportsOfBothLayoutsFromOneFile) {
    const std::vector<Report> found =
        ReadAll(Arlo2("properties") + Arlo2("ini") + kBare + "\n\n" + Arlo2("properties") + "\n");
    ASSERT_EQ(found.size(), 4U);
    ExpectIsArlo2(found[0]);
    ExpectIsArlo2(found[1]);
    EXPECT_EQ(found[2].machineType, "XXXX");
    EXPECT_EQ(found[2].pciFunctions.size(), 0U);
    ExpectIsArlo2(found[3]);
}

TEST(ReportParser, EachReportKnowsWhereItStood) {
    const File file(std::string(kBare) + "\n" + kBare);
    ReportParser parser(file.path());
    Report report;
    ASSERT_EQ(parser.Next(report), Outcome::kReport);
    EXPECT_EQ(report.source, file.path());
    EXPECT_EQ(report.line, 1U);
    EXPECT_EQ(report.place, 1U);
    ASSERT_EQ(parser.Next(report), Outcome::kReport);
    EXPECT_EQ(report.line, 24U);
    EXPECT_EQ(report.place, 2U);
    EXPECT_EQ(parser.Next(report), Outcome::kEnd);
}

TEST(ReportParser, EmptyFileHoldsNoReport) {
    const std::string none =
        "expected a report, which begins with \"[System]\" or "
        "\"System_Machine_Type = \", found the end of the file";
    EXPECT_EQ(DamageOf(""), "web1.ini:1: " + none);
    EXPECT_EQ(DamageOf("\n\r\n"), "web1.ini:3: " + none);
}

TEST(ReportParser, ManyFunctionsAcrossManyBlocksAreRead) {
    std::string text = Replaced(kBare, "Number_Of_Devices = 0", "Number_Of_Devices = 5000");
    for (int i = 0; i < 5000; ++i) {
        const std::string index = "." + std::to_string(i) + " = ";
        text += "Bus_Number" + index + std::to_string(i / 256) + "\nDevice_Number" + index +
                "1\nFunction_Number" + index + "2\nClass_Code" + index + "020000\nRevision" +
                index + "0A\nHeader_Type" + index + "80\nVendor_ID" + index + "14E4\nDevice_ID" +
                index + "1639\nSubvendor_ID" + index + "51E5\nSubdevice_ID" + index + "03A9\n";
    }
    const Report report = Read(text);
    ASSERT_EQ(report.pciFunctions.size(), 5000U);
    EXPECT_EQ(report.pciFunctions[4999].bus, 19U);
    EXPECT_EQ(report.pciFunctions[4999].subDeviceId, 0x03A9U);
}

// --- Damage -------------------------------------------------------------------------------------

TEST(ReportParser, ForeignFileIsNamedWithItsFirstLine) {
    EXPECT_EQ(DamageOf("root:x:0:0:root:/root:/bin/bash\n"),
              "web1.ini:1: expected a report, which begins with \"[System]\" or "
              "\"System_Machine_Type = \", found \"root:x:0:0:root:/root:/bin/bash\"");
}

TEST(ReportParser, ReportOfAFailureIsNone) {
    EXPECT_EQ(
        DamageOf("Critical error in srvinfo: Could not open /dev/mem.\n[ERROR]\nERROR = 255\n"),
        "web1.ini:1: no report: systally itself failed and said \"Critical error in srvinfo: "
        "Could not open /dev/mem.\"");
}

TEST(ReportParser, ReportWithoutItsPciListIsDamaged) {
    const std::string text = kBare;
    EXPECT_EQ(DamageOf(text.substr(0, text.find("\n[PCI]")) + "Cannot open /proc/bus/pci\n"),
              "web1.ini:20: expected \"[PCI]\", found \"Cannot open /proc/bus/pci\"");
}

TEST(ReportParser, MissingKeyIsNamed) {
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "BIOS_Date = 03/18/2010\n", "")),
              "web1.ini:8: expected \"BIOS_Date = \", found \"System_Manufacturer = QEV\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2("properties"), "PCI_Revision.3 = 13\n", "")),
              "web1.ini:64: expected \"PCI_Revision.3 = \", found \"PCI_Header_Type.3 = 01\"");
}

TEST(ReportParser, RepeatedKeyIsDamage) {
    EXPECT_EQ(DamageOf(Replaced(kBare, "BIOS_Date = \n", "BIOS_Date = \nBIOS_Date = \n")),
              "web1.ini:9: expected \"System_Manufacturer = \", found \"BIOS_Date = \"");
}

TEST(ReportParser, CountsMustBeTrue) {
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Enclosures = 2", "Enclosures = 3")),
              "web1.ini:14: expected \"Enclosure_Type.2 = \", found \"Processor_X64 = TRUE\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Active_Processors = 3", "Active_Processors = 2")),
              "web1.ini:21: expected \"Total_Enabled_Memory_Mb = \", found "
              "\"Processor_Family.2 = 179\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Number_Of_Devices = 20", "Number_Of_Devices = 19")),
              "web1.ini:223: expected the end of the report, found \"Bus_Number.19 = 254\"");
}

TEST(ReportParser, ValuesMustBeOfTheirKind) {
    EXPECT_EQ(DamageOf(Replaced(kBare, "Slots = 0", "Slots = four")),
              "web1.ini:13: expected Processor_Slots to be a number, found \"Processor_Slots = "
              "four\"");
    EXPECT_EQ(DamageOf(Replaced(kBare, "Slots = 0", "Slots = 4 ")),
              "web1.ini:13: expected Processor_Slots to be a number, found \"Processor_Slots = 4 "
              "\"");
    EXPECT_EQ(DamageOf(Replaced(kBare, "X64 = FALSE", "X64 = no")),
              "web1.ini:12: expected Processor_X64 to be TRUE or FALSE, found \"Processor_X64 = "
              "no\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Blade_Slot = 14", "Blade_Slot = Bay 14")),
              "web1.ini:28: expected Blade_Slot to be a number or nothing, found \"Blade_Slot = "
              "Bay 14\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Type.0 = 1C", "Type.0 = GG")),
              "web1.ini:12: expected Enclosure_Type.0 to be a hexadecimal number, found "
              "\"Enclosure_Type.0 = GG\"");
    EXPECT_EQ(DamageOf(Replaced(Arlo2(), "Vendor_ID.0 = 8086", "Vendor_ID.0 = 18086")),
              "web1.ini:39: expected Vendor_ID.0 to be a hexadecimal number, found \"Vendor_ID.0 "
              "= 18086\"");
    EXPECT_EQ(DamageOf(Replaced(kBare, "Devices = 0", "Devices = -1")),
              "web1.ini:22: expected Total_Number_Of_Devices to be a number, found "
              "\"Total_Number_Of_Devices = -1\"");
}

TEST(ReportParser, ReportThatWasCutIsDamaged) {
    const std::string text = Arlo2();
    EXPECT_EQ(DamageOf(text.substr(0, text.find("Serial_Number"))),
              "web1.ini:4: expected \"Serial_Number = \", found the end of the file");
    EXPECT_EQ(DamageOf(text.substr(0, text.find("QS0012345") + 4)),
              "web1.ini:4: the file ends in the middle of a line");
    EXPECT_EQ(DamageOf(text.substr(0, text.find("\n[PCI]"))),
              "web1.ini:30: expected \"[PCI]\", found the end of the file");
    EXPECT_EQ(DamageOf(text.substr(0, text.find("Device_ID.7"))),
              "web1.ini:110: expected \"Device_ID.7 = \", found the end of the file");
}

TEST(ReportParser, LineThatFollowsAReportMustBeginAnother) {
    EXPECT_EQ(DamageOf(std::string(kBare) + "Bus_Number.0 = 0\n"),
              "web1.ini:23: expected the end of the report, found \"Bus_Number.0 = 0\"");
    EXPECT_EQ(DamageOf(std::string(kBare) + "\nhello\n"),
              "web1.ini:24: expected a report, which begins with \"[System]\" or "
              "\"System_Machine_Type = \", found \"hello\"");
}

TEST(ReportParser, LayoutsDoNotMixWithinAReport) {
    EXPECT_EQ(DamageOf(Replaced(kBare, "Model_Number", "System_Model_Number")),
              "web1.ini:3: expected \"Model_Number = \", found \"System_Model_Number = \"");
}

TEST(ReportParser, BytesThatNoReportHoldsAreDamage) {
    EXPECT_EQ(DamageOf(Replaced(kBare, "XXXX", std::string("XX\0XX", 5))),
              "web1.ini:2: the line holds a NUL byte");
    EXPECT_EQ(DamageOf(Replaced(kBare, "XXXX", std::string(1000000, 'X'))),
              "web1.ini:2: the line is longer than any line of a report");
}

TEST(ReportParser, QuotedLinesAreShortAndMoveNoCursor) {
    EXPECT_EQ(DamageOf("\x1B[2J" + std::string(100, 'x') + "\n"),
              "web1.ini:1: expected a report, which begins with \"[System]\" or "
              "\"System_Machine_Type = \", found \"?[2J" +
                  std::string(56, 'x') + "...\"");
}

TEST(ReportParser, FileThatCannotBeReadIsNamedWithoutALine) {
    Report report;
    ReportParser missing("/nowhere/web1.ini");
    EXPECT_EQ(missing.Next(report), Outcome::kDamage);
    EXPECT_EQ(missing.Damage(), "/nowhere/web1.ini: cannot read: No such file or directory");
    ReportParser directory("/tmp");
    EXPECT_EQ(directory.Next(report), Outcome::kDamage);
    EXPECT_EQ(directory.Damage(), "/tmp: cannot read: Is a directory");
}

}  // namespace
