#include "support/Patterns.h"

#include <regex>

namespace {

std::regex Regex(const std::string& pattern) {
    return std::regex(pattern, std::regex::ECMAScript | std::regex::multiline);
}

}  // namespace

std::vector<std::string> support::FindAll(const std::string& text, const std::string& pattern) {
    const std::regex regex = Regex(pattern);
    const int group = regex.mark_count() == 1 ? 1 : 0;
    return {std::sregex_token_iterator(text.begin(), text.end(), regex, group),
            std::sregex_token_iterator()};
}

std::set<std::string> support::FindWords(const std::string& text, const std::string& pattern) {
    const std::vector<std::string> found = FindAll(text, pattern);
    return {found.begin(), found.end()};
}

std::string support::ReplaceAll(const std::string& text, const std::string& pattern,
                                const std::string& replacement) {
    return std::regex_replace(text, Regex(pattern), replacement);
}
