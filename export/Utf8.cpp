// Makes UTF-8 of what firmware stores in its strings, and text that may be shown.
#include "export/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace report {

namespace {

/// How the sequences of one length look. RFC 3629, 3 and 4.
struct SequenceKind {
    size_t length;
    uint32_t smallest;  ///< a smaller number would have had a shorter sequence
    uint8_t mask;
    uint8_t lead;
};

constexpr SequenceKind kKinds[] = {
    {1, 0, 0x80, 0x00},
    {2, 0x80, 0xE0, 0xC0},
    {3, 0x800, 0xF0, 0xE0},
    {4, 0x10000, 0xF8, 0xF0},
};

uint8_t ByteAt(std::string_view text, size_t index) {
    return static_cast<uint8_t>(text[index]);
}

bool IsCharacter(uint32_t code, const SequenceKind& kind) {
    const bool isSurrogate = 0xD800 <= code && code <= 0xDFFF;
    return code >= kind.smallest && code <= 0x10FFFF && !isSurrogate;
}

}  // namespace

size_t SequenceLength(std::string_view text) {
    const uint8_t lead = ByteAt(text, 0);
    for (const SequenceKind& kind : kKinds) {
        if ((lead & kind.mask) != kind.lead) {
            continue;
        }
        if (text.size() < kind.length) {
            return 0;
        }
        uint32_t code = lead & static_cast<uint8_t>(~kind.mask);
        for (size_t i = 1; i < kind.length; ++i) {
            if ((ByteAt(text, i) & 0xC0) != 0x80) {
                return 0;
            }
            code = code << 6 | (ByteAt(text, i) & 0x3F);
        }
        return IsCharacter(code, kind) ? kind.length : 0;
    }
    return 0;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = SequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string ToUtf8(std::string_view text) {
    if (IsUtf8(text)) {
        return std::string(text);
    }
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<uint8_t>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

bool IsControl(std::string_view character) {
    const uint8_t first = ByteAt(character, 0);
    const bool isC1 = character.size() == 2 && first == 0xC2 && ByteAt(character, 1) < 0xA0;
    return first < ' ' || first == 0x7F || isC1;
}

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const size_t length = SequenceLength(text);
        const std::string_view character = text.substr(0, std::max<size_t>(length, 1));
        printable += length == 0 || IsControl(character) ? "?" : character;
        text.remove_prefix(character.size());
    }
    return printable;
}

}  // namespace report
