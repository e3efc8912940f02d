// The parameter table: registration, matching, values.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "util/CLParams.h"

namespace {

/// A command line whose argv lives as long as it does.
class CommandLine {
  public:
    CommandLine(std::initializer_list<std::string> arguments) : m_texts(arguments) {
        m_texts.insert(m_texts.begin(), "program");
        for (std::string& text : m_texts) {
            m_argv.push_back(text.data());
        }
    }
    int Argc() const { return static_cast<int>(m_argv.size()); }
    char** Argv() { return m_argv.data(); }

  private:
    std::vector<std::string> m_texts;
    std::vector<char*> m_argv;
};

int Parse(CCLParams& table, std::initializer_list<std::string> arguments,
          bool caseSensitive = true) {
    CommandLine line(arguments);
    return table.Parse(line.Argc(), line.Argv(), caseSensitive);
}

std::string ValueOf(CCLParams& table, const char* name) {
    CString value("untouched");
    table.GetValue(name, value);
    return value.GetBuffer();
}

TEST(CLParams, ModesHaveTheirValues) {
    EXPECT_EQ(CLP_SWITCH, 1);
    EXPECT_EQ(CLP_VALUE, 2);
    EXPECT_EQ(CLP_PATH, 3);
}

TEST(CLParams, EmptyTableRefusesAnyArgument) {
    CCLParams table;
    EXPECT_EQ(Parse(table, {"/a"}), 1);
}

TEST(CLParams, NoArgumentsFindNothing) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {}), 0);
    EXPECT_FALSE(table.GetValue("/a"));
}

TEST(CLParams, SwitchMatchesTheWholeArgument) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/ab"}), 1);
    EXPECT_EQ(Parse(table, {"/a"}), 0);
    EXPECT_TRUE(table.GetValue("/a"));
}

TEST(CLParams, CaseMattersOnlyWhenAsked) {
    CCLParams exact;
    exact.Add("/p", CLP_SWITCH, false);
    exact.Add("/dumpProp", CLP_SWITCH, false);
    EXPECT_EQ(Parse(exact, {"/dumpprop"}), 1);
    CCLParams folded;
    folded.Add("/p", CLP_SWITCH, false);
    folded.Add("/dumpProp", CLP_SWITCH, false);
    EXPECT_EQ(Parse(folded, {"/dumpprop"}, false), 0);
    EXPECT_TRUE(folded.GetValue("/dumpProp"));
    EXPECT_FALSE(folded.GetValue("/p"));
}

TEST(CLParams, RepeatedSwitchMatchesNothing) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/a", "/a"}), 1);
}

TEST(CLParams, ParseStopsAtTheFirstArgumentThatMatchesNothing) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    table.Add("/b", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/a", "/x", "/b"}), 1);
    EXPECT_TRUE(table.GetValue("/a"));
    EXPECT_FALSE(table.GetValue("/b"));
}

TEST(CLParams, UnknownModeGivesResult2) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    table.MakeNewNode();
    EXPECT_EQ(Parse(table, {"/a"}), 0);
    EXPECT_EQ(Parse(table, {"/b"}), 2);
}

TEST(CLParams, RequiredSwitchMustBeGiven) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    table.Add("/b", CLP_SWITCH, true);
    EXPECT_EQ(Parse(table, {}), 1);
    EXPECT_EQ(Parse(table, {"/b"}), 0);
}

TEST(CLParams, FirstRegisteredEntryTakesTheArgument) {
    CCLParams table;
    table.Add("/v", CLP_VALUE, false);
    table.Add("/vid:", CLP_VALUE, false);
    EXPECT_EQ(Parse(table, {"/vid:8086"}), 0);
    EXPECT_EQ(ValueOf(table, "/v"), "id:8086");
    EXPECT_FALSE(table.GetValue("/vid:"));
}

TEST(CLParams, FoundEntriesStayFoundInASecondParse) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/a"}), 0);
    EXPECT_EQ(Parse(table, {"/a"}), 1);
    EXPECT_TRUE(table.GetValue("/a"));
}

// --- Values
// -----------------------------------------------------------------------------------------

TEST(CLParamsValue, KeepsItsCase) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    EXPECT_EQ(Parse(table, {"/M:aBc"}, false), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), "aBc");
}

TEST(CLParamsValue, SpansTheFollowingArgumentsThatAreNoSwitches) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/m:x", "a", "b", "/s"}), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), "x a b");
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsValue, InASeparateArgumentBeginsWithABlank) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    EXPECT_EQ(Parse(table, {"/m:", "7712"}), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), " 7712");
}

TEST(CLParamsValue, ArgumentOfASingleBlankAddsOneBlank) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    EXPECT_EQ(Parse(table, {"/m:x", " ", "b"}), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), "x  b");
}

