// The raw dump of the decoded structures.
#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

using machine::MachineBuilder;
using machine::Structure;
using support::Arlo2Folder;
using support::Result;
using support::SystallyOn;

constexpr size_t kBlockLines = 44;  // title, box title, blank, "hex dump", 40 lines

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    lines.pop_back();
    return lines;
}

TEST(Dump, ShowsEachDecodedStructureInTableOrder) {
    const Result result = SystallyOn(Arlo2Folder(), {"/dump"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const std::vector<std::string> lines = LinesOf(result.output);
    // Type 32 and the end of the table are not decoded.
    const int types[] = {0, 1, 2, 3, 3, 4, 4, 4, 4, 17, 17, 17, 17, 17, 17, 9, 9, 9, 11};
    ASSERT_EQ(lines.size(), std::size(types) * kBlockLines);
    for (size_t i = 0; i < std::size(types); ++i) {
        EXPECT_EQ(lines[i * kBlockLines], "SMBIOS TYPE " + std::to_string(types[i]) + " ");
        EXPECT_EQ(lines[i * kBlockLines + 1], "Dump Data Test Box ");
        EXPECT_EQ(lines[i * kBlockLines + 2], "");
        EXPECT_EQ(lines[i * kBlockLines + 3], " hex dump");
    }
}

TEST(Dump, BeginsTwoBytesBeforeTheStructureAndShowsSixHundredBytes) {
    const Result result = SystallyOn(
        MachineBuilder().Add(Structure(1, 0x1B).String(0x04, "QEV").String(0x05, "Ar\xE9o")),
        {"/dump"});
    EXPECT_EQ(result.status, 0);
    const std::vector<std::string> lines = LinesOf(result.output);
    ASSERT_EQ(lines.size(), kBlockLines);
    EXPECT_EQ(lines[4], "00 00 01 1B 00 00 01 02 00 00 00 00 00 00 00  _______________      ");
    EXPECT_EQ(lines[5], "00 00 00 00 00 00 00 00 00 00 00 00 00 00 51  ______________Q      ");
    EXPECT_EQ(lines[6], "45 56 00 41 72 E9 6F 00 00 7F 04 01 00 00 00  EV_Ar_o________      ");
    EXPECT_EQ(lines[43], "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  _______________      ");
}

TEST(Dump, MachineWithoutDecodedStructuresShowsNothing) {
    const Result result = SystallyOn(MachineBuilder(), {"/dump"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
