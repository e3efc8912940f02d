// The report as metrics in Prometheus' text format.
#include "export/Prometheus.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "export/PciCounts.h"
#include "export/ReportKeys.h"

namespace report {

namespace {

struct Label {
    const char* name;
    std::string value;
};

using Labels = std::vector<Label>;

std::string Escaped(const std::string& value) {
    std::string escaped;
    for (const char c : value) {
        if (c == '\\' || c == '"' || c == '\n') {
            escaped += '\\';
        }
        escaped += c == '\n' ? 'n' : c;
    }
    return escaped;
}

/// Writes the samples of one family.
class Samples {
  public:
    explicit Samples(const char* family) : m_family(family) {}

    /// All samples from here on are of this machine. Empty where there is only one.
    void SetMachine(const std::string& machine) { m_machine = machine; }

    void Add(int64_t value, const Labels& labels = {}) {
        std::string list;
        Append("machine", m_machine, list);
        for (const Label& label : labels) {
            Append(label.name, label.value, list);
        }
        m_text +=
            m_family + (list.empty() ? "" : "{" + list + "}") + " " + std::to_string(value) + "\n";
    }

    /// A sample whose labels are what it says.
    void AddInfo(const Labels& labels) { Add(1, labels); }

    const std::string& Text() const { return m_text; }

  private:
    /// An empty label is the same as none.
    static void Append(const char* name, const std::string& value, std::string& list) {
        if (!value.empty()) {
            list += std::string(list.empty() ? "" : ",") + name + "=\"" + Escaped(value) + "\"";
        }
    }

    std::string m_family;
    std::string m_machine;
    std::string m_text;
};

void AddSystem(const Report& report, Samples& samples) {
    samples.AddInfo({{"machine_type", report.machineType},
                     {"model_number", report.modelNumber},
                     {"serial_number", report.serialNumber},
                     {"product_name", report.productName},
                     {"manufacturer", report.manufacturer},
                     {"system_uuid", report.systemUuid}});
}

void AddBios(const Report& report, Samples& samples) {
    samples.AddInfo({{"version", report.biosVersion},
                     {"build_level", report.biosBuildLevel},
                     {"date", report.biosDate},
                     {"language", report.biosLanguage}});
}

void AddBuildLevels(const Report& report, Samples& samples) {
    const Labels levels = {{"rom_diagnostics", report.diagnosticsBuildLevel},
                           {"tesk", report.teskBuildLevel},
                           {"koru", report.koruBuildLevel}};
    for (const Label& level : levels) {
        if (!level.value.empty()) {
            samples.AddInfo({{"part", level.name}, {"build_level", level.value}});
        }
    }
}

void AddBlade(const Report& report, Samples& samples) {
    const std::string slot = report.bladeSlot ? std::to_string(*report.bladeSlot) : "";
    if (!slot.empty() || !report.chassisUuid.empty()) {
        samples.AddInfo({{"slot", slot}, {"chassis_uuid", report.chassisUuid}});
    }
}

void AddEnclosureTypes(const Report& report, Samples& samples) {
    for (size_t i = 0; i < report.enclosureTypes.size(); ++i) {
        samples.AddInfo({{"enclosure", std::to_string(i)},
                         {"type", Hex(report.enclosureTypes[i], kEnclosureTypeDigits)}});
    }
}

void AddFamilies(const Report& report, Samples& samples) {
    for (size_t i = 0; i < report.processorFamilies.size(); ++i) {
        samples.AddInfo({{"processor", std::to_string(i)},
                         {"family", std::to_string(report.processorFamilies[i])}});
    }
}

void AddSpeeds(const Report& report, Samples& samples) {
    constexpr int64_t kHertz = 1'000'000;
    for (size_t i = 0; i < report.processorSpeeds.size(); ++i) {
        samples.Add(report.processorSpeeds[i] * kHertz, {{"processor", std::to_string(i)}});
    }
}

void AddFunctions(const Report& report, Samples& samples) {
    for (const auto& [classCode, count] : CountFunctions(report).byClass) {
        samples.Add(count, {{"class", Hex(classCode, 4)}});
    }
}

void AddEnclosures(const Report& report, Samples& samples) {
    samples.Add(report.enclosures);
}

void AddX64(const Report& report, Samples& samples) {
    samples.Add(report.x64 ? 1 : 0);
}

void AddSlots(const Report& report, Samples& samples) {
    samples.Add(report.processorSlots);
}

void AddActiveProcessors(const Report& report, Samples& samples) {
    samples.Add(report.activeProcessors);
}

void AddMemory(const Report& report, Samples& samples) {
    constexpr int64_t kBytes = 1'048'576;
    samples.Add(report.memoryMb * kBytes);
}

void AddAllFunctions(const Report& report, Samples& samples) {
    samples.Add(report.pciTotal);
}

struct Family {
    const char* name;
    const char* help;
    void (*add)(const Report& report, Samples& samples);
};

constexpr Family kFamilies[] = {
    {"systally_system_info", "The machine's identity; always 1.", AddSystem},
    {"systally_bios_info", "The machine's BIOS; always 1.", AddBios},
    {"systally_build_level_info", "Build levels of further firmware; always 1.", AddBuildLevels},
    {"systally_blade_info", "Where a blade sits; always 1.", AddBlade},
    {"systally_enclosures", "Enclosures that the firmware describes.", AddEnclosures},
    {"systally_enclosure_info", "An enclosure's type as in DSP0134 7.4.1, hexadecimal; always 1.",
     AddEnclosureTypes},
    {"systally_processor_x64", "Whether the processor runs 64-bit code.", AddX64},
    {"systally_processor_slots", "Processor sockets.", AddSlots},
    {"systally_active_processors", "Processor sockets in use.", AddActiveProcessors},
    {"systally_processor_info", "An active processor's family as in DSP0134 7.5.2; always 1.",
     AddFamilies},
    {"systally_processor_speed_hertz", "An active processor's current speed.", AddSpeeds},
    {"systally_memory_bytes", "The sizes of all memory devices together.", AddMemory},
    {"systally_pci_all_functions",
     "PCI functions of the kernel, those outside buses 0 to 255 included.", AddAllFunctions},
    {"systally_pci_functions",
     "PCI functions by class: base class and sub-class, two hexadecimal digits each.",
     AddFunctions},
};

void AppendHead(const Family& family, std::string& out) {
    out += std::string("# HELP ") + family.name + " " + family.help + "\n";
    out += std::string("# TYPE ") + family.name + " gauge\n";
}

class PrometheusMetrics : public Shape {
  public:
    std::string Add(const Report& report, std::string&) override {
        if (!m_names.insert(report.machine).second) {
            return "a second machine called " + report.machine +
                   ", and metrics need a name of its own";
        }
        m_reports.push_back(report);
        return "";
    }

    /// All samples of a family stand together, so nothing is written before the last machine.
    void Finish(std::string& out) override {
        for (const Family& family : kFamilies) {
            Samples samples(family.name);
            for (const Report& report : m_reports) {
                samples.SetMachine(m_reports.size() > 1 ? report.machine : "");
                family.add(report, samples);
            }
            if (!samples.Text().empty()) {
                AppendHead(family, out);
                out += samples.Text();
            }
        }
    }

  private:
    std::unordered_set<std::string> m_names;
    std::vector<Report> m_reports;
};

}  // namespace

std::unique_ptr<Shape> MakePrometheusMetrics() {
    return std::make_unique<PrometheusMetrics>();
}

}  // namespace report
