// Reads what dmidecode prints.
#include "vm/Dmidecode.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace vm {

SmbiosStructures ReadDmidecode(const std::string& text) {
    const std::string mark = ", DMI type ";
    std::istringstream stream(text);
    SmbiosStructures structures;
    for (std::string line; std::getline(stream, line);) {
        const size_t type = line.find(mark);
        const size_t colon = line.find(':');
        if (line.starts_with("Handle 0x") && type != std::string::npos) {
            structures.push_back({std::stoi(line.substr(type + mark.size())), {}});
        } else if (!structures.empty() && line.starts_with("\t") && !line.starts_with("\t\t") &&
                   colon != std::string::npos && colon + 2 <= line.size()) {
            structures.back().fields[line.substr(1, colon - 1)] = line.substr(colon + 2);
        }
    }
    if (structures.empty()) {
        throw std::runtime_error("dmidecode tells of no structure: " + text);
    }
    return structures;
}

SmbiosStructures OfType(const SmbiosStructures& structures, int type) {
    SmbiosStructures result;
    std::copy_if(structures.begin(), structures.end(), std::back_inserter(result),
                 [&](const SmbiosStructure& each) { return each.type == type; });
    return result;
}

}  // namespace vm
