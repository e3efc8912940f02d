// Makes UTF-8 of what firmware stores in its strings.
#pragma once

#include <string>
#include <string_view>

namespace report {

bool IsUtf8(std::string_view text);

/// `text` itself when it is UTF-8; otherwise each byte as the Latin-1 character that it is, so
/// that nothing is lost.
std::string ToUtf8(std::string_view text);

}  // namespace report
