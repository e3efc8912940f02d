// Regular expressions for tests, compiled once: the standard library's take seconds in each source.
#pragma once

#include <string>
#include <vector>

namespace support {

// Patterns are ECMAScript's; ^ and $ stand at the ends of every line.

/// What `pattern` finds in the text, or what its only group does, in order.
std::vector<std::string> FindAll(const std::string& text, const std::string& pattern);

/// The text with each place that `pattern` finds replaced; $1 in `replacement` is its first group.
std::string ReplaceAll(const std::string& text, const std::string& pattern,
                       const std::string& replacement);

}  // namespace support
