// One command line, the words on the screen, the status: usage, refusals, dispatch.
#include <gtest/gtest.h>

#include "support/Program.h"
#include "support/Usage.h"

namespace {

using support::Arguments;
using support::Arlo2Folder;
using support::kUsage;
using support::Result;
using support::SystallyOn;

void ExpectSyntaxError(const Arguments& arguments) {
    const Result result = SystallyOn(Arlo2Folder(), arguments);
    EXPECT_EQ(result.output, std::string("Syntax Error.\n") + kUsage) << arguments.front();
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 255);
}

void ExpectSilence(const Arguments& arguments, int status) {
    const Result result = SystallyOn(Arlo2Folder(), arguments);
    EXPECT_EQ(result.output, "") << arguments.front();
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, status) << arguments.front();
}

TEST(Switches, NoArgumentsPrintTheUsageAndEndWith255) {
    const Result result = SystallyOn(Arlo2Folder(), {});
    EXPECT_EQ(result.output, kUsage);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 255);
}

TEST(Switches, UsageNeedsNeitherMemoryNorPciList) {
    const Result result = support::Run({support::ProgramPath("systally")});
    EXPECT_EQ(result.output, kUsage);
    EXPECT_EQ(result.status, 255);
}

TEST(Switches, UnknownSwitchIsASyntaxError) {
    ExpectSyntaxError({"/nope"});
    ExpectSyntaxError({"-i"});
    ExpectSyntaxError({"i"});
    ExpectSyntaxError({""});
    ExpectSyntaxError({"/ii"});
}

TEST(Switches, LongerNameThanAPlainSwitchIsASyntaxError) {
    ExpectSyntaxError({"/dumpx"});
    ExpectSyntaxError({"/dumpPropx"});
    ExpectSyntaxError({"/dumpINI:"});
    ExpectSyntaxError({"/x64x"});
    ExpectSyntaxError({"/sx"});
    ExpectSyntaxError({"/px"});
}

TEST(Switches, ValueBehindAPlainSwitchIsASyntaxError) {
    ExpectSyntaxError({"/dumpProp", "x"});
    ExpectSyntaxError({"/dumpINI", "x"});
    ExpectSyntaxError({"/dump", "x"});
    ExpectSyntaxError({"/s", ""});
}

TEST(Switches, UnknownSwitchBehindAKnownOneIsASyntaxError) {
    ExpectSyntaxError({"/s", "/nope"});
}

TEST(Switches, RepeatedPlainSwitchIsASyntaxError) {
    ExpectSyntaxError({"/p", "/p"});
    ExpectSyntaxError({"/s", "/s"});
    ExpectSyntaxError({"/x64", "/X64"});
    ExpectSyntaxError({"/dump", "/dump"});
    ExpectSyntaxError({"/dumpINI", "/dumpINI"});
    ExpectSyntaxError({"/dumpProp", "/dumpProp"});
}

TEST(Switches, TwoOperationsAreASyntaxError) {
    ExpectSyntaxError({"/s", "/i"});
    ExpectSyntaxError({"/s", "/m:7712"});
    ExpectSyntaxError({"/m:7712", "/vid:8086"});
    ExpectSyntaxError({"/i", "/p"});
    ExpectSyntaxError({"/dump", "/x64"});
}

TEST(Switches, StartPositionWithoutAnIdentifierIsASyntaxError) {
    ExpectSyntaxError({"/bn:2"});
    ExpectSyntaxError({"/dn:2"});
    ExpectSyntaxError({"/s", "/bn:2"});
}

TEST(Switches, SwitchesThatSelectNoOperationEndSilentlyWith255) {
    ExpectSilence({"/add:5"}, 255);
}

TEST(Switches, StartPositionOf65535CountsAsNotGiven) {
    ExpectSilence({"/add:5", "/bn:65535"}, 255);
    ExpectSilence({"/s", "/bn:0xFFFF", "/dn:65535"}, 0);
}

TEST(Switches, SixtyFourBitProcessorEndsWith0) {
    ExpectSilence({"/x64"}, 0);
    ExpectSilence({"/X64"}, 0);
}

TEST(Switches, LongNamesAndOtherCaseDoTheSame) {
    const Result ini = SystallyOn(Arlo2Folder(), {"/i"});
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/dumpINI"}).output, ini.output);
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/DUMPINI"}).output, ini.output);
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/I"}).output, ini.output);
    const Result properties = SystallyOn(Arlo2Folder(), {"/p"});
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/dumpProp"}).output, properties.output);
    EXPECT_EQ(SystallyOn(Arlo2Folder(), {"/P"}).output, properties.output);
    EXPECT_NE(ini.output, properties.output);
    ExpectSilence({"/M:7712"}, 1);
    ExpectSilence({"/qmachtype7712"}, 1);
    ExpectSilence({"/S"}, 0);
}

TEST(Switches, ValueInASeparateArgumentMatchesNothing) {
    ExpectSilence({"/m:", "7712"}, 0);
}

TEST(Switches, RepeatedValueSwitchIsSwallowedByTheFirst) {
    // The value is "8086 /vid:10DE", whose leading digits are 8086.
    ExpectSilence({"/vid:8086", "/vid:10DE"}, 14);
}

}  // namespace
