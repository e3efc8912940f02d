// The report as JSON.
#include "export/Json.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "export/ReportKeys.h"
#include "export/Utf8.h"

namespace report {

namespace {

using Object = nlohmann::ordered_json;

/// A field as the JSON value that fits its kind. What the report prints in hexadecimal stays text,
/// so that it looks the same in both.
struct ToValue {
    Object operator()(Text field) const {
        return (report.*field).empty() ? Object() : Object(report.*field);
    }
    Object operator()(Number field) const { return report.*field; }
    Object operator()(Flag field) const { return report.*field; }
    Object operator()(OptionalNumber field) const {
        return report.*field ? Object(*(report.*field)) : Object();
    }
    Object operator()(NumberList field) const { return report.*field; }
    Object operator()(HexList field) const {
        Object list = Object::array();
        for (const uint32_t type : report.*field) {
            list.push_back(Hex(type, kEnclosureTypeDigits));
        }
        return list;
    }

    const Report& report;
};

Object ToObject(const PciFunction& function) {
    Object object;
    for (const PciKey& key : PciKeys()) {
        const uint32_t number = function.*key.field;
        object[LowerCase(key.name)] =
            key.hexDigits == 0 ? Object(number) : Object(Hex(number, key.hexDigits));
    }
    return object;
}

Object ToObject(const Report& report) {
    Object object;
    for (const SystemKey& key : SystemKeys()) {
        object[LowerCase(key.name)] = std::visit(ToValue{report}, key.field);
    }
    object[LowerCase(PciTotalName())] = report.pciTotal;
    Object& functions = object["pci_functions"] = Object::array();
    for (const PciFunction& function : report.pciFunctions) {
        functions.push_back(ToObject(function));
    }
    return object;
}

/// JSON text in which those characters are escaped too that the library leaves: control characters
/// from U+007F on, and U+2028 and U+2029. Some readers take them for the end of a line.
std::string ToText(const Object& object, int indent = -1) {
    std::string json = object.dump(indent);
    // What these characters begin with in UTF-8. Nearly no report holds one.
    if (json.find_first_of("\x7F\xC2\xE2") == std::string::npos) {
        return json;
    }
    std::string text;
    for (std::string_view rest = json; !rest.empty();) {
        const std::string_view character = rest.substr(0, SequenceLength(rest));
        const bool isLineEnd = character == "\u2028" || character == "\u2029";
        if (character == "\n" || !(IsControl(character) || isLineEnd)) {
            text += character;
        } else if (isLineEnd) {
            text += character == "\u2028" ? "\\u2028" : "\\u2029";
        } else {
            text += "\\u00" + LowerCase(Hex(static_cast<uint8_t>(character.back()), 2));
        }
        rest.remove_prefix(character.size());
    }
    return text;
}

class JsonLines : public Shape {
  public:
    std::string Add(const Report& report, std::string& out) override {
        out += ToText(ToObject(report)) + "\n";
        return "";
    }
    void Finish(std::string&) override {}
};

class AnsibleFacts : public Shape {
  public:
    bool TakesSeveral() const override { return false; }
    std::string Add(const Report& report, std::string&) override {
        constexpr int kIndent = 2;
        m_text = ToText(ToObject(report), kIndent) + "\n";
        return "";
    }
    void Finish(std::string& out) override { out += m_text; }

  private:
    std::string m_text;
};

}  // namespace

std::unique_ptr<Shape> MakeJsonLines() {
    return std::make_unique<JsonLines>();
}

std::unique_ptr<Shape> MakeAnsibleFacts() {
    return std::make_unique<AnsibleFacts>();
}

}  // namespace report
