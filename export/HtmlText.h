// Pieces of HTML: escaped texts, elements, numbers for people.
// Every value from a report passes Escape(); nothing else lets it into a page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace report {

/// UTF-8 text for a page: markup characters as references, control characters visible.
std::string Escape(std::string_view text);

/// <tag class="...">content</tag>. Requires: `content` is HTML.
std::string Element(const char* tag, const std::string& content, const std::string& cssClass = "");

/// A value of the report in HTML; words that say so when it has none but blanks.
std::string Shown(const std::string& value);

/// A term and its description, for a <dl>. Requires: `description` is HTML.
std::string Term(const char* term, const std::string& description);

/// 11280 gives "11,280".
std::string Grouped(int64_t number);

/// Megabytes for people: "512 MiB", "11 GiB", "1.5 TiB".
std::string MemorySize(int64_t megabytes);

/// "2.93 GHz", "800 MHz".
std::string Speed(int megahertz);

/// "1 function", "2 functions".
std::string Count(int64_t number, const std::string& noun);

}  // namespace report
