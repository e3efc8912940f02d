// The sample server's firmware strings under other firmware and kernels: the program alone gives
// its documented failure, --this the facts that a BIOS guest of the same strings reports.
#include <map>

#include "vm/Answers.h"

namespace vm {

namespace {

constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n"
    "[ERROR]\n"
    "ERROR = 255\n";
constexpr char kMemoryUnreadable[] =
    "Critical error in srvinfo: Could not open /dev/mem.\n"
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n"
    "[ERROR]\n"
    "ERROR = 255\n";

/// The system section of a report: it ends before the PCI functions.
std::string SystemSection(const std::string& report) {
    return report.substr(0, report.find("\n[PCI]\n"));
}

TEST(ProgramAlone, FindsNoTableWhereUefiLeavesNoEntryPoint) {
    for (const char* guest : {"uefi", "uefi3"}) {
        EXPECT_EQ(AnswerOf(guest, "report-ini").out, kNoTable) << guest;
        EXPECT_EQ(AnswerOf(guest, "report-ini").status, 255) << guest;
        EXPECT_EQ(AnswerOf(guest, "server-family").status, 255) << guest;
        EXPECT_EQ(AnswerOf(guest, "dump").status, 0) << guest;
    }
}

TEST(ProgramAlone, FindsNoTableBehindA64BitEntryPoint) {
    EXPECT_EQ(AnswerOf("anchor3", "report-ini").out, kNoTable);
    EXPECT_EQ(AnswerOf("anchor3", "report-ini").status, 255);
}

TEST(ProgramAlone, CannotReadMemoryThatTheKernelLocksAway) {
    EXPECT_EQ(AnswerOf("locked", "report-ini").out, kMemoryUnreadable);
    EXPECT_EQ(AnswerOf("locked", "report-ini").status, 255);
}

TEST(ProgramAlone, CountsPciFunctionsUnderAnyFirmware) {
    for (const char* guest : {"uefi", "locked", "anchor3"}) {
        EXPECT_EQ(AnswerOf(guest, "vid-8086").status, AnswerOf("dressed", "vid-8086").status)
            << guest;
    }
}

TEST(ThisMachine, ReportsTheSameServerUnderALockedKernel) {
    EXPECT_EQ(AnswerOf("locked", "this-i").out, AnswerOf("dressed", "report-ini").out);
}

TEST(ThisMachine, ReportsTheSameServerBehindA64BitEntryPoint) {
    EXPECT_EQ(AnswerOf("anchor3", "this-i").out, AnswerOf("dressed", "report-ini").out);
}

TEST(ThisMachine, ReportsTheSameSystemUnderUefi) {
    const std::string dressed = SystemSection(AnswerOf("dressed", "report-ini").out);
    EXPECT_EQ(SystemSection(AnswerOf("uefi", "this-i").out), dressed);
    EXPECT_EQ(SystemSection(AnswerOf("uefi3", "this-i").out), dressed);
}

TEST(ThisMachine, ReportsTheSamePciFunctionsUnderUefi) {
    EXPECT_EQ(AnswerOf("uefi", "this-i").out, AnswerOf("dressed", "report-ini").out);
}

TEST(ThisMachine, GivesAnOrdinaryUserTheProgramsOwnFailure) {
    for (const char* guest : {"dressed", "uefi"}) {
        EXPECT_EQ(AnswerOf(guest, "nobody-this").status, 255) << guest;
        EXPECT_NE(AnswerOf(guest, "nobody-this").err, "") << guest;
    }
}

}  // namespace

}  // namespace vm
