// Runs the tools that read our output.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "export/Reports.h"
#include "support/Program.h"

namespace consumer {

/// The test fails, and says what to install, when a tool is not there.
inline void Require(const std::string& tool, const std::string& package) {
    EXPECT_EQ(support::Run({"sh", "-c", "command -v " + tool + " >/dev/null"}).status, 0)
        << "there is no " << tool << "; please install the Debian package " << package;
}

/// Runs a shell command that needs `tool`.
inline support::Result Run(const std::string& tool, const std::string& package,
                           const std::string& command, const support::Arguments& arguments = {}) {
    Require(tool, package);
    support::Arguments shell = {"sh", "-c", command, "sh"};
    shell.insert(shell.end(), arguments.begin(), arguments.end());
    return support::Run(shell);
}

/// An executable in a folder of its own.
inline void WriteScript(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path) << "#!/bin/sh\n" << text << "\n";
    std::filesystem::permissions(path, std::filesystem::perms(0755));
}

/// What systally-export writes of these reports.
inline std::string Export(const std::string& shape, const std::string& reports) {
    const reports::File file(reports);
    const support::Result result =
        support::Run({support::ProgramPath("systally-export"), shape, file.path()});
    EXPECT_EQ(result.errors, "");
    return result.output;
}

}  // namespace consumer
