// Regular expressions for tests, which include this and not <regex>: its templates take a compiler
// seconds in each source.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace support {

// Patterns are ECMAScript's; ^ and $ stand at the ends of every line.

/// What `pattern` finds in the text, or what its group does where it has just one, in order.
std::vector<std::string> FindAll(const std::string& text, const std::string& pattern);
/// The same, each once.
std::set<std::string> FindWords(const std::string& text, const std::string& pattern);

/// The text with each place that `pattern` finds replaced; $1 in `replacement` is its first group.
std::string ReplaceAll(const std::string& text, const std::string& pattern,
                       const std::string& replacement);

}  // namespace support
