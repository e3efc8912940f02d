// What the build puts into the programs against the errors that it does not find.
// Reads the programs themselves, by readelf, and the commands that compiled them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

#include "support/Program.h"

namespace {

namespace fs = std::filesystem;

std::string Readelf(const std::string& what, const std::string& program) {
    const support::Result result = support::Run({"readelf", what, "--wide", program});
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The line of a program header; empty when there is none.
std::string ProgramHeader(const std::string& program, const std::string& type) {
    const std::string headers = Readelf("--program-headers", program);
    const size_t start = headers.find("  " + type + " ");
    return start == std::string::npos ? ""
                                      : headers.substr(start, headers.find('\n', start) - start);
}

// The programs as they are packaged for rescue images, and as they are installed.
const char* const kBuilds[] = {"Static", "Dynamic"};
const char* const kPrograms[] = {"systally", "systally-on", "systally-capture", "systally-export"};

std::string ProgramOf(const std::string& build, const std::string& name) {
    return build == "Static" ? SYSTALLY_STATIC_FOLDER "/" + name : support::ProgramPath(name);
}

class Hardening : public testing::TestWithParam<std::tuple<const char*, const char*>> {
  protected:
    std::string m_program = ProgramOf(std::get<0>(GetParam()), std::get<1>(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(Programs, Hardening,
                         testing::Combine(testing::ValuesIn(kBuilds), testing::ValuesIn(kPrograms)),
                         [](const auto& program) {
                             std::string name = std::get<1>(program.param);
                             std::replace(name.begin(), name.end(), '-', '_');
                             return std::get<0>(program.param) + ("_" + name);
                         });

TEST_P(Hardening, AddressesVary) {
    EXPECT_TRUE(Contains(Readelf("--file-header", m_program), "DYN (Position-Independent"));
}

TEST_P(Hardening, StackIsNotExecutable) {
    const std::string header = ProgramHeader(m_program, "GNU_STACK");
    EXPECT_TRUE(Contains(header, " RW ")) << header;
}

TEST_P(Hardening, RelocationsBecomeReadOnlyAtOnce) {
    EXPECT_NE(ProgramHeader(m_program, "GNU_RELRO"), "");
    EXPECT_TRUE(Contains(Readelf("--dynamic", m_program), "NOW"));
}

TEST_P(Hardening, NoSegmentIsWritableAndExecutable) {
    EXPECT_FALSE(Contains(Readelf("--program-headers", m_program), " RWE "));
}

TEST_P(Hardening, OverflowsAreCaught) {
    const std::string symbols = Readelf("--symbols", m_program);
    EXPECT_TRUE(Contains(symbols, " __stack_chk_fail"));
    EXPECT_TRUE(Contains(symbols, " __fprintf_chk"));
}

class StaticProgram : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Programs, StaticProgram, testing::ValuesIn(kPrograms),
                         [](const auto& program) {
                             std::string name = program.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_P(StaticProgram, NeedsNoLibrary) {
    const std::string program = ProgramOf("Static", GetParam());
    EXPECT_FALSE(Contains(Readelf("--dynamic", program), "NEEDED"));
    EXPECT_EQ(ProgramHeader(program, "INTERP"), "");
}

// --- What the programs themselves do not tell ---------------------------------------------------

/// The command that compiled a product's source; empty when there is none.
std::string CompileCommand(const fs::path& build, const std::string& folder,
                           const std::string& file) {
    std::ifstream commands(build / "compile_commands.json");
    for (std::string line; std::getline(commands, line);) {
        if (Contains(line, "\"command\": ") && Contains(line, " -o " + folder + "/CMakeFiles/") &&
            Contains(line, "/" + folder + "/" + file + "\"")) {
            return line;
        }
    }
    return "";
}

class Compilation : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Builds, Compilation, testing::ValuesIn(kBuilds),
                         [](const auto& build) { return build.param; });

TEST_P(Compilation, FortifiesEverySourceAndProtectsItsStack) {
    const fs::path build = fs::path(ProgramOf(GetParam(), "systally")).parent_path().parent_path();
    for (const char* folder : {"app", "smbios", "pci", "util", "machine", "export"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(SYSTALLY_SOURCES) / folder)) {
            if (entry.path().extension() != ".cpp") {
                continue;
            }
            const std::string command = CompileCommand(build, folder, entry.path().filename());
            EXPECT_TRUE(Contains(command, " -D_FORTIFY_SOURCE=3 ")) << entry.path() << command;
            EXPECT_TRUE(Contains(command, " -fstack-protector-strong ")) << command;
            EXPECT_TRUE(Contains(command, " -O2 ")) << command;
            EXPECT_FALSE(Contains(command, " -U_FORTIFY_SOURCE")) << command;
        }
    }
}

TEST(Fortification, CatchesAnOverflowOfAnAllocationWhoseSizeIsToldAtRunTime) {
    const support::Result within = support::Run({SYSTALLY_COPY_WITHIN, "20", "20"});
    EXPECT_EQ(within.output, "copied\n");
    EXPECT_EQ(within.status, 0);
    const support::Result beyond = support::Run({SYSTALLY_COPY_WITHIN, "20", "21"});
    EXPECT_EQ(beyond.errors, "*** buffer overflow detected ***: terminated\n");
    EXPECT_EQ(beyond.status, -1);
}

}  // namespace
