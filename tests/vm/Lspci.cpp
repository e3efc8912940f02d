// Reads what lspci prints.
#include "vm/Lspci.h"

#include <sstream>
#include <stdexcept>

namespace vm {

namespace {

unsigned Hex(const std::string& text) {
    return static_cast<unsigned>(std::stoul(text, nullptr, 16));
}

// "0000:82:1d.7" to its parts; domain 0 alone is shown in the kernel's tree by bus numbers.
PciFunction AtSlot(const std::string& slot) {
    if (slot.size() != 12 || !slot.starts_with("0000:")) {
        throw std::runtime_error("no slot of domain 0: " + slot);
    }
    return {slot.substr(5),
            Hex(slot.substr(5, 2)),
            Hex(slot.substr(8, 2)),
            Hex(slot.substr(11, 1)),
            {},
            {}};
}

bool IsLineOfBytes(const std::string& line) {
    return line.size() > 3 && line.find(": ") < 4;
}

PciFunctions ReadNames(const std::string& text) {
    PciFunctions functions;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        const size_t tab = line.find(":\t");
        if (line.starts_with("Slot:\t")) {
            functions.push_back(AtSlot(line.substr(tab + 2)));
        } else if (tab != std::string::npos && !functions.empty()) {
            functions.back().named[line.substr(0, tab)] = line.substr(tab + 2);
        }
    }
    return functions;
}

void AddBytes(PciFunction& function, const std::string& row) {
    std::istringstream stream(row);
    for (std::string byte; stream >> byte;) {
        function.bytes.push_back(static_cast<uint8_t>(Hex(byte)));
    }
}

}  // namespace

PciFunctions ReadLspci(const std::string& named, const std::string& bytes) {
    PciFunctions functions = ReadNames(named);
    std::istringstream stream(bytes);
    size_t count = 0;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("0000:")) {
            if (count >= functions.size() || functions[count].slot != line.substr(5, 7)) {
                throw std::runtime_error("lspci names different functions: " + line);
            }
            ++count;
        } else if (count > 0 && IsLineOfBytes(line)) {
            AddBytes(functions[count - 1], line.substr(line.find(": ") + 2));
        }
    }
    if (count == 0 || count != functions.size()) {
        throw std::runtime_error("lspci names no function, or different ones");
    }
    return functions;
}

}  // namespace vm
