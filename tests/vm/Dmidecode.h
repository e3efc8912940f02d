// The SMBIOS structures as dmidecode tells them.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace vm {

struct SmbiosStructure {
    int type;
    /// The fields that stand on one line, such as "Release Date".
    std::map<std::string, std::string> fields;

    /// Throws std::out_of_range when dmidecode did not print the field.
    const std::string& Field(const std::string& name) const { return fields.at(name); }
};

using SmbiosStructures = std::vector<SmbiosStructure>;

/// Throws std::runtime_error when the text holds no structure.
SmbiosStructures ReadDmidecode(const std::string& text);

SmbiosStructures OfType(const SmbiosStructures& structures, int type);

}  // namespace vm
