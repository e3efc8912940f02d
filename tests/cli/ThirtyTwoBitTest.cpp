// Processors that this machine is not: the program built for 32 bits, on one that has no 64-bit
// mode, and the usual one, on such as tell little of themselves.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using support::Arguments;
using support::Arlo2Folder;
using support::Result;

Result RunOnProcessor(const std::string& processor, const std::string& argument) {
    return support::RunOnMachine(Arlo2Folder(), {"qemu-i386", "-cpu", processor,
                                                 support::ProgramPath("systally-32bit"), argument});
}

TEST(ThirtyTwoBit, ProcessorWithout64BitModeEndsWith1) {
    const Result result = RunOnProcessor("qemu32", "/x64");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST(ThirtyTwoBit, ProcessorWithoutExtendedLeavesEndsWith1) {
    const Result result = RunOnProcessor("pentium2", "/x64");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

// Such a processor answers for its highest basic leaf instead. Here that one holds the maker's
// name, whose letters in EDX have the bit that means a 64-bit mode in an extended leaf.
TEST(ThirtyTwoBit, ProcessorWithoutExtendedLeavesIsNotAskedForThem) {
    const Result result = RunOnProcessor("pentium2,level=0,xlevel=0,vendor=abcdefghijkl", "/x64");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST(ThirtyTwoBit, ProcessorWhoseOnlyExtendedLeafIsTheFirstIsNotAskedForTheNext) {
    const Result result =
        RunOnProcessor("pentium2,level=0,xlevel=0x80000000,vendor=abcdefghijkl", "/x64");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 1);
}

TEST(ThirtyTwoBit, ReportSaysFalseAndIsOtherwiseTheSame) {
    const Result result = RunOnProcessor("qemu32", "/i");
    std::ostringstream golden;
    golden << std::ifstream(SYSTALLY_GOLDEN "/arlo2.ini").rdbuf();
    std::string expected = golden.str();
    const std::string line = "Processor_X64 = TRUE\n";
    expected.replace(expected.find(line), line.size(), "Processor_X64 = FALSE\n");
    EXPECT_EQ(result.output, expected);
    EXPECT_EQ(result.status, 0);
}

TEST(ThirtyTwoBit, IdentityAndCountAnswerAlike) {
    EXPECT_EQ(RunOnProcessor("qemu32", "/m:7712").status, 1);
    EXPECT_EQ(RunOnProcessor("qemu32", "/s").status, 0);
    EXPECT_EQ(RunOnProcessor("qemu32", "/vid:8086").status, 14);
    EXPECT_EQ(RunOnProcessor("qemu32", "/vid:10000").status, 0);
    EXPECT_EQ(RunOnProcessor("qemu32", "/vid:-FFFF7F7A").status, 14);
}

// An address space of 32 bits has no room for such a file, sparse as it is.
TEST(ThirtyTwoBit, ConfigurationFileWiderThanTheAddressSpaceEndsWith2) {
    const support::TemporaryFolder folder;
    const std::filesystem::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    constexpr std::uintmax_t kFourGiB = 1ULL << 32;
    std::filesystem::resize_file(machine / "pci" / "00" / "00.0", kFourGiB + 64);
    const Result result =
        support::RunOnMachine(machine, {support::ProgramPath("systally-32bit"), "/vid:8086"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 2);
}

int StatusOnSixtyFourBits(const std::string& processor) {
    return support::RunOnMachine(Arlo2Folder(), {"qemu-x86_64", "-cpu", processor,
                                                 support::ProgramPath("systally"), "/x64"})
        .status;
}

TEST(SixtyFourBit, LastLeafMayBeTheOneThatTells) {
    EXPECT_EQ(StatusOnSixtyFourBits("qemu64,xlevel=0x80000001"), 0);
    EXPECT_EQ(StatusOnSixtyFourBits("qemu64,xlevel=0x80000000"), 1);
}

// The leaf before it holds the maker's name, here without the bit that means a 64-bit mode.
TEST(SixtyFourBit, MakersNameIsNoAnswer) {
    EXPECT_EQ(StatusOnSixtyFourBits("qemu64,vendor=GenuineIntel"), 0);
}

}  // namespace
