// Which server is this: /m:, /qMachType and /s.
#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

using machine::MachineBuilder;
using machine::Structure;
using support::Arlo2Folder;
using support::Result;
using support::SystallyOn;

/// A server whose firmware says no more than who made it and what it is.
MachineBuilder Server(const std::string& maker, const std::string& product) {
    MachineBuilder machine;
    machine.Add(Structure(1, 0x1B).String(0x04, maker).String(0x05, product));
    return machine;
}

void ExpectSilence(const Result& result, int status) {
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, status);
}

TEST(MachineTypeQuery, MatchEndsWith1) {
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:7712"}), 1);
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/qMachType7712"}), 1);
}

TEST(MachineTypeQuery, OtherTypeEndsWith0) {
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:7710"}), 0);
}

TEST(MachineTypeQuery, ComparesTheWholeText) {
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:7712 "}), 0);
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:7712X"}), 0);
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:771"}), 0);
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/m:"}), 0);
}

TEST(MachineTypeQuery, ComparesWithRegardToCase) {
    const MachineBuilder machine = Server("QEV", "Box -[abcd00X]-");
    ExpectSilence(SystallyOn(machine, {"/m:abcd"}), 1);
    ExpectSilence(SystallyOn(machine, {"/m:ABCD"}), 0);
}

TEST(MachineTypeQuery, BlankCodeLeavesTheTypeToTheProductName) {
    const MachineBuilder machine = Server("QEV", "Corvina Arlo 2 Blade -[ ]-");
    ExpectSilence(SystallyOn(machine, {"/m:7710"}), 0);
    ExpectSilence(SystallyOn(machine, {"/m:7712"}), 1);
}

TEST(MachineTypeQuery, FirmwaresTypeWinsOverTheModelTable) {
    const MachineBuilder machine = Server("QEV", "Arlo 2 -[999900X]-");
    ExpectSilence(SystallyOn(machine, {"/m:7712"}), 0);
    ExpectSilence(SystallyOn(machine, {"/m:9999"}), 1);
}

TEST(MachineTypeQuery, UnknownTypeNeverMatches) {
    const MachineBuilder machine = Server("QEV", "Elm -[ ]-");
    ExpectSilence(SystallyOn(machine, {"/m:XXXX"}), 0);
}

TEST(MachineTypeQuery, TypeThatTheFirmwareSpellsAsThePlaceholderNeverMatches) {
    ExpectSilence(SystallyOn(Server("QEV", "Elm -[XXXX00X]-"), {"/m:XXXX"}), 0);
}

TEST(ServerFamilyQuery, ServerOfTheFamilyEndsWith0) {
    ExpectSilence(SystallyOn(Arlo2Folder(), {"/s"}), 0);
}

TEST(ServerFamilyQuery, MakersNameMayStandAmongOtherWords) {
    ExpectSilence(SystallyOn(Server("The QEV Company", "Arlo 2 -[771200X]-"), {"/s"}), 0);
}

TEST(ServerFamilyQuery, MakersNameIsComparedWithRegardToCase) {
    ExpectSilence(SystallyOn(Server("qev", "Arlo 2 -[771200X]-"), {"/s"}), 1);
}

TEST(ServerFamilyQuery, PartOfTheMakersNameIsNotEnough) {
    ExpectSilence(SystallyOn(Server("QEX", "Arlo 2 -[771200X]-"), {"/s"}), 1);
    ExpectSilence(SystallyOn(Server("QE", "Arlo 2 -[771200X]-"), {"/s"}), 1);
    ExpectSilence(SystallyOn(Server("EV Q", "Arlo 2 -[771200X]-"), {"/s"}), 1);
}

TEST(ServerFamilyQuery, TypeThatTheProductNameImpliesIsEnough) {
    ExpectSilence(SystallyOn(Server("QEV", "Birch -[ ]-"), {"/s"}), 0);
}

TEST(ServerFamilyQuery, OtherMakerEndsWith1) {
    ExpectSilence(SystallyOn(Server("Quill", "Arlo 2 -[771200X]-"), {"/s"}), 1);
}

TEST(ServerFamilyQuery, UnknownTypeEndsWith1WhoeverMadeTheServer) {
    ExpectSilence(SystallyOn(Server("QEV", "Elm -[ ]-"), {"/s"}), 1);
}

TEST(ServerFamilyQuery, NoManufacturerEndsWith1) {
    const MachineBuilder machine;  // a table of nothing but its end
    ExpectSilence(SystallyOn(machine, {"/s"}), 1);
}

}  // namespace
