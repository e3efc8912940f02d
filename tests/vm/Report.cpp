// Reads the two layouts of the report.
#include "vm/Report.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace vm {

Report::Report(const std::string& text) {
    std::istringstream stream(text);
    std::string prefix;
    for (std::string line; std::getline(stream, line);) {
        const size_t equals = line.find(" = ");
        if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
            prefix = line.substr(1, line.size() - 2) + "_";
        } else if (equals != std::string::npos) {
            lines_.emplace_back(prefix + line.substr(0, equals), line.substr(equals + 3));
        } else if (!line.empty()) {
            throw std::runtime_error("no line of a report: " + line);
        }
    }
}

bool Report::Has(const std::string& key) const {
    return std::any_of(lines_.begin(), lines_.end(),
                       [&](const auto& line) { return line.first == key; });
}

const std::string& Report::Value(const std::string& key) const {
    const auto line = std::find_if(lines_.begin(), lines_.end(),
                                   [&](const auto& each) { return each.first == key; });
    if (line == lines_.end()) {
        throw std::out_of_range("the report has no key " + key);
    }
    return line->second;
}

}  // namespace vm
