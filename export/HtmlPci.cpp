// The PCI functions in HTML: a tree of buses, devices and functions.
#include <map>
#include <span>

#include "export/HtmlMachine.h"
#include "export/HtmlText.h"
#include "export/PciCounts.h"
#include "export/ReportKeys.h"

namespace report {

namespace {

using Functions = std::span<const PciFunction>;

/// "0x" numbers as lspci prints them: without it and in lower case.
std::string LowerHex(uint32_t number, int digits) {
    return LowerCase(Hex(number, digits));
}

std::string DeviceAddress(const PciFunction& function) {
    return LowerHex(function.bus, 2) + ":" + LowerHex(function.device, 2);
}

std::string NameOr(const std::string& name, const char* what, const std::string& number) {
    return Escape(name.empty() ? what + (" " + number) : name);
}

std::string ClassName(const PciFunction& function, const PciNames& names) {
    return NameOr(names.Class(function.classCode), "Class", LowerHex(ClassOf(function), 4));
}

/// A colour for each base class that a server has many of; it says nothing that the words do not.
std::string ColourClass(uint32_t classCode) {
    constexpr uint32_t kColours = 0x0D;
    const uint32_t base = classCode >> 16;
    return base <= kColours ? "c" + std::to_string(base) : "c0";
}

std::string Identifiers(uint32_t vendor, uint32_t device) {
    return Element("code", LowerHex(vendor, 4) + ":" + LowerHex(device, 4));
}

/// Whether the report's subsystem numbers are that: bridges have other registers in their place.
/// PCI Local Bus standard, 6.2.1 and 6.2.4.
bool HasSubsystem(const PciFunction& function) {
    constexpr uint32_t kLayout = 0x7F;
    return (function.headerType & kLayout) == 0 &&
           (function.subVendorId != 0 || function.subDeviceId != 0);
}

std::string Subsystem(const PciFunction& function, const PciNames& names) {
    if (!HasSubsystem(function)) {
        return "";
    }
    const std::string product = names.Subsystem(function);
    const std::string vendor = names.Vendor(function.subVendorId);
    std::string text = " · subsystem ";
    if (!product.empty()) {
        text += Escape(product) + " ";
    } else if (!vendor.empty()) {
        text += Escape(vendor) + " ";
    }
    return text + Identifiers(function.subVendorId, function.subDeviceId);
}

std::string Function(const PciFunction& function, const PciNames& names) {
    const std::string address = DeviceAddress(function) + "." + std::to_string(function.function);
    const std::string device = NameOr(names.Device(function.vendorId, function.deviceId), "Device",
                                      LowerHex(function.deviceId, 4));
    const std::string vendor =
        NameOr(names.Vendor(function.vendorId), "Vendor", LowerHex(function.vendorId, 4));
    const std::string revision = "rev " + LowerHex(function.revision, 2);
    return Element(
        "div",
        Element("code", address, "address") +
            Element("span",
                    Element("b", device) + Element("small", vendor + Subsystem(function, names)),
                    "device") +
            Element("span", ClassName(function, names),
                    "class " + ColourClass(function.classCode)) +
            Element("span",
                    Identifiers(function.vendorId, function.deviceId) + Element("small", revision),
                    "numbers"),
        "function");
}

/// The functions at the start for which `belongs` holds with the first one; taken off `rest`.
template <typename Belongs>
Functions TakeGroup(Functions& rest, const Belongs& belongs) {
    size_t count = 1;
    while (count < rest.size() && belongs(rest.front(), rest[count])) {
        ++count;
    }
    const Functions group = rest.first(count);
    rest = rest.subspan(count);
    return group;
}

bool AreOnOneBus(const PciFunction& one, const PciFunction& other) {
    return one.bus == other.bus;
}

bool AreOnOneDevice(const PciFunction& one, const PciFunction& other) {
    return one.device == other.device;
}

/// A device of one function is that function; another is a branch of its own.
std::string Device(Functions functions, const PciNames& names) {
    std::string list;
    for (const PciFunction& function : functions) {
        list += functions.size() == 1 ? Function(function, names)
                                      : Element("li", Function(function, names));
    }
    if (functions.size() == 1) {
        return Element("li", list);
    }
    const auto count = static_cast<int64_t>(functions.size());
    return Element("li", Element("div",
                                 Element("code", DeviceAddress(functions.front()), "address") +
                                     " " + Element("span", Count(count, "function")),
                                 "branch") +
                             Element("ul", list));
}

std::string Bus(Functions functions, const PciNames& names) {
    const uint32_t number = functions.front().bus;
    const auto count = static_cast<int64_t>(functions.size());
    const std::string heading = Element("b", "Bus " + std::to_string(number)) + " " +
                                Element("code", "0x" + LowerHex(number, 2)) + " " +
                                Element("small", Count(count, "function"));
    std::string devices;
    while (!functions.empty()) {
        devices += Device(TakeGroup(functions, AreOnOneDevice), names);
    }
    return "<details open><summary>" + heading + "</summary>" + Element("ul", devices, "tree") +
           "</details>";
}

/// How many functions of each kind there are.
std::string Kinds(const Report& report, const PciNames& names) {
    std::map<uint32_t, int> counts;
    for (const PciFunction& function : report.pciFunctions) {
        ++counts[function.classCode & 0xFF0000];
    }
    std::string kinds;
    for (const auto& [classCode, count] : counts) {
        const std::string name =
            NameOr(names.BaseClass(classCode), "Class", LowerHex(classCode >> 16, 2));
        kinds += Element("li", Element("span", name, "class " + ColourClass(classCode)) + " " +
                                   Element("b", std::to_string(count)));
    }
    return kinds.empty() ? "" : Element("ul", kinds, "kinds");
}

std::string Missing(const Report& report) {
    const int64_t missing = report.pciTotal - static_cast<int64_t>(report.pciFunctions.size());
    return missing <= 0
               ? ""
               : Element("p",
                         Count(missing, "further function") + (missing == 1 ? " is" : " are") +
                             " counted but not listed: outside buses 0 to 255, or lost "
                             "where the report was cut.",
                         "note");
}

}  // namespace

std::string PciSection(const Report& report, const PciNames& names) {
    std::string buses;
    for (Functions rest = report.pciFunctions; !rest.empty();) {
        buses += Bus(TakeGroup(rest, AreOnOneBus), names);
    }
    const std::string count =
        Element("small", report.pciTotal == 0 ? "none" : Grouped(report.pciTotal));
    return Element(
        "section",
        Element("h2", "PCI functions " + count) + Kinds(report, names) + Missing(report) + buses,
        "pci");
}

}  // namespace report
