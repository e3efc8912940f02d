// The report as an external fact of Facter.
#include "export/Facter.h"

#include <string>

#include "export/PciCounts.h"
#include "export/ReportKeys.h"

namespace report {

namespace {

/// Each character that is not printable ASCII as one question mark.
std::string ToAscii(const std::string& text) {
    std::string ascii;
    for (const char c : text) {
        const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if (' ' <= c && c <= '~') {
            ascii += c;
        } else if (!continues) {
            ascii += '?';
        }
    }
    return ascii;
}

template <typename List, typename ToText>
std::string Join(const List& list, const ToText& toText) {
    std::string joined;
    for (const auto& element : list) {
        joined += (joined.empty() ? "" : ",") + toText(element);
    }
    return joined;
}

/// A field as text; empty when the report has no value.
struct ToText {
    std::string operator()(Text field) const { return ToAscii(report.*field); }
    std::string operator()(Number field) const { return std::to_string(report.*field); }
    std::string operator()(Flag field) const { return report.*field ? "true" : "false"; }
    std::string operator()(OptionalNumber field) const {
        return report.*field ? std::to_string(*(report.*field)) : "";
    }
    std::string operator()(NumberList field) const {
        return Join(report.*field, [](int number) { return std::to_string(number); });
    }
    std::string operator()(HexList field) const {
        return Join(report.*field, [](uint32_t type) { return Hex(type, kEnclosureTypeDigits); });
    }

    const Report& report;
};

/// Facter knows no null: an absent fact is one without a line.
void AppendFact(const std::string& key, const std::string& value, std::string& out) {
    if (!value.empty()) {
        out += "systally_" + LowerCase(key) + "=" + value + "\n";
    }
}

void AppendCounts(const PciCounts& counts, std::string& out) {
    for (const auto& [classCode, count] : counts.byClass) {
        AppendFact("pci_class_" + Hex(classCode, 4), std::to_string(count), out);
    }
    for (const auto& [ids, count] : counts.byIds) {
        AppendFact("pci_id_" + Hex(ids.first, 4) + "_" + Hex(ids.second, 4), std::to_string(count),
                   out);
    }
}

class FacterFacts : public Shape {
  public:
    bool TakesSeveral() const override { return false; }

    std::string Add(const Report& report, std::string&) override {
        for (const SystemKey& key : SystemKeys()) {
            AppendFact(key.name, std::visit(ToText{report}, key.field), m_text);
        }
        AppendFact(PciTotalName(), std::to_string(report.pciTotal), m_text);
        AppendCounts(CountFunctions(report), m_text);
        return "";
    }

    void Finish(std::string& out) override { out += m_text; }

  private:
    std::string m_text;
};

}  // namespace

std::unique_ptr<Shape> MakeFacterFacts() {
    return std::make_unique<FacterFacts>();
}

}  // namespace report
