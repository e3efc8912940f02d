// Searches bytes for texts and numbers, and puts placeholders of the same length there.
#include "machine/Secrets.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <optional>
#include <string_view>

namespace machine {

namespace {

constexpr size_t kShortestStrong = 5;  // shorter ones occur by chance
constexpr size_t kShortestWeak = 3;    // "1" and "A1" are in every second text
constexpr size_t kUuidSize = 16;
constexpr uint8_t kUuidPlaceholder = 0x11;
constexpr std::string_view kUuidLabel = "uuid:";
constexpr std::array<size_t, 4> kUuidGroups = {4, 6, 8, 10};  // each begins behind a hyphen

/// What firmware writes where it has nothing to say, in lower case.
constexpr std::string_view kFillers[] = {
    "asset",
    "asset tag",
    "base board serial number",
    "blank",
    "board serial number",
    "chassis serial number",
    "default",
    "default string",
    "empty",
    "invalid",
    "n/a",
    "no asset information",
    "no asset tag",
    "no dimm",
    "none",
    "not applicable",
    "not available",
    "not installed",
    "not present",
    "not provided",
    "not specified",
    "null",
    "o.e.m.",
    "oem",
    "other",
    "reserved",
    "serial",
    "serial number",
    "system serial number",
    "to be filled by o.e.m.",
    "unassigned",
    "undefined",
    "unknown",
    "unspecified",
};

uint8_t Lower(uint8_t byte) {
    return static_cast<uint8_t>(std::tolower(byte));
}

bool IsDigit(uint8_t byte) {
    return byte >= '0' && byte <= '9';
}

bool IsPartOfAWord(uint8_t byte) {
    return IsDigit(byte) || (Lower(byte) >= 'a' && Lower(byte) <= 'z');
}

bool IsMark(uint8_t byte) {
    return byte == ' ' || std::ispunct(byte) != 0;
}

void HideText(std::string& text, size_t first, size_t last, char placeholder) {
    for (size_t i = first; i < last; ++i) {
        text[i] = IsMark(static_cast<uint8_t>(text[i])) ? text[i] : placeholder;
    }
}

std::string InLowerCase(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(Lower(static_cast<uint8_t>(c)));
    }
    return text;
}

/// Behind the first "UUID:"; the text's end where there is none.
size_t BehindLabel(const std::string& text) {
    const size_t label = InLowerCase(text).find(kUuidLabel);
    return label == std::string::npos ? text.size() : label + kUuidLabel.size();
}

bool HasUuidShape(std::string_view text) {
    constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return text.size() >= kShape.size() &&
           std::equal(kShape.begin(), kShape.end(), text.begin(), [](char shape, char c) {
               return shape == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
           });
}

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    const size_t last = text.find_last_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, last + 1 - first);
}

bool SaysNothing(const std::string& text) {
    const std::string lower = InLowerCase(text);
    return text.size() < kShortestWeak ||
           lower.find_first_not_of(lower.front()) == std::string::npos ||
           std::find(std::begin(kFillers), std::end(kFillers), lower) != std::end(kFillers);
}

Bytes BytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

/// DSP0134 7.2.1: the first three groups are stored with their lowest byte first.
Bytes InTheOtherOrder(const Bytes& uuid) {
    constexpr std::array<size_t, kUuidSize> kOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                      8, 9, 10, 11, 12, 13, 14, 15};
    Bytes other;
    for (const size_t place : kOrder) {
        other.push_back(uuid[place]);
    }
    return other;
}

std::string Digits(const Bytes& uuid, bool hasHyphens) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < uuid.size(); ++i) {
        const bool beginsGroup =
            std::find(kUuidGroups.begin(), kUuidGroups.end(), i) != kUuidGroups.end();
        text += hasHyphens && beginsGroup ? "-" : "";
        text += kDigits[uuid[i] >> 4];
        text += kDigits[uuid[i] & 0x0F];
    }
    return text;
}

using Range = std::pair<size_t, size_t>;

