// A line that is longer than memory, in a child whose address space has an end.
// No test of lengths: those that fit are read like any other.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>

#include "util/FaultFolder.h"
#include "util/MyFileIO.h"

namespace {

constexpr int kSurvived = 42;
constexpr rlim_t kGigabyte = 1 << 30;

[[noreturn]] void ReadLineInAQuarterOfAGigabyte(const CString& name) {
    const rlimit quarter = {kGigabyte / 4, kGigabyte / 4};
    setrlimit(RLIMIT_AS, &quarter);
    CMyFileIO file(name);
    file.Open();
    CString line;
    file.ReadString(line);
    std::exit(kSurvived);
}

TEST(EndlessLine, EndsTheProcessAsOutOfMemory) {
    const FaultFolder folder;
    const CString file = folder.Written("zeros", "");
    // Zeros, which take no room on the disk.
    std::filesystem::resize_file(file.GetBuffer(), kGigabyte);
    EXPECT_EXIT(ReadLineInAQuarterOfAGigabyte(file), testing::ExitedWithCode(1),
                testing::Eq("\n\nMemory Allocation Error\n\n"
                            "Not enough memory is available for this application.\n\n"
                            "Please close some programs to free up memory and try running\n"
                            "this application again.\n\n"
                            "CString::CreateCharString\n"));
}

}  // namespace
