// The parameter table: registration, matching and results.
#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "support/BytesLeft.h"
#include "util/CLParams.h"
#include "util/CommandLine.h"

namespace {

using support::Parse;
using support::ValueOf;

TEST(CLParams, ModesHaveTheirValues) {
    EXPECT_EQ(CLP_SWITCH, 1);
    EXPECT_EQ(CLP_VALUE, 2);
    EXPECT_EQ(CLP_PATH, 3);
}

TEST(CLParams, ModesAreSigned32BitNumbers) {
    using Number = std::underlying_type_t<CLParamModes>;
    EXPECT_TRUE((std::is_same_v<Number, int32_t>));
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

TEST(CLParams, UnknownModeIsAnyOtherNumber) {
    for (const int mode : {-1, 0, 4, 99}) {
        CCLParams table;
        EXPECT_TRUE(table.Add("/z", static_cast<CLParamModes>(mode), false));
        EXPECT_EQ(Parse(table, {"/z"}), 2) << mode;
        EXPECT_FALSE(table.GetValue("/z")) << mode;
    }
}

TEST(CLParams, UnknownModeEndsTheSearchForAnEntryBehindIt) {
    CCLParams table;
    table.Add("/z", static_cast<CLParamModes>(99), false);
    table.Add("/a", CLP_SWITCH, false);
    EXPECT_EQ(Parse(table, {"/a"}), 2);
    EXPECT_FALSE(table.GetValue("/a"));
}

TEST(CLParams, UnknownModeWeighsMoreThanAnAbsentRequiredSwitch) {
    CCLParams table;
    table.Add("/b", CLP_SWITCH, true);
    table.Add("/z", static_cast<CLParamModes>(99), false);
    EXPECT_EQ(Parse(table, {"/a"}), 2);
}

TEST(CLParams, UnknownModeIsHarmlessWithoutArguments) {
    CCLParams table;
    table.Add("/z", static_cast<CLParamModes>(99), false);
    EXPECT_EQ(Parse(table, {}), 0);
    table.Add("/b", CLP_SWITCH, true);
    EXPECT_EQ(Parse(table, {}), 1);
}

TEST(CLParams, RequiredSwitchMustBeGiven) {
    CCLParams table;
    table.Add("/a", CLP_SWITCH, false);
    table.Add("/b", CLP_SWITCH, true);
    EXPECT_EQ(Parse(table, {}), 1);
    EXPECT_EQ(Parse(table, {"/b"}), 0);
}

TEST(CLParams, EveryRequiredSwitchMustBeGiven) {
    const struct {
        std::initializer_list<std::string> arguments;
        int result;
    } cases[] = {{{"/a", "/c"}, 1}, {{"/b", "/c"}, 1}, {{"/c"}, 1}, {{"/b", "/a"}, 0}};
    for (const auto& [arguments, result] : cases) {
        CCLParams table;
        table.Add("/a", CLP_SWITCH, true);
        table.Add("/b", CLP_SWITCH, true);
        table.Add("/c", CLP_SWITCH, false);
        EXPECT_EQ(Parse(table, arguments), result) << *arguments.begin();
    }
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

// --- Getters -------------------------------------------------------------------------------------

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

// --- IsSwitch and the list -----------------------------------------------------------------------

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

TEST(CLParamsIsSwitch, FoldsTheNamesToo) {
    CCLParams table;
    table.Add("/Dump", CLP_SWITCH, false);
    table.Add("/Vid:", CLP_VALUE, false);
    EXPECT_TRUE(table.IsSwitch("/dUMP", false));
    EXPECT_TRUE(table.IsSwitch("/vID:8086", false));
    EXPECT_FALSE(table.IsSwitch("/vid:8086", true));
    EXPECT_FALSE(table.IsSwitch("/Vid", true));
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

TEST(CLParams, TableGivesItsMemoryBack) {
    EXPECT_EQ(support::BytesLeftBy([] {
                  CCLParams table;
                  table.Add("/a", CLP_SWITCH, false);
                  table.Add("/b:", CLP_VALUE, false);
                  Parse(table, {"/b:value", "more"});
              }),
              0U);
}

}  // namespace
