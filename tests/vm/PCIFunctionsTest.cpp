// The PCI part of the report against lspci in the same guest.
#include <cstdio>
#include <functional>

#include "vm/Answers.h"

namespace {

class PCIFunctions : public vm::OnGuest {
  protected:
    // Holds `key` of every function against what `expected` makes of lspci's record of it.
    static void ExpectOfEveryFunction(
        const std::string& key,
        const std::function<std::string(const vm::PciFunction&)>& expected) {
        const vm::Report report = TheReport();
        const vm::PciFunctions functions = Lspci();
        for (size_t i = 0; i < functions.size(); ++i) {
            EXPECT_EQ(report.Value(vm::Indexed("PCI_" + key, i)), expected(functions[i]))
                << functions[i].slot;
        }
    }
};

// `value` in upper-case hexadecimal, `digits` digits at least.
std::string Hex(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

// What lspci calls `name`, "0" when it does not print it.
unsigned Named(const vm::PciFunction& function, const std::string& name) {
    const auto found = function.named.find(name);
    return found == function.named.end()
               ? 0
               : static_cast<unsigned>(std::stoul(found->second, nullptr, 16));
}

TEST_P(PCIFunctions, TotalIsTheNumberOfFunctionsThatLspciLists) {
    EXPECT_EQ(TheReport().Value("PCI_Total_Number_Of_Devices"), std::to_string(Lspci().size()));
}

TEST_P(PCIFunctions, NoFunctionIsReportedBeyondTheTotal) {
    const vm::Report report = TheReport();
    const auto total = static_cast<size_t>(report.Number("PCI_Total_Number_Of_Devices"));
    EXPECT_TRUE(report.Has(vm::Indexed("PCI_Subdevice_ID", total - 1)));
    EXPECT_FALSE(report.Has(vm::Indexed("PCI_Bus_Number", total)));
}

TEST_P(PCIFunctions, BusNumbersAreDecimal) {
    ExpectOfEveryFunction("Bus_Number", [](const auto& each) { return std::to_string(each.bus); });
}

TEST_P(PCIFunctions, DeviceNumbersAreDecimal) {
    ExpectOfEveryFunction("Device_Number",
                          [](const auto& each) { return std::to_string(each.device); });
}

TEST_P(PCIFunctions, FunctionNumbersAreDecimal) {
    ExpectOfEveryFunction("Function_Number",
                          [](const auto& each) { return std::to_string(each.function); });
}

TEST_P(PCIFunctions, ClassCodeIsClassSubclassAndProgrammingInterface) {
    ExpectOfEveryFunction("Class_Code", [](const auto& each) {
        return Hex(Named(each, "Class"), 4) + Hex(Named(each, "ProgIf"), 2);
    });
}

TEST_P(PCIFunctions, ClassCodeIsTheThreeBytesAfterTheRevision) {
    ExpectOfEveryFunction("Class_Code", [](const auto& each) {
        return Hex(each.Byte(0x0B), 2) + Hex(each.Byte(0x0A), 2) + Hex(each.Byte(0x09), 2);
    });
}

TEST_P(PCIFunctions, RevisionIsThatOfLspci) {
    ExpectOfEveryFunction("Revision", [](const auto& each) { return Hex(Named(each, "Rev"), 2); });
}

TEST_P(PCIFunctions, HeaderTypeKeepsTheMultiFunctionBit) {
    ExpectOfEveryFunction("Header_Type", [](const auto& each) { return Hex(each.Byte(0x0E), 2); });
}

TEST_P(PCIFunctions, VendorIdIsThatOfLspci) {
    ExpectOfEveryFunction("Vendor_ID",
                          [](const auto& each) { return Hex(Named(each, "Vendor"), 4); });
}

TEST_P(PCIFunctions, DeviceIdIsThatOfLspci) {
    ExpectOfEveryFunction("Device_ID",
                          [](const auto& each) { return Hex(Named(each, "Device"), 4); });
}

TEST_P(PCIFunctions, SubvendorIdIsTheWordAt2CWhateverTheHeaderType) {
    ExpectOfEveryFunction("Subvendor_ID", [](const auto& each) { return Hex(each.Word(0x2C), 4); });
}

TEST_P(PCIFunctions, SubdeviceIdIsTheWordAt2EWhateverTheHeaderType) {
    ExpectOfEveryFunction("Subdevice_ID", [](const auto& each) { return Hex(each.Word(0x2E), 4); });
}

TEST_P(PCIFunctions, SubsystemIsThatOfLspciWhereItNamesOne) {
    const vm::Report report = TheReport();
    const vm::PciFunctions functions = Lspci();
    size_t named = 0;
    for (size_t i = 0; i < functions.size(); ++i) {
        if (functions[i].IsBridge() || !functions[i].named.contains("SVendor")) {
            continue;
        }
        ++named;
        EXPECT_EQ(report.Value(vm::Indexed("PCI_Subvendor_ID", i)),
                  Hex(Named(functions[i], "SVendor"), 4));
        EXPECT_EQ(report.Value(vm::Indexed("PCI_Subdevice_ID", i)),
                  Hex(Named(functions[i], "SDevice"), 4));
    }
    EXPECT_GT(named, 0U);
}

TEST_P(PCIFunctions, ConfigurationSpaceIsLeftAsItWas) {
    EXPECT_EQ(PeerSays("lspci-bytes-after"), PeerSays("lspci-bytes"));
}

INSTANTIATE_TEST_SUITE_P(Guest, PCIFunctions, vm::EveryGuest(), vm::GuestName);

class PCITree : public PCIFunctions {
  protected:
    // "bus:device.function vendor:device" of every function, numbers as the report gives them.
    static std::vector<std::string> ReportedFunctions() {
        const vm::Report report = TheReport();
        const auto total = static_cast<size_t>(report.Number("PCI_Total_Number_Of_Devices"));
        const auto value = [&](const char* key, size_t i) {
            return report.Value(vm::Indexed("PCI_" + std::string(key), i));
        };
        std::vector<std::string> functions;
        for (size_t i = 0; i < total; ++i) {
            functions.push_back(value("Bus_Number", i) + ":" + value("Device_Number", i) + "." +
                                value("Function_Number", i) + " " + value("Vendor_ID", i) + ":" +
                                value("Device_ID", i));
        }
        return functions;
    }
};

class ManyBuses : public PCITree {};

TEST_P(ManyBuses, FunctionsStandInTheOrderOfBusDeviceAndFunction) {
    EXPECT_EQ(ReportedFunctions(),
              (std::vector<std::string>{
                  "0:0.0 8086:1237",   "0:1.0 8086:7000",    "0:1.1 8086:7010",
                  "0:1.3 8086:7113",   "0:2.0 1234:1111",    "0:3.0 1B36:0001",
                  "0:4.0 8086:244E",   "0:5.0 1B36:0009",    "0:6.0 8086:100E",
                  "0:6.1 1AF4:1005",   "0:6.7 8086:1229",    "0:30.0 1B36:0005",
                  "0:31.0 1234:11E8",  "1:1.0 1B36:0001",    "1:2.0 1AF4:1002",
                  "1:3.0 8086:100F",   "1:3.1 10EC:8139",    "2:31.0 10EC:8029",
                  "3:10.0 1000:0012",  "128:0.0 1B36:0001",  "129:30.0 1B36:0001",
                  "130:7.0 8086:2922", "130:29.0 8086:2934", "130:29.7 8086:293A"}));
}

TEST_P(ManyBuses, FirstFunctionOfAMultiFunctionDeviceShowsIt) {
    EXPECT_EQ(TheReport().Value("PCI_Header_Type.8"), "80");
    EXPECT_EQ(TheReport().Value("PCI_Header_Type.15"), "80");
}

TEST_P(ManyBuses, BridgesAreToldByTheirHeaderType) {
    EXPECT_EQ(TheReport().Value("PCI_Header_Type.5"), "01");
    EXPECT_EQ(TheReport().Value("PCI_Class_Code.5"), "060400");
    EXPECT_EQ(TheReport().Value("PCI_Class_Code.6"), "060401");
}

INSTANTIATE_TEST_SUITE_P(Guest, ManyBuses, testing::Values("plain"), vm::GuestName);

class ExpressPorts : public PCITree {};

TEST_P(ExpressPorts, FunctionsWith4096BytesAreReadLikeOthers) {
    EXPECT_EQ(ReportedFunctions(),
              (std::vector<std::string>{"0:0.0 8086:29C0", "0:28.0 1B36:000C", "0:28.3 1B36:000C",
                                        "0:31.0 8086:2918", "0:31.2 8086:2922", "0:31.3 8086:2930",
                                        "1:0.0 8086:10D3", "2:0.0 1AF4:1044"}));
}

INSTANTIATE_TEST_SUITE_P(Guest, ExpressPorts, testing::Values("assembled"), vm::GuestName);

}  // namespace
