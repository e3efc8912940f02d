// The sample server's firmware strings under other firmware and kernels: the program alone gives
// its documented failure, --this the facts that a BIOS guest of the same strings reports.
#include <algorithm>
#include <map>
#include <set>

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
    for (const char* guest : {"uefi", "uefi3", "plainuefi"}) {
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
    EXPECT_EQ(AnswerOf("locked", "this-report-ini").out, AnswerOf("dressed", "report-ini").out);
}

TEST(ThisMachine, ReportsTheSameServerBehindA64BitEntryPoint) {
    EXPECT_EQ(AnswerOf("anchor3", "this-report-ini").out, AnswerOf("dressed", "report-ini").out);
}

TEST(ThisMachine, ReportsTheSameSystemUnderUefi) {
    const std::string dressed = SystemSection(AnswerOf("dressed", "report-ini").out);
    EXPECT_EQ(SystemSection(AnswerOf("uefi", "this-report-ini").out), dressed);
    EXPECT_EQ(SystemSection(AnswerOf("uefi3", "this-report-ini").out), dressed);
}

TEST(ThisMachine, ReportsTheSamePciFunctionsUnderUefi) {
    EXPECT_EQ(AnswerOf("uefi", "this-report-ini").out, AnswerOf("dressed", "report-ini").out);
}

// --- What firmware itself changes ---------------------------------------------------------------

using Facts = std::map<std::string, std::string>;

Facts FactsOf(const Answer& report) {
    const Report read(report.out);
    return {read.Lines().begin(), read.Lines().end()};
}

/// The keys that stand in one report alone, or with another value in the other.
std::set<std::string> Differences(const Facts& one, const Facts& other) {
    std::set<std::string> keys;
    for (const auto& [facts, others] : {std::pair(one, other), std::pair(other, one)}) {
        for (const auto& [key, value] : facts) {
            const auto found = others.find(key);
            if (found == others.end() || found->second != value) {
                keys.insert(key);
            }
        }
    }
    return keys;
}

/// A bridge has no subsystem at 0x2C: there stands the upper half of a window's address, which
/// firmware assigns. The report gives the word all the same.
bool IsOfABridgesWindow(const std::string& key, const Facts& facts) {
    const bool isSubsystem =
        key.starts_with("PCI_Subvendor_ID.") || key.starts_with("PCI_Subdevice_ID.");
    const std::string header = "PCI_Header_Type" + key.substr(std::min(key.find('.'), key.size()));
    return isSubsystem && facts.contains(header) && facts.at(header).ends_with("1");
}

/// Two guests of the same board whose firmware was told nothing. Every key of both reports is
/// compared; these alone are exempt, as they tell of the firmware itself.
TEST(FactsThatFirmwareChanges, AreItsVersionItsDateAndTheWindowsOfBridges) {
    const Facts bios = FactsOf(AnswerOf("plain", "report-ini"));
    const Facts uefi = FactsOf(AnswerOf("plainuefi", "this-report-ini"));
    EXPECT_GT(bios.size(), 200U);
    std::set<std::string> others = Differences(bios, uefi);
    std::erase_if(others, [&bios](const auto& key) { return IsOfABridgesWindow(key, bios); });
    EXPECT_EQ(others, (std::set<std::string>{"System_BIOS_Build_Level", "System_BIOS_Date",
                                             "System_BIOS_Language", "System_BIOS_Version"}));
}

/// Where the options say what the firmware is to say of itself, not even these differ.
TEST(FactsThatFirmwareChanges, AreNoneWhenTheFirmwareIsToldWhatToSay) {
    EXPECT_EQ(Differences(FactsOf(AnswerOf("dressed", "report-ini")),
                          FactsOf(AnswerOf("uefi", "this-report-ini"))),
              std::set<std::string>());
}

/// The same server on a younger board, with a 64-bit entry point: nothing of the system differs.
TEST(FactsThatFirmwareChanges, AreNoneOfTheSystemOnAnotherBoard) {
    std::set<std::string> keys = Differences(FactsOf(AnswerOf("dressed", "report-ini")),
                                             FactsOf(AnswerOf("uefi3", "this-report-ini")));
    std::erase_if(keys, [](const auto& key) { return key.starts_with("PCI_"); });
    EXPECT_EQ(keys, std::set<std::string>());
}

TEST(ThisMachine, GivesAnOrdinaryUserTheProgramsOwnFailure) {
    for (const char* guest : {"dressed", "uefi"}) {
        EXPECT_EQ(AnswerOf(guest, "nobody-this").status, 255) << guest;
        EXPECT_NE(AnswerOf(guest, "nobody-this").err, "") << guest;
    }
}

}  // namespace

}  // namespace vm