/// The next place between two offsets where a secret stands.
template <typename Secret>
std::optional<size_t> Find(const Secret& secret, const Bytes& bytes, Range where) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(where.first);
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(where.second);
    const auto isSame = [&secret](uint8_t a, uint8_t b) {
        return secret.isText ? Lower(a) == Lower(b) : a == b;
    };
    for (auto place = start; place != end; ++place) {
        place = std::search(place, end, secret.bytes.begin(), secret.bytes.end(), isSame);
        if (place == end) {
            break;
        }
        const auto behind = place + static_cast<std::ptrdiff_t>(secret.bytes.size());
        const bool isWord = (place == start || !IsPartOfAWord(*(place - 1))) &&
                            (behind == end || !IsPartOfAWord(*behind));
        if (isWord || !secret.isWeak) {
            return static_cast<size_t>(place - bytes.begin());
        }
    }
    return std::nullopt;
}

}  // namespace

std::string PlaceholderFor(const std::string& text) {
    std::string placeholder = text;
    const size_t behindLabel = BehindLabel(text);
    const size_t label = behindLabel == text.size() ? text.size() : behindLabel - kUuidLabel.size();
    HideText(placeholder, 0, label, 'X');
    HideText(placeholder, behindLabel, text.size(), '0');
    return placeholder;
}

std::string WithUuidsHidden(std::string text) {
    const size_t behindLabel = BehindLabel(text);
    HideText(text, behindLabel, text.size(), '0');
    for (size_t i = 0; i < behindLabel; ++i) {
        if (HasUuidShape(std::string_view(text).substr(i))) {
            HideText(text, i, i + Digits(Bytes(kUuidSize), true).size(), 'X');
        }
    }
    return text;
}

Bytes PlaceholderForUuid(const Bytes& uuid) {
    Bytes placeholder(uuid.size(), kUuidPlaceholder);
    placeholder.front() = uuid.front() == 0 ? 0 : kUuidPlaceholder;
    return placeholder;
}

void Secrets::AddText(const std::string& text) {
    const std::string trimmed = Trimmed(text);
    if (SaysNothing(trimmed)) {
        return;
    }
    const Bytes bytes = BytesOf(trimmed);
    const bool hasDigit = std::any_of(bytes.begin(), bytes.end(), IsDigit);
    Add({.bytes = bytes,
         .placeholder = BytesOf(PlaceholderFor(trimmed)),
         .isWeak = bytes.size() < kShortestStrong || !hasDigit});
    if (const size_t behind = BehindLabel(trimmed); behind < trimmed.size()) {
        constexpr char kOfAUuid[] = "0123456789ABCDEFabcdef-";
        const size_t start = std::min(trimmed.find_first_of(kOfAUuid, behind), trimmed.size());
        AddText(trimmed.substr(start, trimmed.find_first_not_of(kOfAUuid, start) - start));
    }
}

void Secrets::AddUuid(const Bytes& uuid) {
    const Bytes other = InTheOtherOrder(uuid);
    const Bytes placeholder = PlaceholderForUuid(uuid);
    Add({.bytes = uuid, .placeholder = placeholder, .isText = false});
    Add({.bytes = other, .placeholder = InTheOtherOrder(placeholder), .isText = false});
    for (const Bytes& order : {uuid, other}) {
        AddText(Digits(order, true));
        AddText(Digits(order, false));
    }
}

void Secrets::AddName(const std::string& name) {
    m_names.push_back(BytesOf(name));
}

void Secrets::Add(const Secret& secret) {
    m_secrets.emplace(secret.bytes.size(), secret);
}

bool Secrets::IsPartOfAName(const Secret& secret) const {
    return std::any_of(m_names.begin(), m_names.end(), [&secret](const Bytes& name) {
        return Find(secret, name, {0, name.size()}).has_value();
    });
}

void Secrets::HideIn(Bytes& bytes, size_t first, size_t last) const {
    for (const auto& [length, secret] : m_secrets) {
        if (Find(secret, bytes, {first, last}) && !(secret.isWeak && IsPartOfAName(secret))) {
            Hide(secret, bytes, first, last);
        }
    }
}

void Secrets::HideUuidsIn(Bytes& bytes, size_t first, size_t last) const {
    for (const auto& [length, secret] : m_secrets) {
        if (!secret.isText) {
            Hide(secret, bytes, first, last);
        }
    }
}

void Secrets::Hide(const Secret& secret, Bytes& bytes, size_t first, size_t last) {
    while (const std::optional<size_t> place = Find(secret, bytes, {first, last})) {
        std::copy(secret.placeholder.begin(), secret.placeholder.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(*place));
        first = *place + secret.bytes.size();
    }
}

}  // namespace machine
