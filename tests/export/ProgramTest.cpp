// systally-export from the outside: inputs, options, messages and statuses.
#include <gtest/gtest.h>

#include <algorithm>

#include "export/Exporter.h"

namespace {

using exporter::ExpectComplaint;
using exporter::Export;
using exporter::kProgram;
using reports::Arlo2;
using reports::Contents;
using reports::File;
using reports::kBare;
using reports::Replaced;
using support::Result;

size_t CountLines(const std::string& text) {
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

// --- Inputs -------------------------------------------------------------------------------------

TEST(Program, ReadsStandardInputUnlessFilesAreNamed) {
    const File file(Arlo2());
    const Result named = Export({"--json", file.path()});
    EXPECT_EQ(named.status, 0);
    EXPECT_EQ(named.errors, "");
    EXPECT_EQ(CountLines(named.output), 1U);
    const std::string quoted = kProgram + " --json <" + file.path();
    EXPECT_EQ(support::Run({"sh", "-c", quoted}).output, named.output);
    EXPECT_EQ(
        support::Run({"sh", "-c", "cat " + file.path() + "|" + kProgram + " --json -"}).output,
        named.output);
}

TEST(Program, FilesOfOneNameAreMachinesOfTheirFolders) {
    const support::TemporaryFolder folder;
    for (const char* name : {"r1", "r2"}) {
        std::filesystem::create_directory(folder.path() / name);
        std::ofstream(folder.path() / name / "web1.ini") << kBare;
    }
    const std::string command = "cd " + folder.path().string() + "; " + kProgram;
    const Result metrics =
        support::Run({"sh", "-c", command + " --prometheus r1/web1.ini r2/web1.ini"});
    EXPECT_EQ(metrics.errors, "");
    EXPECT_NE(metrics.output.find("{machine=\"r1/web1\"} 0\n"), std::string::npos);
    EXPECT_NE(metrics.output.find("{machine=\"r2/web1\"} 0\n"), std::string::npos);
    const Result page = support::Run({"sh", "-c", command + " --html r1/web1.ini r2/web1.ini"});
    EXPECT_NE(page.output.find(">r1/web1</a>"), std::string::npos);
    EXPECT_NE(page.output.find(">r2/web1</a>"), std::string::npos);
}

TEST(Program, BothLayoutsGiveTheSame) {
    const File ini(Arlo2("ini"));
    const File properties(Arlo2("properties"));
    EXPECT_EQ(Export({"--json", ini.path()}).output, Export({"--json", properties.path()}).output);
}

TEST(Program, ReportsOfAllInputsFollowInOrder) {
    const File first(Arlo2());
    const File second(Arlo2("properties") + kBare);
    const Result result = Export({"--json", first.path(), second.path()});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output,
              Export({"--json", first.path()}).output + Export({"--json", second.path()}).output);
    EXPECT_EQ(CountLines(result.output), 3U);
}

TEST(Program, ReadsWhatTheProgramPrints) {
    const std::string command = support::ProgramPath("systally-on") + " " +
                                support::Arlo2Folder().string() + " /p | " + kProgram + " --json";
    const File golden(Arlo2());
    EXPECT_EQ(support::Run({"sh", "-c", command}).output, Export({"--json", golden.path()}).output);
}

// --- Damage -------------------------------------------------------------------------------------

TEST(Program, DamageIsNamedWithFileAndLine) {
    const File file(Replaced(Arlo2(), "Blade_Slot = 14\n", ""));
    ExpectComplaint(Export({"--json", file.path()}), 1,
                    file.path() +
                        ":28: expected \"Blade_Slot = \", found \"Blade_Chassis_UUID = "
                        "9F3C0D5E6A7B41C2B8D0E1F203142536\"");
}

TEST(Program, DamageOnStandardInputIsNamed) {
    ExpectComplaint(support::Run({"sh", "-c", "echo hello | " + kProgram + " --json"}), 1,
                    "standard input:1: expected a report, which begins with \"[System]\" or "
                    "\"System_Machine_Type = \", found \"hello\"");
}

TEST(Program, InputWithoutAReportIsNone) {
    const std::string none =
        "expected a report, which begins with \"[System]\" or "
        "\"System_Machine_Type = \", found the end of the file";
    ExpectComplaint(Export({"--json"}), 1, "standard input:1: " + none);
    const File blank("\n\n");
    ExpectComplaint(Export({"--json", blank.path()}), 1, blank.path() + ":3: " + none);
    const File good(kBare);
    const Result result = Export({"--json", good.path(), "/dev/null"});
    EXPECT_EQ(result.errors, "systally-export: /dev/null:1: " + none + "\n");
    EXPECT_EQ(result.status, 1);
}

TEST(Program, ByteOrderMarkIsSkipped) {
    const File plain(Arlo2());
    for (const char* layout : {"ini", "properties"}) {
        const File marked("\xEF\xBB\xBF" + Arlo2(layout));
        const Result result = Export({"--json", marked.path()});
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.output, Export({"--json", plain.path()}).output);
    }
}

