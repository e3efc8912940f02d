// One page for a machine or for a fleet.
#include "export/Html.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "export/Assets.h"
#include "export/HtmlMachine.h"
#include "export/HtmlText.h"
#include "export/Utf8.h"

namespace report {

namespace {

constexpr char kIcon[] =
    "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16'%3E"
    "%3Crect x='1' y='2' width='14' height='5' rx='1.5' fill='%230b6bcb'/%3E"
    "%3Crect x='1' y='9' width='14' height='5' rx='1.5' fill='%230b6bcb'/%3E"
    "%3Ccircle cx='4' cy='4.5' r='1' fill='white'/%3E%3Ccircle cx='4' cy='11.5' r='1' "
    "fill='white'/%3E%3C/svg%3E";

/// Nothing is ever loaded, whatever a text of the firmware may hold.
std::string Policy(bool hasScript) {
    return std::string("default-src 'none'; img-src data:; style-src 'unsafe-inline'") +
           (hasScript ? "; script-src 'unsafe-inline'" : "") +
           "; base-uri 'none'; form-action 'none'";
}

std::string Head(const std::string& title, bool isFleet) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
           Policy(isFleet) +
           "\">\n<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta name=\"generator\" content=\"systally-export\">\n<title>" +
           Escape(title) + "</title>\n<link rel=\"icon\" href=\"" + kIcon + "\">\n<style>\n" +
           kPageStyle + kMachineStyle + (isFleet ? kFleetStyle : "") +
           "</style>\n</head>\n<body>\n";
}

constexpr char kEnd[] = "</body>\n</html>\n";

std::string Foot(bool hasNames) {
    return std::string("<footer>Written by systally-export. ") +
           (hasNames ? "The names of PCI vendors, devices and classes are those of the PCI ID list."
                     : "There was no PCI ID list, so PCI functions have numbers for names.") +
           "</footer>\n";
}

/// A column of the fleet's table.
struct Column {
    const char* heading;
    const char* cssClass;  ///< on how narrow a screen it stays, and whether it is a number
    std::string (*text)(const Report& report);
    int64_t (*number)(const Report& report) = nullptr;  ///< what it is sorted by, if not the text
};

std::string Processors(const Report& report) {
    return std::to_string(report.activeProcessors) + "/" + std::to_string(report.processorSlots);
}

std::string Slot(const Report& report) {
    return report.bladeSlot ? std::to_string(*report.bladeSlot) : "";
}

constexpr Column kColumns[] = {
    {"Product", "wide2", Title},
    {"Type", "wide2", TypeAndModel},
    {"Serial number", "wide1", [](const Report& report) { return report.serialNumber; }},
    {"BIOS", "wide3", [](const Report& report) { return report.biosVersion; }},
    {"Processors", "number wide3", Processors,
     [](const Report& report) { return int64_t{report.activeProcessors}; }},
    {"Memory", "number", [](const Report& report) { return MemorySize(report.memoryMb); },
     [](const Report& report) { return int64_t{report.memoryMb}; }},
    {"PCI", "number wide3", [](const Report& report) { return std::to_string(report.pciTotal); },
     [](const Report& report) { return int64_t{report.pciTotal}; }},
    {"Slot", "number wide2", Slot},
};

std::string ColumnHead(const char* heading, const char* cssClass) {
    return std::string("<th role=\"columnheader\" scope=\"col\" class=\"") + cssClass +
           "\" aria-sort=\"none\"><button type=\"button\">" + heading + "</button></th>";
}

std::string TableHead() {
    std::string headings = ColumnHead("Machine", "");
    for (const Column& column : kColumns) {
        headings += ColumnHead(column.heading, column.cssClass);
    }
    return "<div class=\"frame\"><table role=\"table\">\n"
           "<caption>All machines, one a row</caption>\n"
           "<thead role=\"rowgroup\"><tr role=\"row\">" +
           headings + "</tr></thead>\n<tbody role=\"rowgroup\">\n";
}

std::string Cell(const Column& column, const Report& report) {
    std::string cell = std::string("<td role=\"cell\" class=\"") + column.cssClass + "\"";
    if (column.number != nullptr) {
        cell += " data-v=\"" + std::to_string(column.number(report)) + "\"";
    }
    return cell + ">" + Escape(column.text(report)) + "</td>";
}

/// The row's first cell leads to the machine. What the filter finds beyond the columns stands in
/// an attribute.
std::string Row(const Report& report, size_t index) {
    const std::string more = report.systemUuid + " " + report.chassisUuid + " " + report.source;
    const std::string link =
        "<a href=\"#" + std::to_string(index) + "\">" + Escape(report.machine) + "</a>";
    const std::string serialNumber =
        report.serialNumber.empty() ? "" : Element("span", ", " + Escape(report.serialNumber));
    std::string row = "<tr role=\"row\" data-more=\"" + Escape(ToUtf8(more)) +
                      "\"><th role=\"rowheader\" scope=\"row\">" + link +
                      Element("small", Escape(Title(report)) + serialNumber, "also") + "</th>";
    for (const Column& column : kColumns) {
        row += Cell(column, report);
    }
    return row + "</tr>\n";
}

/// HTML that the page does not lay out until it is asked for. Safe in a script element: no value
/// has a "<" left.
std::string Sleeping(const std::string& attributes, const std::string& html) {
    return "<script type=\"text/plain\" " + attributes + ">" + html + "</script>\n";
}

class HtmlPage : public Shape {
  public:
    explicit HtmlPage(const std::string& pciIds) : m_names(pciIds) {}

