// Pieces of HTML.
#include "export/HtmlText.h"

#include <cstdlib>

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

/// The picture of an ASCII control character, from U+2400 on.
std::string ControlPicture(char c) {
    constexpr char kDelete = 0x7F;
    const int offset = c == kDelete ? 0x21 : c;
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
    constexpr char kDelete = 0x7F;
    std::string escaped;
    for (const char c : text) {
        if (const char* reference = Reference(c)) {
            escaped += reference;
        } else if ((0 <= c && c < ' ') || c == kDelete) {
            escaped += ControlPicture(c);
        } else {
            escaped += c;
        }
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
