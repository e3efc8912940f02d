// What ./dev fuzz says of targets that ran, that broke and that did not run.
// The targets are scripts: nothing is fuzzed.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using support::Result;

/// A build whose targets all come to their ends, as libFuzzer tells it.
class FuzzRun : public testing::Test {
  protected:
    FuzzRun() {
        fs::create_directory(m_build / "bin");
        for (const auto& entry : fs::directory_iterator(SYSTALLY_FUZZ_FOLDER "/corpus")) {
            Target(entry.path().filename(), "echo 'stat::number_of_executed_units: 12'");
        }
    }

    void Target(const std::string& name, const std::string& commands) const {
        const fs::path file = m_build / "bin" / ("fuzz_" + name);
        std::ofstream(file) << "#!/bin/sh\n" << commands << '\n';
        fs::permissions(file, fs::perms::owner_all);
    }
    Result Run() const {
        return support::Run({SYSTALLY_FUZZ_FOLDER "/run", "1", m_build.string()});
    }

    support::TemporaryFolder m_folder;
    fs::path m_build = m_folder.path();
};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(FuzzRun, EndsWith0WhenEveryTargetCameToItsEnd) {
    const Result result = Run();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(Contains(result.output, "\ntable_walk                     12 ")) << result.output;
    EXPECT_FALSE(Contains(result.output, "did not come to its end")) << result.output;
}

TEST_F(FuzzRun, MissingTargetIsNamedAndMakesTheResult1) {
    fs::remove(m_build / "bin" / "fuzz_ini_file");
    const Result result = Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Contains(result.output, "\nini_file did not come to its end (status 127):\n"))
        << result.output;
    EXPECT_FALSE(Contains(result.output, "table_walk did not")) << result.output;
}

TEST_F(FuzzRun, TargetWithoutFinalStatisticsMakesTheResult1) {
    Target("ini_file", "echo Killed");
    const Result result = Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Contains(result.output, "\nini_file did not come to its end (status 0):\nKilled\n"))
        << result.output;
}

TEST_F(FuzzRun, TargetThatBrokeMakesTheResult1) {
    Target("ini_file", "echo 'stat::number_of_executed_units: 3'; exit 77");
    const Result result = Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Contains(result.output, "\nini_file did not come to its end (status 77):\n"))
        << result.output;
}

TEST_F(FuzzRun, FindingIsNamedAndMakesTheResult1) {
    Target("ini_file",
           "touch fuzz-findings/ini_file-crash; echo 'stat::number_of_executed_units: 3'");
    const Result result = Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Contains(result.output, "/fuzz-findings/ini_file-crash\n")) << result.output;
}

TEST_F(FuzzRun, LogOfAnEarlierRunIsNoProof) {
    EXPECT_EQ(Run().status, 0);
    fs::remove(m_build / "bin" / "fuzz_path_parts");
    EXPECT_EQ(Run().status, 1);
}

TEST_F(FuzzRun, LongestSeedOfTheTableWalkIsNotCut) {
    Target("table_walk", "echo \"$*\" >arguments; echo 'stat::number_of_executed_units: 1'");
    EXPECT_EQ(Run().status, 0);
    std::ifstream file(m_build / "arguments");
    const std::string arguments{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(Contains(arguments, " -max_len=69640 ")) << arguments;
}

}  // namespace