    const std::string& Failure() const { return m_names.Failure(); }

    std::string Add(const Report& report, std::string&) override {
        const std::string pci = PciSection(report, m_names);
        const std::string sections = MachineSections(report);
        if (m_count == 0) {
            m_title = Title(report) + " " + report.serialNumber;
            m_first = sections + pci;
        }
        m_rows += Row(report, ++m_count);
        AddSleeping(sections, pci);
        m_processors += report.activeProcessors;
        m_memory += report.memoryMb;
        m_products.insert(Title(report));
        return "";
    }

    void Finish(std::string& out) override {
        if (m_count == 1) {
            out += Head(m_title, false) + "<main class=\"machine\">" + m_first + "</main>\n" +
                   Foot(!m_names.IsEmpty()) + kEnd;
        } else {
            AppendFleet(out);
        }
    }

  private:
    /// Machines of one kind share their PCI section.
    void AddSleeping(const std::string& sections, const std::string& pci) {
        const auto [entry, isNew] = m_pciSections.emplace(pci, m_pciSections.size() + 1);
        const std::string id = std::to_string(entry->second);
        if (isNew) {
            m_sleeping += Sleeping("id=\"pci" + id + "\"", pci);
        }
        m_sleeping += Sleeping(
            "id=\"machine" + std::to_string(m_count) + "\" data-pci=\"" + id + "\"", sections);
    }

    std::string Summary() const {
        return Count(static_cast<int64_t>(m_products.size()), "product") + " · " +
               Count(m_processors, "processor") + " · " + MemorySize(m_memory) + " of memory";
    }

    void AppendFleet(std::string& out) const {
        const std::string machines = Count(static_cast<int64_t>(m_count), "machine");
        out += Head(machines, true) + "<main id=\"fleet\" class=\"fleet\">\n";
        out += "<header><h1 tabindex=\"-1\">" + machines + "</h1>" + Element("p", Summary()) +
               "</header>\n";
        out += kFleetControls + TableHead() + m_rows + "</tbody>\n</table></div>\n</main>\n";
        out += "<main id=\"machine\" class=\"machine\" hidden></main>\n";
        out += Foot(!m_names.IsEmpty()) + m_sleeping + "<script>\n" + kFleetScript + "</script>\n" +
               kEnd;
    }

    PciNames m_names;
    size_t m_count = 0;
    std::string m_title;
    std::string m_first;
    std::string m_rows;
    std::string m_sleeping;
    std::unordered_map<std::string, size_t> m_pciSections;
    std::unordered_set<std::string> m_products;
    int64_t m_processors = 0;
    int64_t m_memory = 0;
};

}  // namespace

std::unique_ptr<Shape> MakeHtmlPage(const std::string& pciIds, std::string& failure) {
    auto page = std::make_unique<HtmlPage>(pciIds);
    failure = page->Failure();
    return failure.empty() ? std::move(page) : nullptr;
}

}  // namespace report
