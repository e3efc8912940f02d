// The report as key=value lines.
#include <gtest/gtest.h>

#include "export/Facter.h"
#include "export/Reports.h"

namespace {

using report::Report;

std::string Facts(const Report& report) {
    std::string text;
    const std::unique_ptr<report::Shape> shape = report::MakeFacterFacts();
    EXPECT_EQ(shape->Add(report, text), "");
    shape->Finish(text);
    return text;
}

void ExpectLine(const std::string& facts, const std::string& line) {
    EXPECT_NE(("\n" + facts).find("\n" + line + "\n"), std::string::npos)
        << "no " << line << " in\n"
        << facts;
}

TEST(Facter, AbsentValuesHaveNoLine) {
    Report report;
    report.machineType = "XXXX";
    EXPECT_EQ(Facts(report),
              "systally_machine_type=XXXX\n"
              "systally_number_of_enclosures=0\n"
              "systally_processor_x64=false\n"
              "systally_processor_slots=0\n"
              "systally_active_processors=0\n"
              "systally_total_enabled_memory_mb=0\n"
              "systally_pci_total_number_of_devices=0\n");
}

TEST(Facter, IndexedKeysAreOneFactWithCommas) {
    Report report;
    report.enclosureTypes = {0x1C, 0x1D};
    report.processorFamilies = {179, 1, 2};
    report.processorSpeeds = {2933};
    const std::string facts = Facts(report);
    ExpectLine(facts, "systally_enclosure_type=1C,1D");
    ExpectLine(facts, "systally_processor_family=179,1,2");
    ExpectLine(facts, "systally_processor_speed_mhz=2933");
}

TEST(Facter, TruthAndSlotAreFacts) {
    Report report;
    report.x64 = true;
    report.bladeSlot = 14;
    ExpectLine(Facts(report), "systally_processor_x64=true");
    ExpectLine(Facts(report), "systally_blade_slot=14");
}

TEST(Facter, FunctionsAreCountedByClassAndByIdentifiers) {
    Report report;
    report.pciTotal = 4;
    report::PciFunction network;
    network.classCode = 0x020000;
    network.vendorId = 0x14E4;
    network.deviceId = 0x1639;
    report::PciFunction other = network;
    other.deviceId = 0x163A;
    report.pciFunctions = {network, other, network};
    const std::string facts = Facts(report);
    ExpectLine(facts, "systally_pci_total_number_of_devices=4");
    ExpectLine(facts, "systally_pci_class_0200=3");
    ExpectLine(facts, "systally_pci_id_14e4_1639=2");
    ExpectLine(facts, "systally_pci_id_14e4_163a=1");
}

TEST(Facter, BlanksOfATextStay) {
    Report report;
    report.productName = "Arlo 2 ";
    ExpectLine(Facts(report), "systally_product_name=Arlo 2 ");
}

TEST(Facter, EveryOtherCharacterIsAQuestionMark) {
    Report report;
    report.productName = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\t\x1B\x7F~";
    ExpectLine(Facts(report), "systally_product_name=caf? ? ????~");
}

}  // namespace
