// The report as JSON: names, types and what is null.
#include <gtest/gtest.h>

#include "export/Json.h"
#include "export/Reports.h"

namespace {

using report::Report;

std::string JsonLine(const Report& report) {
    std::string text;
    const std::unique_ptr<report::Shape> shape = report::MakeJsonLines();
    EXPECT_EQ(shape->Add(report, text), "");
    shape->Finish(text);
    return text;
}

void ExpectMember(const std::string& json, const std::string& member) {
    EXPECT_NE(json.find(member), std::string::npos) << "no " << member << " in " << json;
}

Report WithSerialNumber(const std::string& text) {
    Report report;
    report.serialNumber = text;
    return report;
}

TEST(Json, AbsentValuesAreNull) {
    Report report;
    report.machineType = "XXXX";
    EXPECT_EQ(JsonLine(report),
              "{\"machine_type\":\"XXXX\",\"model_number\":null,\"serial_number\":null,"
              "\"product_name\":null,\"bios_version\":null,\"bios_build_level\":null,"
              "\"bios_date\":null,\"system_manufacturer\":null,\"bios_language\":null,"
              "\"number_of_enclosures\":0,\"enclosure_type\":[],\"processor_x64\":false,"
              "\"processor_slots\":0,\"active_processors\":0,\"processor_family\":[],"
              "\"processor_speed_mhz\":[],\"total_enabled_memory_mb\":0,"
              "\"rom_diagnostics_build_level\":null,\"tesk_build_level\":null,"
              "\"koru_build_level\":null,\"system_uuid\":null,\"blade_slot\":null,"
              "\"blade_chassis_uuid\":null,\"pci_total_number_of_devices\":0,"
              "\"pci_functions\":[]}\n");
}

TEST(Json, IndexedKeysAreLists) {
    Report report;
    report.enclosureTypes = {0x1C, 0x02};
    report.processorFamilies = {179, 1};
    report.processorSpeeds = {2933, -5};
    const std::string json = JsonLine(report);
    ExpectMember(json, "\"enclosure_type\":[\"1C\",\"02\"]");
    ExpectMember(json, "\"processor_family\":[179,1]");
    ExpectMember(json, "\"processor_speed_mhz\":[2933,-5]");
}

TEST(Json, NumbersAndBooleansAreNoTexts) {
    Report report;
    report.x64 = true;
    report.bladeSlot = 3;
    report.memoryMb = 11280;
    const std::string json = JsonLine(report);
    ExpectMember(json, "\"processor_x64\":true");
    ExpectMember(json, "\"blade_slot\":3,");
    ExpectMember(json, "\"total_enabled_memory_mb\":11280,");
}

TEST(Json, PciFunctionsAreObjectsWithTheReportsDigits) {
    Report report;
    report.pciTotal = 2;
    report.pciFunctions = {{254, 31, 7, 0x01018F, 0x0A, 0x80, 0x8086, 0x3A20, 0x51E5, 0x03BF}, {}};
    ExpectMember(JsonLine(report),
                 "\"pci_total_number_of_devices\":2,\"pci_functions\":["
                 "{\"bus_number\":254,\"device_number\":31,\"function_number\":7,"
                 "\"class_code\":\"01018F\",\"revision\":\"0A\",\"header_type\":\"80\","
                 "\"vendor_id\":\"8086\",\"device_id\":\"3A20\",\"subvendor_id\":\"51E5\","
                 "\"subdevice_id\":\"03BF\"},"
                 "{\"bus_number\":0,\"device_number\":0,\"function_number\":0,"
                 "\"class_code\":\"000000\",\"revision\":\"00\",\"header_type\":\"00\","
                 "\"vendor_id\":\"0000\",\"device_id\":\"0000\",\"subvendor_id\":\"0000\","
                 "\"subdevice_id\":\"0000\"}]}\n");
}

TEST(Json, TextsAreEscaped) {
    ExpectMember(JsonLine(WithSerialNumber("a\"b\\c\t\x1B")),
                 "\"serial_number\":\"a\\\"b\\\\c\\t\\u001b\"");
}

TEST(Json, NoCharacterOfATextEndsALine) {
    ExpectMember(JsonLine(WithSerialNumber("a\u0085b\u0080\u009F\x7F\u2028\u2029")),
                 "\"serial_number\":\"a\\u0085b\\u0080\\u009f\\u007f\\u2028\\u2029\"");
    ExpectMember(JsonLine(WithSerialNumber("\u00A0\u00E9\u2027\u20AC")),
                 "\"serial_number\":\"\u00A0\u00E9\u2027\u20AC\"");
}

TEST(Json, BlanksOfATextStay) {
    ExpectMember(JsonLine(WithSerialNumber(" 12 ")), "\"serial_number\":\" 12 \"");
}

TEST(Json, AnsibleFactsAreTheSameObjectOnManyLines) {
    Report report;
    report.serialNumber = "QS1";
    std::string text;
    const std::unique_ptr<report::Shape> shape = report::MakeAnsibleFacts();
    EXPECT_FALSE(shape->TakesSeveral());
    EXPECT_EQ(shape->Add(report, text), "");
    EXPECT_EQ(text, "");
    shape->Finish(text);
    std::string oneLine;
    for (const char c : text) {
        oneLine += c == ' ' || c == '\n' ? "" : std::string(1, c);
    }
    EXPECT_EQ(oneLine + "\n", JsonLine(report));
    ExpectMember(text, "{\n  \"machine_type\": null,\n  \"model_number\": null,\n");
}

}  // namespace
