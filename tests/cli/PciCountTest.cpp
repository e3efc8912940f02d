// How many PCI functions match: /vid:, /did:, /svid:, /sdid:, /bn:, /dn:, /add:.
#include <gtest/gtest.h>

#include <array>

#include "support/InMachine.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

using machine::MachineBuilder;
using machine::PciFunction;
using support::Arguments;
using support::Arlo2Folder;
using support::Result;
using support::SystallyOn;

void ExpectStatus(const Result& result, int status) {
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, status);
}

/// Functions on buses 00, 01, 0a, 80 and ff, in no order. All are of vendor 8086.
MachineBuilder ScatteredServer() {
    MachineBuilder machine;
    for (const auto& [bus, device, function] : {std::array<uint16_t, 3>{0xFF, 3, 0},
                                                {0x0A, 2, 0},
                                                {0x00, 0x1F, 0},
                                                {0x80, 0, 0},
                                                {0x00, 2, 0},
                                                {0x01, 0, 1},
                                                {0x0A, 4, 0},
                                                {0x01, 0, 0},
                                                {0x0A, 4, 1}}) {
        machine.Add(PciFunction{.bus = bus,
                                .device = device,
                                .function = function,
                                .vendorId = 0x8086,
                                .deviceId = 0x1229});
    }
    return machine;
}

TEST(PciCount, CountsTheFunctionsOfAVendor) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086"}), 14);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:0x14e4"}), 4);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:1000"}), 1);
}

TEST(PciCount, NoMatchEndsWith0) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:10DE"}), 0);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:0"}), 0);
}

TEST(PciCount, EachIdentifierHasItsSwitch) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/did:1639"}), 4);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/svid:51E5"}), 13);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/sdid:03C1"}), 2);
}

TEST(PciCount, EveryIdentifierGivenMustMatch) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/did:3A34"}), 1);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:14e4", "/did:3A34"}), 0);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/did:3A35", "/svid:51E5", "/sdid:03C1"}),
                 1);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/svid:51E5", "/sdid:03A9"}), 4);
}

TEST(PciCount, IdentifierAbove65535NeverMatches) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:10000"}), 0);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:18086"}), 0);
}

TEST(PciCount, IdentifierOf65535IsAnIdentifierAndNotAnAbsentOne) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:FFFF"}), 0);
}

TEST(PciCount, AddedNumberIsAddedToTheStatus) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/add:10"}), 24);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/vid:8086", "/did:0x1229", "/add:3"}), 12);
}

TEST(PciCount, StatusWrapsAt256) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/add:250"}), 8);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/add:-1"}), 13);
}

TEST(PciCount, NumbersCountByTheirLow32Bits) {
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:100008086"}), 14);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/add:4294967296"}), 14);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/vid:8086", "/bn:4294967296"}), 14);
}

/// The first `count` places that there are, each with a function of vendor 10DE.
MachineBuilder FullServer(unsigned count) {
    MachineBuilder machine;
    for (unsigned number = 0; number < count; ++number) {
        machine.Add(PciFunction{.bus = static_cast<uint16_t>(number / 256),
                                .device = static_cast<uint16_t>(number / 8 % 32),
                                .function = static_cast<uint16_t>(number % 8),
                                .vendorId = 0x10DE,
                                .configurationSize = 64});
    }
    return machine;
}

TEST(PciCount, ThreeHundredMatchesEndWith44) {
    ExpectStatus(SystallyOn(FullServer(300), {"/vid:10de", "/add:0"}), 44);
}

TEST(PciCount, EveryPlaceThatThereIsMayHoldAFunction) {
    const support::TemporaryFolder folder;
    // In memory: disks take their time to make so many files.
    const std::string output = support::InPrivateNamespace([&folder] {
        support::CoverWithEmptyDirectory(folder.path());
        const std::filesystem::path server = folder.path() / "server";
        FullServer(65536).WriteTo(server);
        ExpectStatus(SystallyOn(server, {"/vid:10DE", "/add:7"}), 7);
        ExpectStatus(SystallyOn(server, {"/vid:10DE", "/bn:255", "/dn:31"}), 8);
        const Result report = SystallyOn(server, {"/i"});
        EXPECT_NE(report.output.find("\nTotal_Number_Of_Devices = 65536\n"), std::string::npos);
        EXPECT_NE(report.output.find("\nFunction_Number.65535 = 7\n"), std::string::npos);
        EXPECT_EQ(report.status, 0);
    });
    EXPECT_EQ(output, "");
}

TEST(PciCount, StartBusSkipsLowerBuses) {
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:1", "/vid:8086"}), 7);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:0x80", "/vid:8086"}), 2);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:0", "/vid:8086"}), 9);
    ExpectStatus(SystallyOn(Arlo2Folder(), {"/bn:0x10", "/vid:8086"}), 3);
}

TEST(PciCount, StartBusWithoutDevicesStartsAtTheNextHigherOne) {
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:2", "/vid:8086"}), 5);
}

TEST(PciCount, StartBehindTheLastBusCountsNothing) {
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:256", "/vid:8086"}), 0);
}

TEST(PciCount, StartDeviceSkipsLowerDevicesOfTheStartBusAlone) {
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:10", "/dn:3", "/vid:8086"}), 4);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:10", "/dn:4", "/vid:8086"}), 4);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:10", "/dn:5", "/vid:8086"}), 2);
    ExpectStatus(SystallyOn(ScatteredServer(), {"/bn:2", "/dn:3", "/vid:8086"}), 5);
}

TEST(PciCount, StartDeviceWithoutAStartBusHasNoEffect) {
    ExpectStatus(SystallyOn(ScatteredServer(), {"/dn:5", "/vid:8086"}), 9);
}

TEST(PciCount, EmptyTreeEndsWithTheAddedNumber) {
    ExpectStatus(SystallyOn(MachineBuilder(), {"/vid:8086", "/add:3"}), 3);
}

TEST(PciCount, ReadsNoFirmware) {
    ExpectStatus(SystallyOn(ScatteredServer().NoEntryPoint(), {"/vid:8086"}), 9);
}

}  // namespace
