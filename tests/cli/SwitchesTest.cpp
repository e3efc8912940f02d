// One command line, the words on the screen, the status: usage, refusals, dispatch.
#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

using support::Arguments;
using support::Arlo2Folder;
using support::Result;
using support::SystallyOn;

constexpr char kUsage[] =
    "QEV (R) SYSTALLY version 1.3.01\n"
    "Command Line Systally Utility\n"
    "systally [ /s | /i | /p | /m:machType ]\n"
    "systally [ /vid:vid | /did:did | /svid:svid | /bn:busN | /dn:devN | /add:n ]\n"
    "System Information Parameters:\n"
    "/s - Causes program to return zero if this is an Corvina server.\n"
    "/i - Dumps all known information about system hardware to\n"
    "     the screen in an \"INI\" format.\n"
    "/p - Dumps all known information about system hardware to\n"
    "     the screen in a \"Properties File\" format.\n"
    "/m:machType - Compares the machine type of the current system to the one\n"
    "     denoted by \"machType\".  Returns 1 if \"machType\" matches the machine\n"
    "     type of the current system.  Returns 0 if there is not a match.\n"
    "PCI Information Parameters:\n"
    "All of the following cause the program to return the number of matching PCI\n"
    "devices found. These parameters may be used in combination with each other.\n"
    "/vid:vid   - Searches for PCI devices with the denoted vendor ID.\n"
    "/did:did   - Searches for PCI devices with the denoted device ID.\n"
    "/svid:svid - Searches for PCI devices with the denoted sub-vendor ID.\n"
    "/sdid:sdid - Searches for PCI devices with the denoted sub-device ID.\n"
    "/bn:busN   - Causes the PCI device search to start at bus number busN.\n"
    "/dn:devN   - Causes the PCI device search to start at device number devN.\n"
    "/add:num   - Adds the integer num to the return value before exiting.\n";

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

TEST(Switches, UnknownSwitchBehindAKnownOneIsASyntaxError) {
    ExpectSyntaxError({"/s", "/nope"});
}

TEST(Switches, RepeatedPlainSwitchIsASyntaxError) {
    ExpectSyntaxError({"/p", "/p"});
    ExpectSyntaxError({"/s", "/s"});
    ExpectSyntaxError({"/x64", "/X64"});
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
