// The manual pages of the companions against what the programs say of themselves.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "support/Program.h"

namespace {

/// A manual page with its hyphens written plainly.
std::string Page(const std::string& program) {
    std::ostringstream text;
    text << std::ifstream(std::string(SYSTALLY_DOCS) + "/" + program + ".8").rdbuf();
    return std::regex_replace(text.str(), std::regex("\\\\-"), "-");
}

std::set<std::string> OptionsIn(const std::string& text) {
    const std::regex option("--[a-z]+");
    return {std::sregex_token_iterator(text.begin(), text.end(), option),
            std::sregex_token_iterator()};
}

class Manual : public testing::TestWithParam<const char*> {};

TEST_P(Manual, HasTheOptionsThatTheHelpLists) {
    const std::string help = support::Run({support::ProgramPath(GetParam()), "--help"}).output;
    EXPECT_GE(OptionsIn(help).size(), 3U);
    EXPECT_EQ(OptionsIn(Page(GetParam())), OptionsIn(help));
}

TEST_P(Manual, HasTheSectionsThatReadersLookFor) {
    for (const char* section : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS",
                                "FILES", "EXAMPLES", "SEE ALSO"}) {
        const std::string heading = std::string("\n.SH ") + section + "\n";
        EXPECT_NE(Page(GetParam()).find(heading), std::string::npos) << section;
    }
}

std::string NameOf(const testing::TestParamInfo<const char*>& info) {
    return std::regex_replace(std::string(info.param), std::regex("-"), "_");
}

INSTANTIATE_TEST_SUITE_P(Companion, Manual, testing::Values("systally-on", "systally-capture"),
                         NameOf);

}  // namespace