TEST(Program, MissingFileIsNamed) {
    ExpectComplaint(Export({"--json", "/nowhere/web1.ini"}), 1,
                    "/nowhere/web1.ini: cannot read: No such file or directory");
}

TEST(Program, NamesInMessagesMoveNoCursor) {
    ExpectComplaint(Export({"--json", "/nowhere/web\n1\x1B[2J.ini"}), 1,
                    "/nowhere/web?1?[2J.ini: cannot read: No such file or directory");
}

TEST(Program, MachineThatCannotBeReadEndsAPipeWithAMessage) {
    const support::TemporaryFolder folder;
    machine::MachineBuilder().NoEntryPoint().WriteTo(folder.path() / "machine");
    const std::string command = support::ProgramPath("systally-on") + " " +
                                (folder.path() / "machine").string() + " /i | " + kProgram +
                                " --json";
    ExpectComplaint(support::Run({"sh", "-c", command}), 1,
                    "standard input:1: no report: systally itself failed and said \"Catastrophic "
                    "ParseTables() failure -3 \"");
}

TEST(Program, MachinesBeforeTheDamageAreWhole) {
    const File file(std::string(kBare) + "\nhello\n");
    const Result result = Export({"--json", file.path()});
    EXPECT_EQ(CountLines(result.output), 1U);
    EXPECT_EQ(result.output.substr(result.output.size() - 3), "]}\n");
    EXPECT_EQ(result.status, 1);
}

TEST(Program, FewerFunctionsThanCountedGiveAWarning) {
    const File file("\n" + Replaced(Arlo2(), "Of_Devices = 20", "Of_Devices = 24"));
    const Result result = Export({"--json", file.path()});
    EXPECT_EQ(result.errors, "systally-export: " + file.path() +
                                 ":233: warning: the report counts 24 PCI functions and its list "
                                 "ends here, after 20: the others are outside buses 0 to 255, or "
                                 "the report was cut\n");
    EXPECT_EQ(CountLines(result.output), 1U);
    EXPECT_EQ(result.status, 0);
}

TEST(Program, ShapeOfOneMachineRefusesASecond) {
    const File file(std::string(kBare) + "\n" + kBare);
    ExpectComplaint(Export({"--ansible", file.path()}), 1,
                    file.path() + ":24: a second report, and --ansible describes one machine");
}

// --- Command line -------------------------------------------------------------------------------

TEST(Program, OneShapeMustBeChosen) {
    ExpectComplaint(Export({}), 2, "no shape is given; try systally-export --help");
    ExpectComplaint(Export({"--json", "--ansible"}), 2, "one shape at a time, please");
}

TEST(Program, UnknownOptionIsAUsageError) {
    const Result result = Export({"--yaml"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "systally-export: unrecognized option '--yaml'\n"
              "systally-export: try systally-export --help\n");
    EXPECT_EQ(result.status, 2);
}

TEST(Program, EmptyNameOfAFileIsAUsageError) {
    const File file(kBare);
    for (const char* option : {"-o", "--output", "--pci-ids"}) {
        ExpectComplaint(Export({"--html", option, "", file.path()}), 2,
                        "the name of a file is empty");
    }
}

TEST(Program, VersionIsThatOfTheProject) {
    const Result result = Export({"--version"});
    EXPECT_EQ(result.output, "systally-export 1.3.01\n");
    EXPECT_EQ(result.status, 0);
}

/// The long options that a text speaks of.
std::vector<std::string> OptionsIn(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\\'), text.end());
    std::vector<std::string> options;
    for (size_t start = 0; (start = text.find("--", start)) != std::string::npos;) {
        const size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", start);
        options.push_back(text.substr(start, end - start));
        start = end;
    }
    std::sort(options.begin(), options.end());
    options.erase(std::unique(options.begin(), options.end()), options.end());
    return options;
}

TEST(Program, HelpAndManualPageNameTheSameOptions) {
    const Result help = Export({"--help"});
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(OptionsIn(help.output), OptionsIn(Contents(SYSTALLY_DOCS "/systally-export.1")));
    EXPECT_EQ(OptionsIn(help.output),
              (std::vector<std::string>{"--ansible", "--facter", "--help", "--html", "--json",
                                        "--output", "--pci-ids", "--prometheus", "--version"}));
}

TEST(Program, FullDiskIsReported) {
    const File file(kBare);
    ExpectComplaint(support::Run({"sh", "-c", kProgram + " --json " + file.path() + " >/dev/full"}),
                    1, "cannot write standard output: No space left on device");
}

}  // namespace
