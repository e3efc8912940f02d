// Makes UTF-8 of what firmware stores in its strings, and text that may be shown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace report {

bool IsUtf8(std::string_view text);

/// `text` itself when it is UTF-8; otherwise each byte as the Latin-1 character that it is, so
/// that nothing is lost.
std::string ToUtf8(std::string_view text);

/// The length of the UTF-8 sequence that `text` begins with; 0 when it begins with none. Requires:
/// there is text.
size_t SequenceLength(std::string_view text);

/// Whether `character`, one UTF-8 sequence, is a control character: U+0000 to U+001F and U+007F to
/// U+009F.
bool IsControl(std::string_view character);

/// `text` for a terminal: question marks for control characters and for bytes that are no UTF-8.
std::string Printable(std::string_view text);

}  // namespace report
