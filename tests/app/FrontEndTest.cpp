// The switch table, its translation into one operation, and the usage text.
#include <gtest/gtest.h>

#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "app/systally.h"
#include "support/Usage.h"

namespace {

/// Parses a command line into the globals, which start every time as they do in a new process.
class FrontEnd : public testing::Test {
  protected:
    void SetUp() override {
        query_mode = 0;
        addValue = 0;
        vid = did = svid = sdid = busN = devN = 65535;
        vidpassed = didpassed = svidpassed = sdidpassed = false;
        machType = "";
    }

    /// What parseParams says of these arguments.
    static int Parse(std::initializer_list<const char*> arguments) {
        std::vector<std::string> texts = {"systally"};
        texts.insert(texts.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& text : texts) {
            argv.push_back(text.data());
        }
        CCLParams table;
        EXPECT_TRUE(setupParams(table));
        EXPECT_EQ(table.Parse(static_cast<int>(argv.size()), argv.data(), false), 0);
        return parseParams(table);
    }
};

/// The globals as the process found them, before a test changed them.
struct GlobalsAtStart : testing::Environment {
    void SetUp() override {
        numbers = {static_cast<uint32_t>(query_mode), addValue, vid, did, svid, sdid, busN, devN};
        anyPassed = vidpassed || didpassed || svidpassed || sdidpassed;
        machineType = machType.GetBuffer();
        processor = x64.GetBuffer();
    }

