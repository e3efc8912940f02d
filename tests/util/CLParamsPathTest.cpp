// The parameter table's paths and its count of the command line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "util/CLParams.h"

namespace {

int Parse(CCLParams& table, std::vector<std::string> texts) {
    std::vector<char*> argv;
    for (std::string& text : texts) {
        argv.push_back(text.data());
    }
    return table.Parse(static_cast<int>(argv.size()), argv.data(), true);
}

TEST(CLParamsPaths, AreDeliveredByNameAndByIndex) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    Parse(table, {"program", "/f:/tmp/x"});
    CDir path;
    EXPECT_TRUE(table.GetValue("/f:", path));
    EXPECT_TRUE(path == CString("/tmp/x"));
    CDir other;
    EXPECT_TRUE(table.GetValue(1U, other));
    EXPECT_TRUE(other == CString("/tmp/x"));
}

TEST(CLParamsPaths, OfAbsentSwitchesAreLeftAlone) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    Parse(table, {"program"});
    CDir path("/old");
    EXPECT_FALSE(table.GetValue("/f:", path));
    EXPECT_FALSE(table.GetValue("/nope", path));
    EXPECT_FALSE(table.GetValue(1U, path));
    EXPECT_FALSE(table.GetValue(0U, path));
    EXPECT_TRUE(path == CString("/old"));
}

TEST(CLParamsCount, IsNameAndSwitches) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 0);
    EXPECT_EQ(Parse(table, {"/usr/sbin/tool.x", "/s"}), 0);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 7);
}

TEST(CLParamsCount, ValuesCountWithTheirBlanks) {
    CCLParams table;
    table.Add("/v:", CLP_VALUE, false);
    EXPECT_EQ(Parse(table, {"tool", "/v:a", "bc"}), 0);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 4 + 1 + 3 + 4);
}

TEST(CLParamsCount, SwitchesThatAreNotGivenDoNotCount) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    table.Add("/t", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"tool", "/s"}), 0);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 4 + 3);
}

TEST(CLParamsCount, ProgramNameAloneCountsWithoutArguments) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/usr/sbin/tool.x"}), 0);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 4);
}

TEST(CLParamsCount, FoundSwitchesCountInAFailedParseToo) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"tool", "/s", "/x"}), 1);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 4 + 3);
}

TEST(CLParamsCount, ArgumentsBehindTheirNumberAreNotRead) {
    char name[] = "tool";
    char* argv[] = {name, nullptr};
    CCLParams table;
    EXPECT_EQ(table.Parse(0, argv, true), 0);
    EXPECT_EQ(table.GetNumberOfCommandLineCharacters(), 0);
}

}  // namespace
