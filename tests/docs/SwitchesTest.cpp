// The program's own table of switches against every place that tells of them.
// The front end becomes part of this file, because the table is its own affair.
#include "app/systally.cpp"
#include "docs/Documents.h"

namespace {

using documents::Page;
using documents::Section;
using documents::Words;
using support::FindWords;

/// The switches of the table, or those of one kind.
Words Switches() {
    Words names;
    for (const Switch& entry : kSwitches) {
        names.insert(entry.name);
    }
    return names;
}

Words Switches(CLParamModes mode) {
    Words names;
    for (const Switch& entry : kSwitches) {
        if (entry.mode == mode) {
            names.insert(entry.name);
        }
    }
    return names;
}

Words Without(Words names, const Words& others) {
    for (const std::string& other : others) {
        names.erase(other);
    }
    return names;
}

/// The switch with which a text such as "/m:TYPE" begins; the longest, "" when there is none.
std::string SwitchOf(const std::string& text) {
    std::string found;
    for (const Switch& entry : kSwitches) {
        const std::string name = entry.name;
        if (text.starts_with(name) && name.size() > found.size()) {
            found = name;
        }
    }
    return found;
}

/// The switches that narrow or change a count, and ask nothing alone.
const Words kGoWithTheCount = {"/bn:", "/dn:", "/add:"};

/// The switch as an argument, with a value where it takes one.
std::string Argument(const Switch& entry) {
    return entry.mode == CLP_VALUE ? std::string(entry.name) + "1" : entry.name;
}

/// The operation that the switch selects alone, as in a new process; 0 when it selects none.
int32_t OperationOf(const Switch& entry) {
    for (const Criterion& criterion : kCriteria) {
        *criterion.passed = false;
    }
    busN = devN = kNotGiven;
    std::string program = "systally";
    std::string argument = Argument(entry);
    char* argv[] = {program.data(), argument.data()};
    CCLParams table;
    setupParams(table);
    EXPECT_EQ(table.Parse(2, argv, false), 0) << argument;
    EXPECT_TRUE(table.GetValue(entry.name)) << argument << " is taken by another switch";
    parseParams(table);
    return query_mode;
}

TEST(SwitchTable, NamesAreAllDifferent) {
    EXPECT_EQ(Switches().size(), std::size(kSwitches));
}

TEST(SwitchTable, EachSwitchSelectsAnOperationOrGoesWithTheCount) {
    for (const Switch& entry : kSwitches) {
        EXPECT_EQ(OperationOf(entry) != 0, !kGoWithTheCount.contains(entry.name)) << entry.name;
    }
}

TEST(SwitchTable, EachSwitchIsAnsweredOnTheSampleServer) {
    for (const Switch& entry : kSwitches) {
        support::Arguments arguments = {Argument(entry)};
        if (kGoWithTheCount.contains(entry.name)) {
            arguments.emplace_back("/vid:1");
        }
        const support::Result result = support::SystallyOn(support::Arlo2Folder(), arguments);
        EXPECT_NE(result.status, 255) << entry.name << ": " << result.output << result.errors;
    }
}

TEST(SwitchTable, UsageLeavesOutTheLongFormsTheDumpAndTheProcessor) {
    testing::internal::CaptureStdout();
    printUsage();
    const std::string usage = testing::internal::GetCapturedStdout();
    const Words silent = {"/qMachType", "/dumpINI", "/dumpProp", "/dump", "/x64"};
    EXPECT_EQ(FindWords(usage, "/[A-Za-z0-9]+:?"), Without(Switches(), silent));
}

TEST(SwitchTable, ManualExplainsEachSwitch) {
    const std::string description = Section(Page("systally.8"), "DESCRIPTION");
    EXPECT_EQ(FindWords(description, "^\\.T[PQ]\n\\.B (/[A-Za-z0-9]+)$"), Switches(CLP_SWITCH));
    EXPECT_EQ(FindWords(description, "^\\.T[PQ]\n\\.BI (/[A-Za-z0-9]+:?) [A-Z]+$"),
              Switches(CLP_VALUE));
}

TEST(SwitchTable, ManualGivesTheExitStatusOfEachQuestion) {
    const std::string section = Section(Page("systally.8"), "EXIT STATUS");
    Words named;
    for (const std::string& tag : support::FindAll(section, "^\\.TP\n(.*)$")) {
        named.merge(FindWords(tag, "/[A-Za-z0-9]+:?"));
    }
    EXPECT_EQ(named, Without(Switches(), kGoWithTheCount));
}

TEST(SwitchTable, ManualsSynopsisLeavesOutTheLongForms) {
    const std::string synopsis = Section(Page("systally.8"), "SYNOPSIS");
    EXPECT_EQ(FindWords(synopsis, "/[A-Za-z0-9]+:?"),
              Without(Switches(), {"/qMachType", "/dumpINI", "/dumpProp"}));
}

TEST(SwitchTable, ReadmeHasARowForEachSwitch) {
    const std::string table =
        documents::Between(documents::Read("README.md"), "\n## Switches\n", "\n## ");
    Words named;
    for (const std::string& row : support::FindAll(table, "^\\| (`[^|]*) \\|")) {
        for (const std::string& text : support::FindAll(row, "`([^`]+)`")) {
            named.insert(SwitchOf(text));
        }
    }
    EXPECT_EQ(named, Switches());
}

TEST(SwitchTable, CompletionOffersEachSwitch) {
    const std::string completion = documents::Read("completions/systally");
    EXPECT_EQ(FindWords(documents::Between(completion, "_systally_switches() {", "\n}\n"),
                        "/[A-Za-z0-9]+:?"),
              Switches());
}

TEST(SwitchTable, CompletionOffersTheTypesOfAllModels) {
    const std::string completion = documents::Read("completions/systally");
    Words types;
    for (const Model& model : kModels) {
        types.insert(model.machineType);
    }
    EXPECT_EQ(FindWords(documents::Between(completion, "/m:) values='", "'"), "[0-9]+"), types);
}

}  // namespace
