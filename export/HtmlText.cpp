// Pieces of HTML.
#include "export/HtmlText.h"

#include <algorithm>
#include <cstdlib>

#include "export/ReportKeys.h"
#include "export/Utf8.h"

namespace report {

namespace {

const char* Reference(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return nullptr;
    }
}

/// An ASCII control character as its picture, from U+2400 on; a later one, which has none, as the
/// number that editors show for it.
std::string ControlPicture(std::string_view character) {
    constexpr char kDelete = 0x7F;
    if (character.size() > 1) {
        return "&lt;" + LowerCase(Hex(static_cast<uint8_t>(character.back()), 2)) + "&gt;";
    }
    const int offset = character.front() == kDelete ? 0x21 : character.front();
    return {'\xE2', '\x90', static_cast<char>(0x80 + offset)};
}

/// `tenths` as a number with one decimal, which stays away when it is 0.
std::string Tenths(int64_t tenths) {
    const std::string whole = Grouped(tenths / 10);
    const int64_t rest = tenths % 10;
    return rest == 0 ? whole : whole + "." + std::to_string(rest);
}

}  // namespace

std::string Escape(std::string_view text) {
    std::string escaped;
    while (!text.empty()) {
        const std::string_view character =
            text.substr(0, std::max<size_t>(SequenceLength(text), 1));
        if (const char* reference = Reference(character.front())) {
            escaped += reference;
        } else if (IsControl(character)) {
            escaped += ControlPicture(character);
        } else {
            escaped += character;
        }
        text.remove_prefix(character.size());
    }
    return escaped;
}

std::string Element(const char* tag, const std::string& content, const std::string& cssClass) {
    std::string element = std::string("<") + tag;
    if (!cssClass.empty()) {
        element += " class=\"" + cssClass + "\"";
    }
    element += ">" + content;
    return element + "</" + tag + ">";
}

std::string Shown(const std::string& value) {
    const bool isBlank = value.find_first_not_of(' ') == std::string::npos;
    return isBlank ? Element("span", "not given", "none") : Escape(value);
}

std::string Term(const char* term, const std::string& description) {
    return Element("div", Element("dt", term) + Element("dd", description));
}

std::string Grouped(int64_t number) {
    std::string digits = std::to_string(std::abs(number));
    for (size_t end = digits.size(); end > 3; end -= 3) {
        digits.insert(end - 3, 1, ',');
    }
    return (number < 0 ? "-" : "") + digits;
}

std::string MemorySize(int64_t megabytes) {
    constexpr int64_t kStep = 1024;
    if (megabytes < kStep) {
        return Grouped(megabytes) + " MiB";
    }
    const bool isTerabytes = megabytes >= kStep * kStep;
    const int64_t unit = isTerabytes ? kStep * kStep : kStep;
    return Tenths((megabytes * 10 + unit / 2) / unit) + (isTerabytes ? " TiB" : " GiB");
}

std::string Speed(int megahertz) {
    constexpr int kGigahertz = 1000;
    if (megahertz < kGigahertz) {
        return std::to_string(megahertz) + " MHz";
    }
    const int hundredths = (megahertz + 5) / 10;
    const std::string digits = std::to_string(hundredths);
    const size_t point = digits.size() - 2;
    return digits.substr(0, point) + "." + digits.substr(point) + " GHz";
}

std::string Count(int64_t number, const std::string& noun) {
    return Grouped(number) + " " + noun + (number == 1 ? "" : "s");
}

}  // namespace report
