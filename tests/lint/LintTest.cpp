// What the checks of layout and sources say when a tool is missing or cannot do its work.
// A script stands for clang-tidy: no source is read.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using support::Result;

/// A machine without the tools of LLVM, until a test puts one there.
class Lint : public testing::Test {
  protected:
    Lint() {
        for (const char* tool : {"cat", "cut", "dirname", "find", "grep", "mktemp", "nproc", "rm",
                                 "sh", "sort", "xargs"}) {
            const Result found = support::Run({"sh", "-c", std::string("command -v ") + tool});
            EXPECT_EQ(found.status, 0) << tool;
            fs::create_symlink(found.output.substr(0, found.output.find('\n')), m_tools / tool);
        }
    }

    /// Puts a tool there that is a shell script of these commands.
    void Tool(const std::string& name, const std::string& commands) const {
        fs::remove(m_tools / name);
        std::ofstream(m_tools / name) << "#!/bin/sh\n" << commands << '\n';
        fs::permissions(m_tools / name, fs::perms::owner_all);
    }
    /// The commands find the source that is checked, the last argument, as $file.
    void Tidy(const std::string& commands) const {
        Tool("clang-tidy", "for file; do :; done\n" + commands);
    }
    Result Run(const std::string& check) const {
        return support::Run({"env", "PATH=" + m_tools.string(), SYSTALLY_LINT_FOLDER "/" + check,
                             m_tools.string()});
    }

  private:
    support::TemporaryFolder m_folder;
    fs::path m_tools = m_folder.path();
};

TEST_F(Lint, FormatNamesThePackageOfAMissingTool) {
    const Result result = Run("format");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "format: clang-format is missing: install the Debian package clang-format\n");
}

TEST_F(Lint, TidyNamesThePackageOfAMissingTool) {
    const Result result = Run("tidy");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "tidy: clang-tidy is missing: install the Debian package clang-tidy\n");
}

TEST_F(Lint, TidyHidesNothingButTheCountsOfWarnings) {
    Tidy(
        "printf '1 warning generated.\\n17453 warnings generated.\\n' >&2\n"
        "case $file in\n"
        "    util/Exec.cpp) echo 'no 3 warnings generated. from here' >&2 ;;\n"
        "esac");
    const Result result = Run("tidy");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "no 3 warnings generated. from here\n");
}

TEST_F(Lint, TidyFailsWithTheWordsOfASourceThatCannotBeRead) {
    Tidy(
        "case $file in\n"
        "    pci/PCIException.cpp) ;;\n"
        "    *) exit 0 ;;\n"
        "esac\n"
        "echo '2 warnings and 1 error generated.' >&2\n"
        "echo 'Error while processing pci/PCIException.cpp.' >&2\n"
        "exit 1");
    const Result result = Run("tidy");
    EXPECT_EQ(result.status, 123);
    EXPECT_EQ(result.errors,
              "2 warnings and 1 error generated.\nError while processing pci/PCIException.cpp.\n");
}

TEST_F(Lint, TidyTakesLargeSourcesFirst) {
    Tool("nproc", "echo 1");
    Tidy("echo \"$file\"");
    std::istringstream sources(Run("tidy").output);
    std::vector<uintmax_t> sizes;
    for (std::string source; std::getline(sources, source);) {
        sizes.push_back(fs::file_size(fs::path(SYSTALLY_LINT_FOLDER) / "../.." / source));
    }
    EXPECT_GT(sizes.size(), 50U);
    EXPECT_TRUE(std::is_sorted(sizes.begin(), sizes.end(), std::greater()));
}

TEST_F(Lint, TidyFailsWithItsFindings) {
    Tidy(
        "[ \"$file\" != util/Exec.cpp ] || { echo 'util/Exec.cpp:1:1: error: a finding'; exit 1; "
        "}");
    const Result result = Run("tidy");
    EXPECT_EQ(result.status, 123);
    EXPECT_EQ(result.output, "util/Exec.cpp:1:1: error: a finding\n");
    EXPECT_EQ(result.errors, "");
}

}  // namespace