    std::vector<uint32_t> numbers;
    bool anyPassed = true;
    std::string machineType;
    std::string processor;
};

const auto* const atStart =
    static_cast<const GlobalsAtStart*>(testing::AddGlobalTestEnvironment(new GlobalsAtStart));

TEST(FrontEndGlobals, StartWithoutAnOperationAndWithoutCriteria) {
    EXPECT_EQ(atStart->numbers,
              (std::vector<uint32_t>{0, 0, 65535, 65535, 65535, 65535, 65535, 65535}));
    EXPECT_FALSE(atStart->anyPassed);
    EXPECT_EQ(atStart->machineType, "");
    EXPECT_EQ(atStart->processor, "TRUE");
}

TEST(FrontEndGlobals, OperationsAreSingleBits) {
    EXPECT_EQ(QPCI_VALUE, 1);
    EXPECT_EQ(QMACHTYPE_VALUE, 2);
    EXPECT_EQ(DUMP_INI_VALUE, 4);
    EXPECT_EQ(DUMP_PROP_VALUE, 8);
    EXPECT_EQ(QSERV_TYPE_VALUE, 16);
    EXPECT_EQ(DUMP_TABLES_VALUE, 32);
    EXPECT_EQ(QX64_VALUE, 64);
}

struct Switch {
    const char* name;
    bool takesValue;
};

/// In the order of registration.
constexpr Switch kSwitches[] = {
    {"/qMachType", true}, {"/m:", true},   {"/dumpProp", false}, {"/p", false},
    {"/dumpINI", false},  {"/i", false},   {"/s", false},        {"/dump", false},
    {"/vid:", true},      {"/did:", true}, {"/svid:", true},     {"/sdid:", true},
    {"/bn:", true},       {"/dn:", true},  {"/add:", true},      {"/x64", false}};

/// The result of parsing one argument with the table of the program.
int ParseOne(CCLParams& table, std::string argument) {
    EXPECT_TRUE(setupParams(table));
    std::string name = "systally";
    char* argv[] = {name.data(), argument.data()};
    return table.Parse(2, argv, false);
}

TEST(SetupParams, RegistersTheSwitchesInOrder) {
    constexpr unsigned kLast = std::size(kSwitches);
    for (unsigned given = 1; given <= kLast; ++given) {
        CCLParams table;
        EXPECT_EQ(ParseOne(table, kSwitches[given - 1].name), 0);
        for (unsigned index = 1; index <= kLast + 1; ++index) {
            CString value;
            EXPECT_EQ(table.GetValue(index, value), index == given)
                << kSwitches[given - 1].name << " as number " << index;
        }
    }
}

TEST(SetupParams, ValueFollowsTheNamesThatTakeOneAndNoOthers) {
    for (const auto& [name, takesValue] : kSwitches) {
        CCLParams table;
        EXPECT_EQ(ParseOne(table, std::string(name) + "Ab1"), takesValue ? 0 : 1) << name;
        CString value;
        EXPECT_EQ(table.GetValue(name, value), takesValue) << name;
        EXPECT_STREQ(value.GetBuffer(), takesValue ? "Ab1" : "") << name;
    }
}

TEST(SetupParams, NoSwitchIsRequired) {
    CCLParams table;
    setupParams(table);
    std::string name = "systally";
    char* argv[] = {name.data()};
    EXPECT_EQ(table.Parse(1, argv, false), 0);
}

TEST_F(FrontEnd, SetQueryModeStoresTheFirstModeAndRefusesTheSecond) {
    EXPECT_TRUE(setQueryMode(16));
    EXPECT_EQ(query_mode, 16);
    EXPECT_FALSE(setQueryMode(4));
    EXPECT_EQ(query_mode, 16);
}

TEST_F(FrontEnd, EachOperationSwitchSelectsItsOperation) {
    const struct {
        const char* argument;
        int mode;
    } cases[] = {{"/qMachType7712", 2}, {"/m:7712", 2}, {"/dumpProp", 8}, {"/p", 8},
                 {"/dumpINI", 4},       {"/i", 4},      {"/s", 16},       {"/dump", 32},
                 {"/vid:8086", 1},      {"/did:1", 1},  {"/svid:1", 1},   {"/sdid:1", 1},
                 {"/x64", 64},          {"/add:5", 0}};
    for (const auto& [argument, mode] : cases) {
        SetUp();
        EXPECT_EQ(Parse({argument}), 0) << argument;
        EXPECT_EQ(query_mode, mode) << argument;
    }
}

TEST_F(FrontEnd, ParseParamsStartsAnew) {
    query_mode = 4;
    addValue = 9;
    EXPECT_EQ(Parse({"/s"}), 0);
    EXPECT_EQ(query_mode, 16);
    EXPECT_EQ(addValue, 0U);
}

TEST_F(FrontEnd, MachineTypeComesFromTheSwitch) {
    EXPECT_EQ(Parse({"/m:7712"}), 0);
    EXPECT_STREQ(machType.GetBuffer(), "7712");
}

TEST_F(FrontEnd, LongMachineTypeSwitchHasNoColon) {
    EXPECT_EQ(Parse({"/qMachType7710"}), 0);
    EXPECT_STREQ(machType.GetBuffer(), "7710");
}

TEST_F(FrontEnd, LongMachineTypeSwitchWinsOverTheShortOne) {
    EXPECT_EQ(Parse({"/m:7712", "/qMachType7710"}), 0);
    EXPECT_STREQ(machType.GetBuffer(), "7710");
}

TEST_F(FrontEnd, BothNamesOfOneOperationAreOneOperation) {
    EXPECT_EQ(Parse({"/i", "/dumpINI"}), 0);
    EXPECT_EQ(query_mode, 4);
    SetUp();
    EXPECT_EQ(Parse({"/dumpProp", "/p"}), 0);
    EXPECT_EQ(query_mode, 8);
}

TEST_F(FrontEnd, MatchingIgnoresCaseAndValuesKeepIt) {
    EXPECT_EQ(Parse({"/M:abcD"}), 0);
    EXPECT_STREQ(machType.GetBuffer(), "abcD");
    SetUp();
    EXPECT_EQ(Parse({"/DUMPINI"}), 0);
    EXPECT_EQ(query_mode, 4);
}

TEST_F(FrontEnd, ValueInASeparateArgumentKeepsTheBlank) {
    EXPECT_EQ(Parse({"/m:", "7712"}), 0);
    EXPECT_STREQ(machType.GetBuffer(), " 7712");
}

TEST_F(FrontEnd, TwoOperationsAreRefused) {
    const std::initializer_list<const char*> lines[] = {
        {"/s", "/i"},     {"/i", "/p"},      {"/m:7712", "/s"},  {"/m:7712", "/vid:8086"},
        {"/s", "/dump"},  {"/dump", "/x64"}, {"/x64", "/did:1"}, {"/p", "/m:1"},
        {"/i", "/svid:1"}};
    for (const auto& line : lines) {
        SetUp();
        EXPECT_EQ(Parse(line), 255) << *line.begin();
    }
}

TEST_F(FrontEnd, IdentifiersAreHexadecimalWithOrWithoutPrefix) {
    EXPECT_EQ(Parse({"/vid:8086", "/did:0x1229", "/svid:10DE", "/sdid:ff"}), 0);
    EXPECT_EQ(vid, 0x8086U);
    EXPECT_EQ(did, 0x1229U);
    EXPECT_EQ(svid, 0x10DEU);
    EXPECT_EQ(sdid, 0xFFU);
    EXPECT_TRUE(vidpassed && didpassed && svidpassed && sdidpassed);
}

TEST_F(FrontEnd, IdentifierNotGivenStaysInactive) {
    EXPECT_EQ(Parse({"/did:1229"}), 0);
    EXPECT_TRUE(didpassed);
    EXPECT_FALSE(vidpassed || svidpassed || sdidpassed);
    EXPECT_EQ(vid, 65535U);
}

TEST_F(FrontEnd, AddedNumberIsDecimal) {
    EXPECT_EQ(Parse({"/vid:1", "/add:10"}), 0);
    EXPECT_EQ(addValue, 10U);
    SetUp();
    EXPECT_EQ(Parse({"/vid:1", "/add:0x10"}), 0);
    EXPECT_EQ(addValue, 0U);
    SetUp();
    EXPECT_EQ(Parse({"/vid:1", "/add:010"}), 0);
    EXPECT_EQ(addValue, 10U);
}

TEST_F(FrontEnd, StartPositionsTakeTheirBaseFromThePrefix) {
    EXPECT_EQ(Parse({"/vid:1", "/bn:0x10", "/dn:010"}), 0);
    EXPECT_EQ(busN, 16U);
    EXPECT_EQ(devN, 8U);
    SetUp();
    EXPECT_EQ(Parse({"/vid:1", "/bn:10", "/dn:9"}), 0);
    EXPECT_EQ(busN, 10U);
    EXPECT_EQ(devN, 9U);
}

TEST_F(FrontEnd, TextThatIsNoNumberGivesZeroOrItsLeadingDigits) {
    EXPECT_EQ(Parse({"/vid:zz", "/did:12xy", "/svid:", "/add:7up"}), 0);
    EXPECT_EQ(vid, 0U);
    EXPECT_EQ(did, 0x12U);
    EXPECT_EQ(svid, 0U);
    EXPECT_TRUE(svidpassed);
    EXPECT_EQ(addValue, 7U);
}

TEST_F(FrontEnd, NumbersKeepTheirLow32Bits) {
    EXPECT_EQ(Parse({"/vid:500008086", "/did:-1", "/svid:-ffffffff", "/add:4294967299"}), 0);
    EXPECT_EQ(vid, 0x8086U);
    EXPECT_EQ(did, 4294967295U);
    EXPECT_EQ(svid, 1U);
    EXPECT_EQ(addValue, 3U);
}

TEST_F(FrontEnd, NumbersBeyondTheRangeOfTheConversionGiveTheLargest) {
    EXPECT_EQ(Parse({"/vid:10000000000000000", "/add:99999999999999999999"}), 0);
    EXPECT_EQ(vid, 4294967295U);
    EXPECT_EQ(addValue, 4294967295U);
}

TEST_F(FrontEnd, StartPositionNeedsAnIdentifier) {
    EXPECT_EQ(Parse({"/bn:2"}), 255);
    SetUp();
    EXPECT_EQ(Parse({"/dn:3"}), 255);
    SetUp();
    EXPECT_EQ(Parse({"/s", "/bn:2"}), 255);
    SetUp();
    EXPECT_EQ(Parse({"/vid:10DE", "/bn:2"}), 0);
    SetUp();
    EXPECT_EQ(Parse({"/vid:10DE", "/dn:3"}), 0);
}

TEST_F(FrontEnd, StartPositionOf65535CountsAsNotGiven) {
    EXPECT_EQ(Parse({"/s", "/bn:65535", "/dn:0xFFFF"}), 0);
    EXPECT_EQ(query_mode, 16);
}

TEST(PrintUsage, PrintsTwentyThreeLines) {
    testing::internal::CaptureStdout();
    printUsage();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), support::kUsage);
}

}  // namespace
