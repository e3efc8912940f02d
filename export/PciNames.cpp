// The names of PCI vendors, devices and classes.
#include "export/PciNames.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "export/Utf8.h"

namespace report {

namespace {

constexpr const char* kLists[] = {"/usr/share/hwdata/pci.ids", "/usr/share/misc/pci.ids"};

/// Takes a hexadecimal number and the blanks behind it off the line. False when there is none.
bool TakeNumber(std::string_view& line, uint64_t& number) {
    const char* const end = line.data() + line.size();
    const auto [last, error] = std::from_chars(line.data(), end, number, 16);
    if (error != std::errc() || last == end || *last != ' ') {
        return false;
    }
    line.remove_prefix(static_cast<size_t>(last - line.data()));
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return true;
}

size_t TakeIndent(std::string_view& line) {
    const size_t depth = std::min(line.find_first_not_of('\t'), line.size());
    line.remove_prefix(depth);
    return depth;
}

constexpr uint64_t Join(uint64_t high, uint64_t low) {
    return high << 16 | low;
}

/// Sets `error` when the file cannot be read.
std::string ReadWhole(const std::string& path, int& error) {
    std::string text;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ssize_t count = file;
    for (std::array<char, 65536> block; count >= 0;) {
        count = read(file, block.data(), block.size());
        if (count <= 0) {
            break;
        }
        text.append(block.data(), static_cast<size_t>(count));
    }
    error = count < 0 ? errno : 0;
    if (file >= 0) {
        close(file);
    }
    return text;
}

}  // namespace

PciNames::PciNames(const std::string& path) {
    int error = 0;
    if (!path.empty()) {
        m_list = ReadWhole(path, error);
        m_failure = error == 0 ? "" : path + ": cannot read: " + std::strerror(error);
    }
    for (const char* list : kLists) {
        if (path.empty() && m_list.empty()) {
            m_list = ReadWhole(list, error);
        }
    }
    Parse();
    if (!path.empty() && !m_list.empty() && IsEmpty()) {
        m_failure = path + ": no list of PCI names";
    }
}

/// The list has vendors first and classes, whose lines begin with "C ", behind them.
void PciNames::Parse() {
    constexpr std::string_view kClassLine = "C ";
    bool isClasses = false;
    for (std::string_view rest = m_list; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        isClasses = line.front() == '\t' ? isClasses : line.starts_with(kClassLine);
        if (isClasses) {
            ParseClassLine(line.front() == '\t' ? line : line.substr(kClassLine.size()));
        } else {
            ParseVendorLine(line);
        }
    }
}

void PciNames::ParseVendorLine(std::string_view line) {
    uint64_t numbers[2] = {};
    const size_t depth = TakeIndent(line);
    if (depth > 2 || !TakeNumber(line, numbers[0]) ||
        (depth == 2 && !TakeNumber(line, numbers[1]))) {
        return;
    }
    if (depth == 0) {
        m_current[0] = numbers[0];
        m_vendors[numbers[0]] = line;
    } else if (depth == 1) {
        m_current[1] = Join(m_current[0], numbers[0]);
        m_devices[m_current[1]] = line;
    } else {
        m_subsystems[m_current[1] << 32 | Join(numbers[0], numbers[1])] = line;
    }
}

void PciNames::ParseClassLine(std::string_view line) {
    uint64_t number = 0;
    const size_t depth = TakeIndent(line);
    // Deeper lines name programming interfaces.
    if (depth > 1 || !TakeNumber(line, number)) {
        return;
    }
    if (depth == 0) {
        m_current[0] = number;
        m_baseClasses[number] = line;
    } else {
        m_classes[m_current[0] << 8 | number] = line;
    }
}

std::string PciNames::Find(const Names& names, uint64_t key) {
    const auto found = names.find(key);
    return found == names.end() ? "" : ToUtf8(found->second);
}

std::string PciNames::Vendor(uint32_t vendor) const {
    return Find(m_vendors, vendor);
}

std::string PciNames::Device(uint32_t vendor, uint32_t device) const {
    return Find(m_devices, Join(vendor, device));
}

std::string PciNames::Subsystem(const PciFunction& function) const {
    return Find(m_subsystems, Join(function.vendorId, function.deviceId) << 32 |
                                  Join(function.subVendorId, function.subDeviceId));
}

std::string PciNames::Class(uint32_t classCode) const {
    std::string name = Find(m_classes, classCode >> 8);
    return name.empty() ? BaseClass(classCode) : name;
}

std::string PciNames::BaseClass(uint32_t classCode) const {
    return Find(m_baseClasses, classCode >> 16);
}

}  // namespace report
