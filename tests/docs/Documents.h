// The documents of the house as texts, to be held against what the programs do.
// Interprets as little as it can: a test looks for words.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/Patterns.h"
#include "support/Program.h"

namespace documents {

using Words = std::set<std::string>;

/// The text of a file of the sources, given from their top on; the test fails when there is none.
inline std::string Read(const std::string& name) {
    std::ifstream file(std::string(SYSTALLY_SOURCES) + "/" + name);
    EXPECT_TRUE(file) << "there is no " << name;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The text between the first `from` and the next `to`, or the end.
inline std::string Between(const std::string& text, const std::string& from,
                           const std::string& to) {
    const size_t start = text.find(from);
    EXPECT_NE(start, std::string::npos) << "there is no " << from;
    if (start == std::string::npos) {
        return "";
    }
    const size_t inside = start + from.size();
    return text.substr(inside, text.find(to, inside) - inside);
}

/// A manual page such as "systally.8", with its hyphens written plainly.
inline std::string Page(const std::string& name) {
    return support::ReplaceAll(Read("docs/" + name), R"(\\-)", "-");
}

inline std::string Section(const std::string& page, const std::string& heading) {
    return Between(page, "\n.SH " + heading + "\n", "\n.SH ") + "\n";
}

/// The options, long ones alone, that a program's --help lists.
inline Words OptionsOf(const std::string& program) {
    const support::Result help = support::Run({support::ProgramPath(program), "--help"});
    EXPECT_EQ(help.status, 0) << program;
    return support::FindWords(help.output, "--[a-z0-9-]+");
}

/// A shell command that finds this build's programs, on the machine of a folder.
inline support::Result Shell(const std::filesystem::path& machine, const std::string& script) {
    const std::filesystem::path programs =
        std::filesystem::path(support::ProgramPath("systally")).parent_path();
    return support::RunOnMachine(machine,
                                 {"sh", "-c", "PATH=" + programs.string() + ":$PATH\n" + script});
}

}  // namespace documents
