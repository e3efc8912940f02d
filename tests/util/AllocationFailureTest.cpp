// What the library does when memory is gone, and the copies that only an allocator can observe.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "support/Allocation.h"
#include "support/VerboseOutput.h"
#include "util/CLParams.h"
#include "util/CString.h"
#include "util/DirectoryTree.h"
#include "util/ErrorHandler.h"
#include "util/IniFile.h"

namespace {

constexpr char kMemoryMessage[] =
    "\n\nMemory Allocation Error\n\n"
    "Not enough memory is available for this application.\n\n"
    "Please close some programs to free up memory and try running\n"
    "this application again.\n\n"
    "CString::CreateCharString\n";

TEST(AllocationFailure, StringEndsTheProcessWithAMessageAndStatus1) {
    EXPECT_EXIT(
        {
            support::FailAllocationsAfter(0);
            CString::CreateCharString(5);
        },
        testing::ExitedWithCode(1), kMemoryMessage);
}

TEST(AllocationFailure, ErrorHandlerAllocatesNothing) {
    char detail[] = "detail";
    testing::internal::CaptureStderr();
    const size_t before = support::CountAllocations();
    CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE, CErrorHandler::PARSE_ERROR, detail);
    const size_t after = support::CountAllocations();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(after, before);
}

TEST(AllocationFailure, AddReturnsFalseAndLeavesTheTableUnchanged) {
    CCLParams table;
    ASSERT_TRUE(table.Add("/a", CLP_SWITCH, false));
    CString name("/b");
    // The argument's own copy takes the first allocation, the table's entry would take the second.
    support::FailAllocationsAfter(1);
    const bool added = table.Add(name, CLP_SWITCH, false);
    support::AllowAllocations();
    EXPECT_FALSE(added);
    CString value;
    EXPECT_FALSE(table.GetValue(2U, value));
    EXPECT_TRUE(table.Add("/c", CLP_SWITCH, false));
    char program[] = "x";
    char argument[] = "/c";
    char* argv[] = {program, argument};
    EXPECT_EQ(table.Parse(2, argv, true), 0);
    EXPECT_TRUE(table.GetValue(2U, value));
}

TEST(AllocationFailure, MakeNewNodeReturnsNull) {
    CCLParams table;
    support::FailAllocationsAfter(0);
    const CCLParams::CLParamDef* node = table.MakeNewNode();
    support::AllowAllocations();
    EXPECT_EQ(node, nullptr);
}

/// A list of 2000 names of one character. From here on there is memory for the text itself, but
/// not for its names, which take far more.
CString ListWithoutMemoryForItsNames(char delimiter) {
    std::string list = "x";
    for (int i = 1; i < 2000; ++i) {
        list += delimiter;
        list += 'x';
    }
    support::FailAllocationsAbove(10'000);
    return list.c_str();
}

CString NamesInA(const CDir& directory) {
    return directory == CString("/a") ? ListWithoutMemoryForItsNames(',') : CString();
}

CString NoNames(const CDir& /*directory*/) {
    return {};
}

bool Exists(const CDir& /*path*/) {
    return true;
}

bool ExistsWhenAskedAgain(const CDir& /*path*/) {
    static bool asked = false;
    return std::exchange(asked, true);
}

TEST(AllocationFailure, FilesOfAListingThatCannotBeTakenApartAreNotTried) {
    const auto copy = [] {
        const bool copied =
            directory_tree::CopyFiles(CDir("/a"), CDir("/b"), {Exists, NamesInA, NoNames});
        support::AllowAllocations();
        EXPECT_FALSE(copied);
    };
    EXPECT_EQ(support::PrintedAtLevel(1, copy), "");
}

TEST(AllocationFailure, ListingThatCannotBeTakenApartFailsTheCopyOfATree) {
    const bool copied =
        directory_tree::CopyDirectory(CDir("/a"), CDir("/b"), {Exists, NoNames, NamesInA});
    support::AllowAllocations();
    EXPECT_FALSE(copied);
}

TEST(AllocationFailure, PathThatCannotBeTakenApartIsNotMade) {
    const CString path = ListWithoutMemoryForItsNames('/');
    const bool made = directory_tree::MakeDirectory(path, {ExistsWhenAskedAgain, NoNames, NoNames});
    support::AllowAllocations();
    EXPECT_FALSE(made);
}

TEST(CopyString, OneLevelOverloadFreesTheTargetAndLosesTheCopy) {
    CString string;
    char* original = CString::CreateCharString(3);
    support::WithholdNextArrayDelete();
    const bool copied = string.CopyString(original, "abc");
    auto* copy = static_cast<char*>(support::LastAllocation());
    EXPECT_EQ(support::WithheldArrayDelete(), original);
    EXPECT_TRUE(copied);
    ASSERT_NE(copy, original);  // what it holds nobody can see
    EXPECT_STREQ(original, "");
    delete[] copy;
    delete[] original;
}

TEST(CopyString, OneLevelOverloadAcceptsNoTarget) {
    CString string;
    EXPECT_TRUE(string.CopyString(static_cast<char*>(nullptr), "abc"));
    delete[] static_cast<char*>(support::LastAllocation());
}

// The deprecated overload stores through the array that it deletes. Here the array is withheld
// from freeing, which makes that defined.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

TEST(CopyString, PointerToPointerOverloadDeletesThePointerStorageItself) {
    CString string;
    char last[] = "x";
    char** pointers = new char*[4];
    pointers[3] = last;
    support::WithholdNextArrayDelete();
    const bool copied = string.CopyString(pointers, "abc");
    EXPECT_EQ(support::WithheldArrayDelete(), pointers);
    EXPECT_TRUE(copied);
    EXPECT_EQ(std::memcmp(pointers[0], "abc", 3), 0);
    EXPECT_EQ(last[0], '\0');
    delete[] pointers[0];
    delete[] pointers;
}

TEST(CopyString, PointerToPointerOverloadIsRightForAnEmptyText) {
    CString string;
    char** pointers = new char*[1];
    support::WithholdNextArrayDelete();
    const bool copied = string.CopyString(pointers, CString());
    EXPECT_EQ(support::WithheldArrayDelete(), pointers);
    EXPECT_TRUE(copied);
    EXPECT_STREQ(pointers[0], "");
    delete[] pointers[0];
    delete[] pointers;
}

#pragma GCC diagnostic pop

}  // namespace
