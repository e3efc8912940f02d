// How many PCI functions of each kind a machine has.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include "export/Report.h"

namespace report {

struct PciCounts {
    std::map<uint32_t, int> byClass;                     ///< base class and sub-class: 0x0200
    std::map<std::pair<uint32_t, uint32_t>, int> byIds;  ///< vendor and device
};

/// The base class and the sub-class of a class code: its upper two of three bytes.
inline uint32_t ClassOf(const PciFunction& function) {
    return function.classCode >> 8;
}

inline PciCounts CountFunctions(const Report& report) {
    PciCounts counts;
    for (const PciFunction& function : report.pciFunctions) {
        ++counts.byClass[ClassOf(function)];
        ++counts.byIds[{function.vendorId, function.deviceId}];
    }
    return counts;
}

}  // namespace report
