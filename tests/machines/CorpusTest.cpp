// Each machine of the corpus gives its golden reports, byte by byte, by whatever way its table
// comes to the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "machines/Corpus.h"
#include "support/MachineAtHand.h"
#include "support/Patterns.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using corpus::Machine;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

std::string Golden(const std::string& name) {
    const fs::path file = fs::path(SYSTALLY_GOLDEN) / name;
    EXPECT_TRUE(fs::is_regular_file(file)) << "no " << file << "; ./dev golden makes it";
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::set<std::string> GoldenFiles() {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(SYSTALLY_GOLDEN)) {
        names.insert(entry.path().filename());
    }
    return names;
}

void ExpectGolden(const Result& result, const std::string& file) {
    const std::string golden = Golden(file);
    EXPECT_EQ(result.output, golden);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, golden.find("ERROR = 255\n") == std::string::npos ? 0 : 255);
}

TEST(Corpus, HasAsManyGoldenReportsAsItHasMachinesAndLayouts) {
    std::set<std::string> expected;
    for (const Machine& machine : corpus::Machines()) {
        expected.insert(machine.name + ".ini");
        expected.insert(machine.name + ".properties");
    }
    EXPECT_EQ(expected.size(), 2 * corpus::Machines().size());
    EXPECT_EQ(GoldenFiles(), expected);
}

class CorpusMachine : public testing::TestWithParam<Machine> {};

TEST_P(CorpusMachine, GivesItsGoldenReports) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    GetParam().description.WriteTo(machine);
    ExpectGolden(support::SystallyOn(machine, {"/i"}), GetParam().name + ".ini");
    ExpectGolden(support::SystallyOn(machine, {"/p"}), GetParam().name + ".properties");
}

std::string NameOf(const testing::TestParamInfo<Machine>& info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Each, CorpusMachine, testing::ValuesIn(corpus::Machines()), NameOf);

// --- Captured -----------------------------------------------------------------------------------

std::vector<Machine> MachinesWithTables() {
    std::vector<Machine> machines = corpus::Machines();
    std::erase_if(machines, [](const Machine& one) {
        return one.name == "damaged-no-tables" || one.name == "damaged-entry-point-at-the-very-end";
    });
    return machines;
}

class CapturedMachine : public testing::TestWithParam<Machine> {};

TEST_P(CapturedMachine, GivesThemToo) {
    const support::TemporaryFolder folder;
    const MachineAtHand machine(GetParam().description);
    const fs::path captured = folder.path() / "captured";
    ASSERT_EQ(machine.Run({ProgramPath("systally-capture"), captured}).status, 0);
    ExpectGolden(support::SystallyOn(captured, {"/i"}), GetParam().name + ".ini");
    ExpectGolden(support::SystallyOn(captured, {"/p"}), GetParam().name + ".properties");
}

INSTANTIATE_TEST_SUITE_P(Each, CapturedMachine, testing::ValuesIn(MachinesWithTables()), NameOf);

// --- The kernel's copy --------------------------------------------------------------------------

std::vector<Machine> SoundMachines() {
    std::vector<Machine> machines = corpus::Machines();
    std::erase_if(machines, [](const Machine& machine) { return !machine.isSound; });
    return machines;
}

/// A machine with the same table and a 64-bit entry point alone.
class SoundMachine : public testing::TestWithParam<Machine> {};

TEST_P(SoundMachine, GivesThemUnderUefiFirmware) {
    machine::MachineBuilder description = GetParam().description;
    MachineAtHand machine(description.NoEntryPoint());
    machine.WithKernelsCopy(support::EntryPoint64(0x7FD0A123, 0x10000), description.EncodeTable());
    ExpectGolden(machine.Run({ProgramPath("systally-on"), "--this", "/i"}),
                 GetParam().name + ".ini");
}

// --- Sanitized ----------------------------------------------------------------------------------

/// A report without the values that --sanitize replaces.
std::string Anonymous(const std::string& report) {
    return support::ReplaceAll(
        report, "(Serial_Number|System_UUID|Blade_Chassis_UUID)( = )[^\\n]*\\n", "$1$2\n");
}

TEST_P(SoundMachine, DiffersInItsIdentityAloneWhenItIsSanitized) {
    const support::TemporaryFolder folder;
    const MachineAtHand machine(GetParam().description);
    const fs::path captured = folder.path() / "captured";
    ASSERT_EQ(machine.Run({ProgramPath("systally-capture"), "--sanitize", captured}).status, 0);
    const std::string golden = Golden(GetParam().name + ".ini");
    const std::string report = support::SystallyOn(captured, {"/i"}).output;
    EXPECT_EQ(report.size(), golden.size());
    EXPECT_EQ(Anonymous(report), Anonymous(golden));
}

INSTANTIATE_TEST_SUITE_P(Each, SoundMachine, testing::ValuesIn(SoundMachines()), NameOf);

}  // namespace
