// The keys of a report in their order, each with the field that holds its value.
// Two tables and the key between them, for the parser and the outputs that print every key: JSON
// and facts. Metrics and pages choose what they show, and say it in their own words.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "export/Report.h"

namespace report {

using Text = std::string Report::*;
using Number = int Report::*;
using Flag = bool Report::*;
using OptionalNumber = std::optional<int> Report::*;
using NumberList = std::vector<int> Report::*;
using HexList = std::vector<uint32_t> Report::*;

struct SystemKey {
    const char* name;
    std::variant<Text, Number, Flag, OptionalNumber, NumberList, HexList> field;
    bool mayBeMissing = false;  ///< the whole line stands only where there is a value

    /// Whether the key carries an index. The lines of neighbouring lists alternate, and the number
    /// before them says how many there are.
    bool IsList() const {
        return std::holds_alternative<NumberList>(field) || std::holds_alternative<HexList>(field);
    }
};

struct PciKey {
    const char* name;
    uint32_t PciFunction::*field;
    int hexDigits;  ///< 0 for a decimal number
    uint32_t largest;
};

std::span<const SystemKey> SystemKeys();
std::span<const PciKey> PciKeys();

/// The key of the number of PCI functions, which stands before their own.
inline constexpr char kPciTotal[] = "Total_Number_Of_Devices";
/// The same among the keys of the system.
std::string PciTotalName();

/// "Machine_Type" gives "machine_type".
std::string LowerCase(std::string_view text);

/// Upper-case hexadecimal digits, at least `digits` of them.
std::string Hex(uint32_t number, int digits);

/// The digits of an enclosure type.
inline constexpr int kEnclosureTypeDigits = 2;

}  // namespace report
