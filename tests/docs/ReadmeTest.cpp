// What README.md shows as typed and answered, typed and answered.
// A machine that shows the sample server's memory and functions stands for the reader's own.
#include "docs/Documents.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

/// A command behind a "$ ", and the lines below it.
struct Shown {
    std::string command;
    Lines answer;
};

/// All that stands in the blocks named console, in order.
std::vector<Shown> ShownIn(const std::string& document) {
    std::vector<Shown> shown;
    bool inside = false;
    std::istringstream lines(document);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            inside = line == "```console";
        } else if (inside && line.starts_with("$ ")) {
            shown.push_back({line.substr(2), {}});
        } else if (inside) {
            shown.back().answer.push_back(line);
        }
    }
    return shown;
}

/// Whether a line is the one shown, which may end with "..." in place of its rest.
bool IsLine(const std::string& line, const std::string& shown) {
    return shown.ends_with("...") ? line.starts_with(shown.substr(0, shown.size() - 3))
                                  : line == shown;
}

/// Whether the lines are those shown, among which "..." stands for one or more.
bool AreLines(const Lines& lines, const Lines& shown) {
    size_t next = 0;
    bool skipping = false;
    for (const std::string& line : shown) {
        if (line == "...") {
            skipping = true;
            ++next;
            continue;
        }
        while (skipping && next < lines.size() && !IsLine(lines[next], line)) {
            ++next;
        }
        if (next >= lines.size() || !IsLine(lines[next], line)) {
            return false;
        }
        skipping = false;
        ++next;
    }
    return skipping ? next <= lines.size() : next == lines.size();
}

void WriteScript(const fs::path& path, const std::string& text) {
    std::ofstream(path) << "#!/bin/sh\n" << text << "\n";
    fs::permissions(path, fs::perms(0755));
}

/// A clone of the sources after ./dev run, as far as the commands see it.
class Clone {
  public:
    Clone() {
        fs::create_directories(m_path / "build/release");
        fs::create_directory(m_path / "tools");
        fs::create_symlink(m_programs, m_path / "build/release/bin");
        fs::create_symlink(support::Arlo2Folder(), m_path / "build/release/arlo2");
        WriteScript(m_path / "dev",
                    "[ $1 = run ] || exit 2; shift; [ $# -gt 0 ] || set -- /i\n"
                    "exec build/release/bin/systally-on build/release/arlo2 \"$@\"");
        WriteScript(m_path / "tools/sudo", "exec \"$@\"");
    }

    /// What each of the commands answers, all of them typed into one shell.
    std::vector<Lines> Answers(const std::vector<Shown>& shown) const {
        std::string script = "exec 2>&1; cd " + m_path.string() +
                             "; PATH=$PWD/tools:" + m_programs.string() + ":$PATH\n";
        for (const Shown& each : shown) {
            script += "printf '\\036'\n" + each.command + "\n";
        }
        const support::Result result =
            support::RunOnMachine(support::Arlo2Folder(), {"sh", "-c", script});
        std::vector<Lines> answers;
        for (const std::string& answer : support::FindAll(result.output, "\036([^\036]*)")) {
            answers.push_back(support::FindAll(answer, "[^\n]+|\n(?=\n)"));
        }
        return answers;
    }

    std::string Contents(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(m_path / name).rdbuf();
        return text.str();
    }

  private:
    support::TemporaryFolder m_folder;
    fs::path m_path = m_folder.path();
    fs::path m_programs = fs::path(support::ProgramPath("systally")).parent_path();
};

TEST(Readme, CommandsAnswerAsShown) {
    const std::vector<Shown> shown = ShownIn(documents::Read("README.md"));
    ASSERT_GE(shown.size(), 10U);
    const Clone clone;
    const std::vector<Lines> answers = clone.Answers(shown);
    ASSERT_EQ(answers.size(), shown.size());
    for (size_t i = 0; i < shown.size(); ++i) {
        EXPECT_TRUE(AreLines(answers[i], shown[i].answer))
            << shown[i].command << " answers " << testing::PrintToString(answers[i]);
    }
    const std::string report = documents::Read("tests/cli/golden/arlo2.ini");
    EXPECT_EQ(clone.Contents("inventory.ini"), report);
    EXPECT_EQ(clone.Contents("build/here.ini"), report);
    EXPECT_TRUE(clone.Contents("build/arlo2.html").starts_with("<!DOCTYPE html>"));
    EXPECT_NE(clone.Contents("build/fleet.html").find("<h1 tabindex=\"-1\">2 machines</h1>"),
              std::string::npos);
}

TEST(Readme, LinesAreComparedInOrderAndWithTheirGaps) {
    EXPECT_TRUE(AreLines({"a", "b", "c"}, {"a", "b", "c"}));
    EXPECT_TRUE(AreLines({"a", "b", "c"}, {"a", "..."}));
    EXPECT_TRUE(AreLines({"a", "b", "c"}, {"...", "c"}));
    EXPECT_TRUE(AreLines({"long line"}, {"long..."}));
    EXPECT_FALSE(AreLines({"a", "b", "c"}, {"a", "b"}));
    EXPECT_FALSE(AreLines({"a", "b", "c"}, {"a", "c"}));
    EXPECT_FALSE(AreLines({"a"}, {"a", "..."}));
    EXPECT_FALSE(AreLines({"a", "b"}, {"...", "a"}));
    EXPECT_FALSE(AreLines({}, {"a"}));
    EXPECT_FALSE(AreLines({"long line"}, {"longer..."}));
}

}  // namespace
