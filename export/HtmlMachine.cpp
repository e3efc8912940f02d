// A machine's identity, processors, memory, enclosures and firmware in HTML.
#include "export/HtmlMachine.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "export/DmiNames.h"
#include "export/HtmlText.h"
#include "export/ReportKeys.h"

namespace report {

namespace {

constexpr char kUnknownType[] = "XXXX";

std::string Code(const std::string& value) {
    return value.empty() ? Shown(value) : Element("code", Escape(value));
}

std::string Card(const char* heading, const std::string& content, const std::string& cssClass) {
    return Element("section", Element("h2", heading) + content, "card " + cssClass);
}

std::string Figure(const std::string& text) {
    return Element("p", text, "figure");
}

std::string Note(const std::string& text) {
    return Element("p", text, "note");
}

std::string Identity(const Report& report) {
    std::string facts =
        Term("Machine type", report.machineType == kUnknownType ? Element("span", "unknown", "none")
                                                                : Shown(report.machineType));
    facts += Term("Model", Shown(report.modelNumber));
    facts += Term("Serial number", Shown(report.serialNumber));
    if (report.bladeSlot) {
        facts += Term("Blade slot", std::to_string(*report.bladeSlot));
    }
    facts += Term("System UUID", Code(report.systemUuid));
    if (!report.chassisUuid.empty()) {
        facts += Term("Chassis UUID", Code(report.chassisUuid));
    }
    return Element("header",
                   Element("p", Shown(report.manufacturer), "maker") + "<h1 tabindex=\"-1\">" +
                       Escape(Title(report)) + "</h1>" + Element("dl", facts, "facts"),
                   "identity");
}

/// A picture of the sockets; the words beside it say the same.
std::string Sockets(const Report& report) {
    constexpr int kMost = 64;
    const int slots = std::max(report.processorSlots, report.activeProcessors);
    if (slots <= 0 || slots > kMost) {
        return "";
    }
    std::string sockets;
    for (int i = 0; i < slots; ++i) {
        sockets += i < report.activeProcessors ? "<i class=\"on\"></i>" : "<i></i>";
    }
    return "<div class=\"sockets\" aria-hidden=\"true\">" + sockets + "</div>";
}

std::string Processor(int family, int speed) {
    const char* const name = ProcessorFamilyName(family);
    const std::string text = name != nullptr ? name : "Family " + std::to_string(family);
    return Escape(text) + (speed > 0 ? ", " + Speed(speed) : "");
}

/// One line for each kind of processor, in the order of the first of each.
std::string ProcessorList(const Report& report) {
    std::vector<std::pair<std::string, int>> kinds;
    for (size_t i = 0; i < report.processorFamilies.size(); ++i) {
        const std::string text = Processor(report.processorFamilies[i], report.processorSpeeds[i]);
        const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                       [&](const auto& known) { return known.first == text; });
        if (kind == kinds.end()) {
            kinds.emplace_back(text, 1);
        } else {
            ++kind->second;
        }
    }
    std::string list;
    for (const auto& [text, count] : kinds) {
        list += Element("li", std::to_string(count) + " × " + text);
    }
    return list.empty() ? "" : Element("ul", list, "plain");
}

std::string Processors(const Report& report) {
    return Card("Processors",
                Figure(Grouped(report.activeProcessors) +
                       Element("small", " of " + Count(report.processorSlots, "socket"))) +
                    Sockets(report) + ProcessorList(report) +
                    Note(report.x64 ? "Runs 64-bit code" : "Does not run 64-bit code"),
                "processors");
}

std::string Memory(const Report& report) {
    return Card("Memory",
                Figure(MemorySize(report.memoryMb)) +
                    Note(Grouped(report.memoryMb) + " MiB in all memory devices"),
                "memory");
}

std::string Enclosures(const Report& report) {
    std::string list;
    for (const uint32_t type : report.enclosureTypes) {
        const char* const name = EnclosureName(type);
        const std::string digits = Hex(type, kEnclosureTypeDigits);
        list += Element("li", (name != nullptr ? name : "Type " + digits) +
                                  Element("small", name != nullptr ? " " + digits : ""));
    }
    return Card(
        "Enclosures",
        Figure(Grouped(report.enclosures)) +
            (list.empty() ? Note("The firmware describes none") : Element("ul", list, "plain")),
        "enclosures");
}

std::string Firmware(const Report& report) {
    std::string facts = Term("BIOS version", Shown(report.biosVersion));
    facts += Term("Build level", Shown(report.biosBuildLevel));
    facts += Term("Date", Shown(report.biosDate));
    facts += Term("Language", Shown(report.biosLanguage));
    facts += Term("ROM diagnostics", Shown(report.diagnosticsBuildLevel));
    if (!report.teskBuildLevel.empty()) {
        facts += Term("TESK", Shown(report.teskBuildLevel));
    }
    if (!report.koruBuildLevel.empty()) {
        facts += Term("KORU", Shown(report.koruBuildLevel));
    }
    return Card("Firmware", Element("dl", facts, "facts"), "firmware");
}

}  // namespace

std::string Title(const Report& report) {
    const size_t end = report.productName.find_last_not_of(' ');
    if (end != std::string::npos) {
        return report.productName.substr(0, end + 1);
    }
    return report.machineType == kUnknownType || report.machineType.empty()
               ? "Unknown machine"
               : "Machine type " + report.machineType;
}

std::string TypeAndModel(const Report& report) {
    const std::string type = report.machineType == kUnknownType ? "" : report.machineType;
    const bool hasBoth = !type.empty() && !report.modelNumber.empty();
    return type + (hasBoth ? "-" : "") + report.modelNumber;
}

std::string MachineSections(const Report& report) {
    return Identity(report) +
           Element("div",
                   Processors(report) + Memory(report) + Enclosures(report) + Firmware(report),
                   "cards");
}

}  // namespace report
