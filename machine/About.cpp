// Where a capture comes from, when it was made, and how large it is.
#include "machine/About.h"

#include <sys/utsname.h>

#include <algorithm>
#include <ctime>

namespace machine {

namespace {

std::string Line(const std::string& key, std::string value) {
    std::replace(value.begin(), value.end(), '\n', '?');  // a file's name may hold one
    return key + " = " + value + "\n";
}

std::string Line(const std::string& key, uint64_t value) {
    return Line(key, std::to_string(value));
}

std::string Version(const EntryPoint& entry) {
    return std::to_string(entry.majorVersion) + "." + std::to_string(entry.minorVersion);
}

std::string Kernel() {
    utsname system = {};
    if (uname(&system) != 0) {
        return "unknown";
    }
    // Its node name is the host's and stays out.
    return std::string(system.sysname) + " " + system.release + " " + system.machine;
}

std::string DateInUtc() {
    const std::time_t now = std::time(nullptr);
    std::tm utc = {};
    char text[sizeof "2026-01-31T23:59:59Z and room for later millennia"] = "unknown";
    if (gmtime_r(&now, &utc) != nullptr) {
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    }
    return text;
}

}  // namespace

std::string Summary(const EntryPoint& entry) {
    return "SMBIOS " + Version(entry) + ", " + std::to_string(entry.tableLength) + " bytes, " +
           std::to_string(entry.structureCount.value_or(0)) + " structures";
}

std::string AboutText(const MachineMemory& memory, const PciTreeSummary& pci, bool sanitized) {
    const EntryPoint& entry = memory.entry;
    std::string text = Line("source", memory.source) + Line("smbios", Version(entry)) +
                       Line("entry_point", AddressText(memory.entryAddress)) +
                       Line("table", AddressText(entry.tableAddress));
    if (entry.tableAddress != memory.firmwaresAddress) {
        text += Line("moved_from", AddressText(memory.firmwaresAddress));
    }
    text += Line("table_bytes", entry.tableLength) +
            Line("structures", entry.structureCount.value_or(0));
    for (const auto* losses : {&memory.losses, &pci.losses}) {
        for (const std::string& loss : *losses) {
            text += Line("loss", loss);
        }
    }
    return text + Line("memory_bytes", memory.image.Size()) + Line("pci_functions", pci.functions) +
           Line("pci_bytes", pci.bytes) + Line("sanitized", sanitized ? "yes" : "no") +
           Line("kernel", Kernel()) + Line("date", DateInUtc());
}

}  // namespace machine
