// The report: every key, in the order and the format that other programs read.
// Neither changes, and no key is added, not even behind the present ones: see CONTRIBUTING.md.
#include <cstdio>

#include "app/ReportWriter.h"
#include "app/systally.h"
#include "pci/PCIDeviceList_Proc.h"

namespace {

bool IsIniLayout() {
    return query_mode == DUMP_INI_VALUE;
}

void PrintError() {
    if (IsIniLayout()) {
        std::printf("[ERROR]\n");
    }
    std::printf("ERROR = %d\n", kFailure);
}

template <size_t Size>
void WriteTextUnlessEmpty(ReportWriter& writer, const char (&key)[Size], const char* value) {
    if (*value != '\0') {
        writer.Text(key, value);
    }
}

template <size_t Size>
void WriteTextOrAbsent(ReportWriter& writer, const char (&key)[Size], const char* value) {
    if (value != nullptr) {
        writer.Text(key, value);
    } else {
        writer.Absent(key);
    }
}

void WriteEnclosures(ReportWriter& writer, const SERVER_INFORMATION& info) {
    writer.Decimal("Number_Of_Enclosures", info.GetNumSystemEnclosures());
    for (int i = 0; i < info.GetNumSystemEnclosures(); ++i) {
        writer.Item(
            i, ItemHex<1>("Enclosure_Type", static_cast<uint16_t>(info.GetSystemEnclosureType(i))));
    }
}

void WriteProcessors(ReportWriter& writer, const SERVER_INFORMATION& info) {
    writer.Text("Processor_X64", x64.GetBuffer());
    writer.Decimal("Processor_Slots", info.GetProcessorSlots());
    writer.Decimal("Active_Processors", info.GetActiveProcessors());
    for (int i = 0; i < info.GetActiveProcessors(); ++i) {
        // Signed numbers of 16 bits: above 32767 they have always been negative in the report.
        writer.Item(
            i, ItemDecimal("Processor_Family", static_cast<short>(info.GetProcessorFamily(i))),
            ItemDecimal("Processor_Speed_MHz", static_cast<short>(info.GetProcessorSpeed(i))));
    }
}

void WriteBuildLevels(ReportWriter& writer, const SERVER_INFORMATION& info) {
    // The first line always stands in the report, the other two only when they say something.
    writer.Text("ROM_Diagnostics_Build_Level", info.GetROMDiagnosticsBuild());
    WriteTextUnlessEmpty(writer, "TESK_Build_Level", info.GetTESKBuild());
    WriteTextUnlessEmpty(writer, "KORU_Build_Level", info.GetKORUBuild());
}

void WriteBlade(ReportWriter& writer, const SERVER_INFORMATION& info) {
    if (info.GetBladeSlot() > 0) {
        writer.TwoDigits("Blade_Slot", info.GetBladeSlot());
    } else {
        writer.Absent("Blade_Slot");
    }
    WriteTextOrAbsent(writer, "Blade_Chassis_UUID", info.GetChassisUUID());
}

void PrintSystem(const SERVER_INFORMATION& info) {
    if (IsIniLayout()) {
        std::printf("[System]\n");
    }
    const CString machineType = WorkingMachineType(info);
    ReportWriter writer(IsIniLayout() ? "" : "System_");
    writer.Text("Machine_Type", machineType.GetBuffer());
    writer.Text("Model_Number", info.GetModelNumber());
    writer.Text("Serial_Number", info.GetMachineSerialNumber());
    writer.Text("Product_Name", info.GetProductName());
    writer.Text("BIOS_Version", info.GetMachineBIOSVersion());
    writer.Text("BIOS_Build_Level", info.GetMachineBIOSBuildID());
    writer.Text("BIOS_Date", info.GetMachineBIOSDate());
    writer.Text("System_Manufacturer", info.GetManufacturer());
    writer.Text("BIOS_Language", info.GetMachineBIOSLanguage());
    WriteEnclosures(writer, info);
    WriteProcessors(writer, info);
    writer.Decimal("Total_Enabled_Memory_Mb", info.GetMemorySizeInMB());
    WriteBuildLevels(writer, info);
    WriteTextOrAbsent(writer, "System_UUID", info.GetUUID());
    WriteBlade(writer, info);
}

void WriteDevice(ReportWriter& writer, int index, const PCIDevice& device) {
    writer.Item(
        index, ItemDecimal("Bus_Number", device.m_wBus),
        ItemDecimal("Device_Number", device.m_wDevice),
        ItemDecimal("Function_Number", device.m_wFunction),
        ItemHex<3>("Class_Code", device.m_dwClassCode), ItemHex<1>("Revision", device.m_wRevision),
        ItemHex<1>("Header_Type", device.m_wHeaderType),
        ItemHex<2>("Vendor_ID", device.m_wVendorID), ItemHex<2>("Device_ID", device.m_wDeviceID),
        ItemHex<2>("Subvendor_ID", device.m_wSubVendorID),
        ItemHex<2>("Subdevice_ID", device.m_wSubDeviceID));
}

void PrintPci(PCI_DevList_VC& list) {
    if (IsIniLayout()) {
        std::printf("\n[PCI]\n");
    }
    ReportWriter writer(IsIniLayout() ? "" : "PCI_");
    const int total = list.getTotalNumDevices();
    writer.Decimal("Total_Number_Of_Devices", total);
    list.resetList();
    for (int i = 0; i < total; ++i) {
        const PCIDevice* device = list.getNextDeviceFromList();
        // The total counts functions with impossible numbers too, which the list has dropped.
        if (device == nullptr) {
            return;
        }
        WriteDevice(writer, i, *device);
    }
}

}  // namespace

int dumpAll() {
    {
        // This block ends before the scan: the record gives its memory back first, and its lines
        // are printed when a failing scan ends the process.
        SERVER_INFORMATION info;
        if (info.Run() != 0) {
            PrintError();
            return kFailure;
        }
        PrintSystem(info);
    }
    PCIDeviceList_Proc devices;
    PCI_DevList_VC& list = devices;  // all that a report needs to know of it
    list.scanPCIBusAndCreateList();
    list.resetList();
    PrintPci(list);
    return 0;
}

int dumpTables() {
    return SERVER_INFORMATION().dump();
}
