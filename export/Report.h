// One machine's report as values: what its System and PCI sections say.
// Knows no layout and no output; ReportKeys.h gives each value its name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace report {

/// A PCI function. Each number as the report gives it.
struct PciFunction {
    uint32_t bus = 0;
    uint32_t device = 0;
    uint32_t function = 0;
    uint32_t classCode = 0;  ///< base class, sub-class, programming interface: 0x060400
    uint32_t revision = 0;
    uint32_t headerType = 0;
    uint32_t vendorId = 0;
    uint32_t deviceId = 0;
    uint32_t subVendorId = 0;
    uint32_t subDeviceId = 0;
};

/// Texts are UTF-8 and stand as the firmware gives them, trailing blanks included; an empty one
/// means that the report has no value there.
struct Report {
    std::string machineType;
    std::string modelNumber;
    std::string serialNumber;
    std::string productName;
    std::string biosVersion;
    std::string biosBuildLevel;
    std::string biosDate;
    std::string manufacturer;
    std::string biosLanguage;
    int enclosures = 0;
    std::vector<uint32_t> enclosureTypes;
    bool x64 = false;
    int processorSlots = 0;
    int activeProcessors = 0;
    std::vector<int> processorFamilies;
    std::vector<int> processorSpeeds;  ///< MHz
    int memoryMb = 0;
    std::string diagnosticsBuildLevel;
    std::string teskBuildLevel;
    std::string koruBuildLevel;
    std::string systemUuid;
    std::optional<int> bladeSlot;
    std::string chassisUuid;

    /// How many functions the kernel has; those outside the 256 buses are not in the list.
    int pciTotal = 0;
    std::vector<PciFunction> pciFunctions;

    std::string source;   ///< where the report was read: a path, or "standard input"
    size_t line = 0;      ///< its first line there
    size_t end = 0;       ///< its last line there
    size_t place = 0;     ///< the how manyth report there, counted from 1
    std::string machine;  ///< what the machine is called among several
};

}  // namespace report
