// What the build puts into the programs against the errors that it does not find.
// Reads the programs themselves, by readelf.
#include <gtest/gtest.h>

#include <string>

#include "support/Program.h"

namespace {

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

/// The program as it is packaged for rescue images and as it is installed.
class Hardening : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Programs, Hardening,
                         testing::Values(SYSTALLY_STATIC, support::ProgramPath("systally")),
                         [](const auto& program) {
                             return program.index == 0 ? "Static" : "Dynamic";
                         });

TEST_P(Hardening, AddressesVary) {
    EXPECT_TRUE(Contains(Readelf("--file-header", GetParam()), "DYN (Position-Independent"));
}

TEST_P(Hardening, StackIsNotExecutable) {
    const std::string header = ProgramHeader(GetParam(), "GNU_STACK");
    EXPECT_TRUE(Contains(header, " RW ")) << header;
}

TEST_P(Hardening, RelocationsBecomeReadOnlyAtOnce) {
    EXPECT_NE(ProgramHeader(GetParam(), "GNU_RELRO"), "");
    EXPECT_TRUE(Contains(Readelf("--dynamic", GetParam()), "NOW"));
}

TEST_P(Hardening, NoSegmentIsWritableAndExecutable) {
    EXPECT_FALSE(Contains(Readelf("--program-headers", GetParam()), " RWE "));
}

TEST_P(Hardening, OverflowsAreCaught) {
    const std::string symbols = Readelf("--symbols", GetParam());
    EXPECT_TRUE(Contains(symbols, "__stack_chk_fail"));
    EXPECT_TRUE(Contains(symbols, "__printf_chk"));
}

TEST(StaticProgram, NeedsNoLibrary) {
    EXPECT_FALSE(Contains(Readelf("--dynamic", SYSTALLY_STATIC), "NEEDED"));
    EXPECT_EQ(ProgramHeader(SYSTALLY_STATIC, "INTERP"), "");
}

}  // namespace
