// Memory ends at each call for more in turn: the documented words and status, and never a crash.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using support::Arlo2Folder;
using support::ProgramPath;
using support::Result;

constexpr char kOutOfMemory[] =
    "\n\nMemory Allocation Error\n\n"
    "Not enough memory is available for this application.\n\n"
    "Please close some programs to free up memory and try running\n"
    "this application again.\n\n"
    "CString::CreateCharString\n";
constexpr char kUnreadable[] =
    "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
    " SERVER_INFORMATION::LoadBIOSBuffer()\n"
    "[ERROR]\n"
    "ERROR = 255\n";
constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n"
    "[ERROR]\n"
    "ERROR = 255\n";

std::string SampleReport() {
    std::ifstream file(SYSTALLY_GOLDEN "/arlo2.ini");
    return {std::istreambuf_iterator<char>(file), {}};
}

Result RunWithAllocations(const std::filesystem::path& machine, int count,
                          const std::string& argument) {
    return support::RunOnMachine(
        machine, {"/usr/bin/env", "LD_PRELOAD=" SYSTALLY_FAIL_MALLOC,
                  "FAIL_MALLOC_AFTER=" + std::to_string(count), ProgramPath("systally"), argument});
}

/// What the program says when memory ends somewhere is one of a few things.
void ExpectDocumentedEnd(const Result& result) {
    const std::string report = SampleReport();
    switch (result.status) {
        case 0:
            EXPECT_EQ(result.output, report);
            EXPECT_EQ(result.errors, "");
            break;
        case 1:
            EXPECT_EQ(result.errors, kOutOfMemory);
            break;
        case 2:
            EXPECT_EQ(result.errors, "");
            EXPECT_TRUE(report.starts_with(result.output));
            break;
        case 255:
            EXPECT_EQ(result.errors, "");
            EXPECT_TRUE(result.output == kUnreadable || result.output == kNoTable) << result.output;
            break;
        default:
            ADD_FAILURE() << "status " << result.status << ": " << result.errors;
    }
}

TEST(MemoryExhaustion, EndsTheReportAsDocumentedWhereverItStrikes) {
    const support::TemporaryFolder folder;
    const std::filesystem::path machine = folder.path() / "machine";
    machine::Arlo2().WriteTo(machine);
    // Longer than any is: it takes memory of its own, and that may be what is missing.
    std::filesystem::resize_file(machine / "pci" / "00" / "00.0", 8192);
    constexpr int kMoreThanTheReportNeeds = 2000;
    std::set<int> statuses;
    for (int count = 0; count < kMoreThanTheReportNeeds && statuses.count(0) == 0; ++count) {
        const Result result = RunWithAllocations(machine, count, "/i");
        SCOPED_TRACE(std::to_string(count) + " allocations");
        ExpectDocumentedEnd(result);
        statuses.insert(result.status);
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_EQ(statuses, (std::set<int>{0, 2, 255}));
}

TEST(MemoryExhaustion, EndsALongCommandLineWithAMessage) {
    const Result result = RunWithAllocations(Arlo2Folder(), 0, "/m:" + std::string(600, '7'));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, kOutOfMemory);
    EXPECT_EQ(result.status, 1);
}

Result StaticProgramWithin(int kilobytes, const std::string& argument) {
    return support::RunOnMachine(Arlo2Folder(), {"/bin/sh", "-c",
                                                 "ulimit -v " + std::to_string(kilobytes) +
                                                     "; exec " SYSTALLY_STATIC " " + argument});
}

TEST(MemoryExhaustion, AddressSpaceOfEverySizeThatItStartsInEndsTheReportAsDocumented) {
    // In kilobytes. Coarser steps pass over the few pages in which it starts and the report fails.
    constexpr int kSmallest = 1000;  // too small for the program itself
    constexpr int kLargest = 20000;
    constexpr int kPage = 4;
    int limit = kSmallest;
    while (limit < kLargest && StaticProgramWithin(limit, "/x64").status != 0) {
        limit += kPage;
    }
    ASSERT_GT(limit, kSmallest);
    std::set<int> statuses;
    for (; limit < kLargest && statuses.count(0) == 0; limit += kPage) {
        SCOPED_TRACE(std::to_string(limit) + " kilobytes");
        const Result result = StaticProgramWithin(limit, "/i");
        ExpectDocumentedEnd(result);
        statuses.insert(result.status);
    }
    EXPECT_EQ(statuses.count(0), 1U);
    EXPECT_GT(statuses.size(), 1U);
}

TEST(StackLimit, SixtyFourKilobytesSuffice) {
    for (const char* argument : {"/i", "/p", "/dump", "/s", "/vid:8086"}) {
        const std::string command = ProgramPath("systally") + " " + argument;
        const Result whole = support::RunOnMachine(Arlo2Folder(), {"/bin/sh", "-c", command});
        const Result limited = support::RunOnMachine(
            Arlo2Folder(), {"/bin/sh", "-c", "ulimit -s 64; exec " + command});
        EXPECT_EQ(limited.output, whole.output) << argument;
        EXPECT_EQ(limited.errors, "") << argument;
        EXPECT_EQ(limited.status, whole.status) << argument;
    }
}

}  // namespace
