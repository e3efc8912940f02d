// The keys of a report in their order.
#include "export/ReportKeys.h"

#include <algorithm>

namespace report {

namespace {

constexpr bool kMayBeMissing = true;

const SystemKey kSystemKeys[] = {
    {"Machine_Type", &Report::machineType},
    {"Model_Number", &Report::modelNumber},
    {"Serial_Number", &Report::serialNumber},
    {"Product_Name", &Report::productName},
    {"BIOS_Version", &Report::biosVersion},
    {"BIOS_Build_Level", &Report::biosBuildLevel},
    {"BIOS_Date", &Report::biosDate},
    {"System_Manufacturer", &Report::manufacturer},
    {"BIOS_Language", &Report::biosLanguage},
    {"Number_Of_Enclosures", &Report::enclosures},
    {"Enclosure_Type", &Report::enclosureTypes},
    {"Processor_X64", &Report::x64},
    {"Processor_Slots", &Report::processorSlots},
    {"Active_Processors", &Report::activeProcessors},
    {"Processor_Family", &Report::processorFamilies},
    {"Processor_Speed_MHz", &Report::processorSpeeds},
    {"Total_Enabled_Memory_Mb", &Report::memoryMb},
    {"ROM_Diagnostics_Build_Level", &Report::diagnosticsBuildLevel},
    {"TESK_Build_Level", &Report::teskBuildLevel, kMayBeMissing},
    {"KORU_Build_Level", &Report::koruBuildLevel, kMayBeMissing},
    {"System_UUID", &Report::systemUuid},
    {"Blade_Slot", &Report::bladeSlot},
    {"Blade_Chassis_UUID", &Report::chassisUuid},
};

constexpr PciKey kPciKeys[] = {
    {"Bus_Number", &PciFunction::bus, 0, 0xFFFF},
    {"Device_Number", &PciFunction::device, 0, 0xFFFF},
    {"Function_Number", &PciFunction::function, 0, 0xFFFF},
    {"Class_Code", &PciFunction::classCode, 6, 0xFFFFFFFF},
    {"Revision", &PciFunction::revision, 2, 0xFFFF},
    {"Header_Type", &PciFunction::headerType, 2, 0xFFFF},
    {"Vendor_ID", &PciFunction::vendorId, 4, 0xFFFF},
    {"Device_ID", &PciFunction::deviceId, 4, 0xFFFF},
    {"Subvendor_ID", &PciFunction::subVendorId, 4, 0xFFFF},
    {"Subdevice_ID", &PciFunction::subDeviceId, 4, 0xFFFF},
};

}  // namespace

std::span<const SystemKey> SystemKeys() {
    return kSystemKeys;
}

std::span<const PciKey> PciKeys() {
    return kPciKeys;
}

std::string PciTotalName() {
    return std::string("PCI_") + kPciTotal;
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return lower;
}

std::string Hex(uint32_t number, int digits) {
    constexpr int kMostDigits = 8;
    char text[kMostDigits];
    int start = kMostDigits;
    do {
        text[--start] = "0123456789ABCDEF"[number % 16];
        number /= 16;
    } while (number != 0 || kMostDigits - start < digits);
    return {text + start, text + kMostDigits};
}

}  // namespace report
