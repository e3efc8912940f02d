// What a machine is called among several.
#include "export/MachineName.h"

#include <filesystem>
#include <string_view>

#include "export/LineReader.h"
#include "export/Utf8.h"

namespace report {

namespace {

// Others may be a part of the host's name: web1.example.org.
constexpr std::string_view kSuffixes[] = {".ini", ".properties", ".report", ".txt"};

std::string WithoutSuffix(const std::string& name) {
    for (const std::string_view suffix : kSuffixes) {
        if (name.size() > suffix.size() && name.ends_with(suffix)) {
            return name.substr(0, name.size() - suffix.size());
        }
    }
    return name;
}

}  // namespace

std::string MachineName(const Report& report) {
    const bool isNamed = report.source != kStandardInput;
    const std::string file = std::filesystem::path(report.source).filename().string();
    const std::string name = isNamed ? ToUtf8(WithoutSuffix(file)) : "";
    return isNamed && report.place == 1 ? name : name + "#" + std::to_string(report.place);
}

}  // namespace report
