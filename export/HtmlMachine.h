// A machine as a person wants to see it, in HTML: identity, processors, memory, PCI functions.
// Needs no script: what it shows is there when the page is.
#pragma once

#include <string>

#include "export/PciNames.h"
#include "export/Report.h"

namespace report {

/// The product's name, or what comes closest.
std::string Title(const Report& report);

/// "7712-00X"; empty when the machine type is unknown.
std::string TypeAndModel(const Report& report);

/// Everything but the PCI functions.
std::string MachineSections(const Report& report);

/// The PCI functions as a tree of buses, devices and functions. Machines of one kind have the same.
std::string PciSection(const Report& report, const PciNames& names);

}  // namespace report
