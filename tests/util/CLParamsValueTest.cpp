// The parameter table: values and paths, up to the next switch.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "util/CLParams.h"
#include "util/CommandLine.h"

namespace {

using support::CommandLine;
using support::Parse;
using support::ValueOf;

// --- Values --------------------------------------------------------------------------------------

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

TEST(CLParamsValue, EndsAtASwitchInOtherCaseWhenCaseDoesNotMatter) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/m:x", "/S"}, false), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), "x");
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsValue, TakesASwitchInOtherCaseWhenCaseMatters) {
    CCLParams table;
    table.Add("/m:", CLP_VALUE, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/m:x", "/S"}), 0);
    EXPECT_EQ(ValueOf(table, "/m:"), "x /S");
    EXPECT_FALSE(table.GetValue("/s"));
}

TEST(CLParamsValue, OfATableThatParsedNothingYetEndsAtASwitchInAnyCase) {
    CCLParams table;
    table.Add("/s", CLP_SWITCH, false);
    CommandLine line({"/m:x", "a", "/S"});
    CString value;
    int i = 1;
    EXPECT_EQ(table.GetParam(i, line.Argc(), line.Argv(), "/m:", value), 3);
    EXPECT_STREQ(value.GetBuffer(), "x a");
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

// --- Paths ---------------------------------------------------------------------------------------

TEST(CLParamsPath, TakesTheRestOfTheArgument) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:/tmp/x"}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "/tmp/x");
}

TEST(CLParamsPath, KeepsItsCase) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/F:/Tmp/aB"}, false), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "/Tmp/aB");
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

TEST(CLParamsPath, OneQuoteEndsWithTheCommandLine) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "b"}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a b");
}

TEST(CLParamsPath, OneQuoteEndsAtASwitch) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "b", "/s"}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a b");
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsPath, OneQuoteEndsAtASwitchInOtherCaseWhenCaseDoesNotMatter) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "/S"}, false), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a");
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsPath, OneQuoteTakesASwitchInOtherCaseWhenCaseMatters) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "/S", "b\""}), 0);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a /S b\"");
}

TEST(CLParamsPath, MoreThanTwoQuotesEndItToo) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a", "b\"\"", "c\""}), 1);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a b\"\"");
}

TEST(CLParamsPath, ThreeQuotesInOneArgumentEndWithIt) {
    CCLParams table;
    table.Add("/f:", CLP_PATH, false);
    EXPECT_EQ(Parse(table, {"/f:\"a\"\"", "b"}), 1);
    EXPECT_EQ(ValueOf(table, "/f:"), "\"a\"\"");
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

TEST(CLParamsPath, EmptyNameLeavesASwitchInOtherCaseWhenCaseDoesNotMatter) {
    CCLParams table;
    table.Add("", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/S"}, false), 0);
    EXPECT_FALSE(table.GetValue(""));
    EXPECT_TRUE(table.GetValue("/s"));
}

TEST(CLParamsPath, EmptyNameTakesASwitchInOtherCaseWhenCaseMatters) {
    CCLParams table;
    table.Add("", CLP_PATH, false);
    table.Add("/s", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/S"}), 0);
    EXPECT_EQ(ValueOf(table, ""), "/S");
    EXPECT_FALSE(table.GetValue("/s"));
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

TEST(CLParamsPath, QuotesOfALockedValueAreTheOnesThatCount) {
    CCLParams table;
    CommandLine joined({"x", "y\"", "z\""});
    CString oneQuote("\"q");
    oneQuote.GetBuffer(10);
    int i = 1;
    EXPECT_EQ(table.GetPathParam(i, joined.Argc(), joined.Argv(), "", oneQuote), 4);
    EXPECT_STREQ(oneQuote.GetBuffer(), "\"q");

    CommandLine quoted({"\"x", "y"});
    CString noQuote("q");
    noQuote.GetBuffer(10);
    i = 1;
    EXPECT_EQ(table.GetPathParam(i, quoted.Argc(), quoted.Argv(), "", noQuote), 2);
    EXPECT_STREQ(noQuote.GetBuffer(), "q");
}

// Nothing behind the name is an assignment of nothing, and that clears the mark.
TEST(CLParamsValue, NothingBehindTheNameClearsTheMarkOfAnEmptyToken) {
    CCLParams table;
    CommandLine line({"/m:", "x"});
    CString value;
    value.AddToken("", ",");
    int i = 1;
    EXPECT_EQ(table.GetParam(i, line.Argc(), line.Argv(), "/m:", value), 3);
    EXPECT_STREQ(value.GetBuffer(), " x");
    EXPECT_EQ(value.FindToken("x", ","), 0);
}

TEST(CLParamsPath, NothingBehindTheNameClearsTheMarkOfAnEmptyToken) {
    CCLParams table;
    CommandLine line({"/f:"});
    CString value;
    value.AddToken("", ",");
    int i = 1;
    EXPECT_EQ(table.GetPathParam(i, line.Argc(), line.Argv(), "/f:", value), 2);
    EXPECT_EQ(value.GetNumberTokens(","), 0);
}

// The name may be looked for in the string that takes the value.
TEST(CLParamsValue, ValueIsEmptiedBeforeItsNodeIsLookedFor) {
    CCLParams table;
    CCLParams::CLParamDef* const node = table.MakeNewNode();
    node->sName = "/x";
    node->sValue = "v";
    node->bFound = true;
    EXPECT_FALSE(table.GetValue("/x", node->sName));
    EXPECT_STREQ(node->sName.GetBuffer(), "");
}

}  // namespace
