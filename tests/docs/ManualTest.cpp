// The manual pages against what the programs do and say of themselves.
#include "docs/Documents.h"
#include "support/TemporaryFolder.h"

namespace {

using documents::Between;
using documents::OptionsOf;
using documents::Page;
using documents::Section;
using documents::Words;
using machine::MachineBuilder;
using machine::Structure;
using support::FindAll;
using support::FindWords;
using support::ReplaceAll;
using support::Result;

const Words kPages = {"systally.8", "systally-on.8", "systally-capture.8", "systally-export.1"};

TEST(Manual, LintFindsNothing) {
    for (const std::string& page : kPages) {
        const Result result =
            support::Run({"mandoc", "-Tlint", std::string(SYSTALLY_SOURCES) + "/docs/" + page});
        EXPECT_EQ(result.output + result.errors, "") << "mandoc comes with the package mandoc";
        EXPECT_EQ(result.status, 0) << page;
    }
}

TEST(Manual, PagesHaveTheSectionsThatReadersLookFor) {
    for (const std::string& page : kPages) {
        for (const char* heading :
             {"NAME", "SYNOPSIS", "DESCRIPTION", "EXIT STATUS", "FILES", "EXAMPLES", "SEE ALSO"}) {
            EXPECT_NE(Section(Page(page), heading), "\n") << page;
        }
    }
    for (const char* heading : {"OUTPUT", "LIMITATIONS"}) {
        EXPECT_NE(Section(Page("systally.8"), heading), "\n");
    }
}

TEST(Manual, PagesStandInTheSameOrder) {
    const std::vector<std::string> order = {"NAME",  "SYNOPSIS", "DESCRIPTION", "EXIT STATUS",
                                            "FILES", "EXAMPLES", "SEE ALSO"};
    for (const std::string& page : kPages) {
        EXPECT_EQ(FindAll(Page(page),
                          "^\\.SH (NAME|SYNOPSIS|DESCRIPTION|EXIT STATUS|FILES|EXAMPLES|"
                          "SEE ALSO)$"),
                  order)
            << page;
    }
}

TEST(Manual, EachPageLeadsToTheOthers) {
    for (const std::string& page : kPages) {
        const std::string seeAlso = Section(Page(page), "SEE ALSO");
        for (const std::string& other : kPages) {
            const std::string link = ".BR " + ReplaceAll(other, "\\.([18])", " ($1)");
            EXPECT_EQ(seeAlso.find(link) != std::string::npos, other != page)
                << page << " and " << link;
        }
    }
}

TEST(Manual, CompanionsHaveTheOptionsThatTheHelpLists) {
    for (const char* program : {"systally-on", "systally-capture"}) {
        const Words options = OptionsOf(program);
        EXPECT_GE(options.size(), 3U);
        EXPECT_EQ(FindWords(Page(std::string(program) + ".8"), "--[a-z0-9-]+"), options);
        EXPECT_EQ(FindWords(Section(Page(std::string(program) + ".8"), "OPTIONS"),
                            "^\\.B (--[a-z0-9-]+)$"),
                  options);
    }
}

TEST(Manual, ReportsKeysAreAllExplained) {
    const std::string report = documents::Read("tests/cli/golden/arlo2.ini");
    const Words keys = FindWords(report, "^([A-Za-z0-9_]+)[.0-9]* = ");
    EXPECT_EQ(keys.size(), 34U);
    Words explained;
    for (const std::string& tag :
         FindAll(Section(Page("systally.8"), "OUTPUT"), "^\\.T[PQ]\n\\.B[IR]? (.*)$")) {
        explained.merge(FindWords(tag, "[A-Z][A-Za-z0-9_]+"));
    }
    EXPECT_EQ(explained, keys);
}

TEST(Manual, IndexedKeysAreWrittenWithTheirIndex) {
    const std::string report = documents::Read("tests/cli/golden/arlo2.ini");
    EXPECT_EQ(FindWords(Section(Page("systally.8"), "OUTPUT"), "^\\.BI ([A-Za-z_]+)\\. N$"),
              FindWords(report, "^([A-Za-z_]+)\\.0 = "));
}

/// The lines between .EX and .EE.
Words ExampleLines(const std::string& page) {
    Words lines;
    bool inside = false;
    for (const std::string& line : FindAll(page, "[^\n]+")) {
        inside = line == ".EX" || (inside && line != ".EE");
        if (inside && line != ".EX") {
            lines.insert(line);
        }
    }
    return lines;
}

TEST(Manual, ExamplesFitEightyColumnsAndCanBeCopied) {
    for (const std::string& page : kPages) {
        const Result result = support::Run({"mandoc", "-Tascii", "-O", "width=78",
                                            std::string(SYSTALLY_SOURCES) + "/docs/" + page});
        const std::string shown = ReplaceAll(result.output, ".\b", "");
        for (const std::string& line : ExampleLines(Page(page))) {
            EXPECT_NE(shown.find(line + "\n"), std::string::npos) << page << ": " << line;
            EXPECT_LE(line.size(), 73U) << page << ": " << line;
        }
    }
}

TEST(Manual, ExamplesOfExportRun) {
    const support::TemporaryFolder folder;
    const std::string examples =
        ReplaceAll(Between(Section(Page("systally-export.1"), "EXAMPLES"), ".EX\n", ".EE\n"),
                   "collector=[^\n]*", "collector=.");
    const Result result = documents::Shell(
        support::Arlo2Folder(), "set -e; cd " + folder.path().string() +
                                    "; mkdir reports; systally /i >reports/a.ini; jq() { cat; }\n" +
                                    examples);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    for (const char* file : {"fleet.jsonl", "machine.html", "fleet.html", "systally.prom"}) {
        EXPECT_TRUE(std::filesystem::exists(folder.path() / file)) << file;
    }
}

TEST(Manual, SynopsisOfExportIsThatOfItsUsage) {
    const std::string usage =
        support::Run({support::ProgramPath("systally-export"), "--help"}).output;
    const std::string synopsis = Section(Page("systally-export.1"), "SYNOPSIS");
    EXPECT_TRUE(
        usage.starts_with("usage: systally-export SHAPE [-o FILE] [--pci-ids FILE] [REPORT...]\n"));
    EXPECT_EQ(FindWords(synopsis, "--?[a-z][a-z0-9-]*"),
              (Words{"-export", "-o", "--pci-ids", "--help", "--version"}));
}

/// The examples of systally.8, one after the other.
std::vector<std::string> Examples() {
    const std::string section = Section(Page("systally.8"), "EXAMPLES");
    std::vector<std::string> examples;
    for (size_t at = section.find(".EX\n"); at != std::string::npos;
         at = section.find(".EX\n", at + 1)) {
        examples.push_back(Between(section.substr(at), ".EX\n", ".EE\n"));
    }
    return examples;
}

std::vector<std::string> AnswersOn(const MachineBuilder& machine) {
    const support::TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    std::vector<std::string> answers;
    for (const std::string& example : Examples()) {
        const Result result = documents::Shell(folder.path() / "machine", example);
        answers.push_back(result.output + result.errors);
    }
    return answers;
}

TEST(ManualExamples, AnswerOnTheSampleServer) {
    std::vector<std::string> answers;
    for (const std::string& example : Examples()) {
        const Result result = documents::Shell(support::Arlo2Folder(), example);
        answers.push_back(result.output + result.errors);
    }
    EXPECT_EQ(answers, (std::vector<std::string>{"a server of the family\n", "an Arlo 2\n",
                                                 "ports: 4\n", "QS0012345\n"}));
}

TEST(ManualExamples, AnswerOnAnotherMakersServer) {
    const MachineBuilder other = MachineBuilder().Add(
        Structure(1, 0x1B).String(0x04, "Other").String(0x05, "Box").String(0x07, "B1"));
    EXPECT_EQ(AnswersOn(other), (std::vector<std::string>{"another server\n", "another type\n",
                                                          "ports: 0\n", "B1\n"}));
}

TEST(ManualExamples, SayWhenTheFirmwareCannotTell) {
    const std::vector<std::string> answers = AnswersOn(MachineBuilder().NoEntryPoint());
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers[0], "cannot tell\n");
    EXPECT_EQ(answers[1], "cannot tell\n");
}

TEST(ManualExamples, SayWhenThereIsNoPciList) {
    const std::string folder =
        std::filesystem::path(support::ProgramPath("systally")).parent_path().string();
    const Result result = support::RunWithHidden(
        "/proc/bus", {"sh", "-c", "PATH=" + folder + ":$PATH\n" + Examples().at(2)});
    EXPECT_EQ(result.output + result.errors, "ports: cannot tell\n");
}

}  // namespace