TEST(CLParamsValue, SwallowsARepeatedSwitch) {
    CCLParams table;
    table.Add("/vid:", CLP_VALUE, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/s", "/vid:8086", "/vid:10DE", "/s"}), 0);
    EXPECT_EQ(ValueOf(table, "/vid:"), "8086 /vid:10DE /s");
}

TEST(CLParamsValue, OfTwoHundredThousandArgumentsIsJoined) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    std::string program = "program";
    std::string first = "/m:";
    std::string rest = "a";
    std::vector<char*> argv(200'002, rest.data());
    argv[0] = program.data();
    argv[1] = first.data();
    EXPECT_EQ(table.Parse(static_cast<int>(argv.size()), argv.data(), true), 0);
    EXPECT_EQ(ValueOf(table, "/m:").size(), 400'000U);
}

TEST(CLParamsValue, GetParamReturnsThePositionBehindTheValue) {
    CCLParams table;
    CommandLine line({"/m:x", "a", "b"});
    CString value;
    int i = 1;
    EXPECT_EQ(table.GetParam(i, line.Argc(), line.Argv(), "/m:", value), 4);
    EXPECT_EQ(i, 4);
    EXPECT_STREQ(value.GetBuffer(), "x a b");
}

// --- Getters
// ----------------------------------------------------------------------------------------

TEST(CLParamsGetters, NameIsComparedWithRegardToCase) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    Parse(table, {"/A"}, false);
    EXPECT_TRUE(table.GetValue("/a"));
    EXPECT_FALSE(table.GetValue("/A"));
}

TEST(CLParamsGetters, UnknownNameEmptiesTheValue) {
    CCLParams table;
    EXPECT_EQ(ValueOf(table, "/nope"), "");
    EXPECT_FALSE(table.GetValue("/nope"));
}

TEST(CLParamsGetters, IndexCountsFromOne) {
    CCLParams table;
    table.Add("/a:", CLP_VALUE, false);
    table.Add("/b:", CLP_VALUE, false);
    Parse(table, {"/b:2"});
    CString value("untouched");
    EXPECT_FALSE(table.GetValue(1U, value));
    EXPECT_STREQ(value.GetBuffer(), "");
    EXPECT_TRUE(table.GetValue(2U, value));
    EXPECT_STREQ(value.GetBuffer(), "2");
    value = "untouched";
    EXPECT_FALSE(table.GetValue(0U, value));
    EXPECT_STREQ(value.GetBuffer(), "");
    value = "untouched";
    EXPECT_FALSE(table.GetValue(3U, value));
    EXPECT_STREQ(value.GetBuffer(), "");
}

// --- Paths
// ------------------------------------------------------------------------------------------

TEST(CLParamsPath, TakesTheRestOfTheArgument) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:/tmp/x"}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "/tmp/x");
}

TEST(CLParamsPath, WithoutQuotesEndsWithItsArgument) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:/tmp", "x"}), 1);
    EXPECT_EQ(ValueOf(table, "/f:"), "/tmp");
}

TEST(CLParamsPath, OneQuoteContinuesUpToTheNext) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    table.Add("", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "b", " ", "c\"", "rest"}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a b  c\"");
    EXPECT_EQ(ValueOf(table, ""), "rest");
}

TEST(CLParamsPath, TwoQuotesInOneArgumentEndWithIt) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a\"", "b"}), 1);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a\"");
}

TEST(CLParamsPath, EmptyNameTakesAnArgumentThatIsNoSwitch) {
    CCLParams table;
    table.Add("", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/s", "file"}), 0);
    EXPECT_EQ(ValueOf(table, ""), "file");
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsPath, GetPathParamReturnsThePositionBehindThePath) {
    CCLParams table;
    CommandLine line({"\"a", "b\"", "c"});
    CString value;
    int i = 1;
    EXPECT_EQ(table.GetPathParam(i, line.Argc(), line.Argv(), "", value), 3);
    EXPECT_EQ(i, 3);
    EXPECT_STREQ(value.GetBuffer(), "\"a b\"");
}

// --- IsSwitch and the list
// --------------------------------------------------------------------------

TEST(CLParamsIsSwitch, AsksTheEntriesThatAreNotFoundYet) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    table.Add("/v:", CLP_VALUE, false);
    table.Add("/f:", CLP_PATH, false);
    EXPECT_TRUE(table.IsSwitch("/s", true));
    EXPECT_FALSE(table.IsSwitch("/sx", true));
    EXPECT_TRUE(table.IsSwitch("/v:1", true));
    EXPECT_TRUE(table.IsSwitch("/f:1", true));
    EXPECT_FALSE(table.IsSwitch("/S", true));
    EXPECT_TRUE(table.IsSwitch("/S", false));
    Parse(table, {"/s"});
    EXPECT_FALSE(table.IsSwitch("/s", true));
}

TEST(CLParamsIsSwitch, EntryWithoutNameAndUnknownModeMatchNothing) {
    CCLParams table;
    table.Add("", CLP_PATH, false);
    table.MakeNewNode();
    EXPECT_FALSE(table.IsSwitch("anything", true));
    EXPECT_FALSE(table.IsSwitch("", true));
}

TEST(CLParamsList, FirstEntryPointsToTheLast) {
    CCLParams table;
    CCLParams::CLParamDef* first = table.MakeNewNode();
    EXPECT_EQ(first->pPrev, first);
    CCLParams::CLParamDef* second = table.MakeNewNode();
    CCLParams::CLParamDef* third = table.MakeNewNode();
    EXPECT_EQ(first->pPrev, third);
    EXPECT_EQ(first->pNext, second);
    EXPECT_EQ(second->pPrev, first);
    EXPECT_EQ(third->pPrev, second);
    EXPECT_EQ(third->pNext, nullptr);
}

TEST(CLParamsList, NewEntryIsEmpty) {
    CCLParams table;
    const CCLParams::CLParamDef* node = table.MakeNewNode();
    EXPECT_TRUE(node->sName.IsEmpty());
    EXPECT_TRUE(node->sValue.IsEmpty());
    EXPECT_FALSE(node->bFound);
    EXPECT_FALSE(node->bRequired);
    EXPECT_EQ(static_cast<int>(node->eMode), 0);
}

TEST(CLParamsList, DeleteNodesEmptiesTheTable) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    table.DeleteNodes();
    CString value;
    EXPECT_FALSE(table.GetValue(1U, value));
    EXPECT_TRUE(table.Add("/b", CLP_SWITCH, false));
    EXPECT_EQ(Parse(table, {"/b"}), 0);
}

}  // namespace
