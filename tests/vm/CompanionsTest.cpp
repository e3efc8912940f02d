// The companions on real firmware: --this and a captured folder answer as the program does, in the
// guest and on the host that runs the tests.
#include <filesystem>
#include <fstream>

#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "vm/Answers.h"

namespace vm {

namespace {

namespace fs = std::filesystem;

class Companions : public OnGuest {
  protected:
    static void ExpectSameAnswer(const Answer& actual, const Answer& expected,
                                 const std::string& what) {
        EXPECT_EQ(actual.out, expected.out) << what;
        EXPECT_EQ(actual.status, expected.status) << what;
    }
    Answer Said(const std::string& command) const { return AnswerOf(GetParam(), command); }
};

INSTANTIATE_TEST_SUITE_P(VM, Companions, EveryGuest(), GuestName);

/// Guests on which the program alone answers, too.
class CompanionsBesideIt : public Companions {};

INSTANTIATE_TEST_SUITE_P(VM, CompanionsBesideIt, GuestsThatAnswerAlone(), GuestName);

struct Question {
    const char* command;  ///< its name among the guest's commands
    std::vector<std::string> switches;
};

/// Each of the sixteen switches occurs.
const Question kQuestions[] = {
    {"report-ini", {"/i"}},
    {"report-ini-long", {"/DumpINI"}},
    {"report-properties", {"/p"}},
    {"report-properties-long", {"/dumpprop"}},
    {"server-family", {"/s"}},
    {"type-7712", {"/m:7712"}},
    {"type-Stan", {"/qMachTypeStan"}},
    {"x64", {"/x64"}},
    {"dump", {"/dump"}},
    {"vid-8086-add-300", {"/vid:8086", "/add:300"}},
    {"vid-8086-bn-1-dn-4", {"/vid:8086", "/bn:1", "/dn:4"}},
    {"did-1", {"/did:1"}},
    {"svid-1af4", {"/svid:1af4"}},
    {"sdid-1100", {"/sdid:1100"}},
};

TEST_P(CompanionsBesideIt, ThisAnswersAsTheProgramDoes) {
    for (const Question& question : kQuestions) {
        const std::string command = question.command;
        ExpectSameAnswer(Said("this-" + command), Said(command), command);
    }
    ExpectSameAnswer(Said("this-unknown-switch"), Said("unknown-switch"), "/q");
}

TEST_P(Companions, CapturedFolderAnswersAsTheProgramDoesInTheGuest) {
    EXPECT_EQ(Said("capture").status, 0) << Said("capture").err;
    EXPECT_EQ(Said("capture").out, "");
    ExpectSameAnswer(Said("captured-i"), Ran("report-ini"), "/i");
    ExpectSameAnswer(Said("captured-p"), Ran("report-properties"), "/p");
}

/// User namespaces are open to everyone on the guests' kernel.
TEST_P(Companions, CapturedFolderAnswersAnOrdinaryUserInTheGuest) {
    ExpectSameAnswer(Said("nobody-captured-i"), Ran("report-ini"), "/i");
    EXPECT_EQ(Said("nobody-captured-i").err, "");
    ExpectSameAnswer(Said("nobody-captured-dump"), Ran("dump"), "/dump");
}

TEST_P(CompanionsBesideIt, CaptureNamesItsSource) {
    EXPECT_NE(Said("captured-about").out.find("source = /dev/mem"), std::string::npos)
        << Said("captured-about").out;
}

TEST_P(Companions, OrdinaryUserCanCaptureNothing) {
    EXPECT_EQ(Said("nobody-capture").status, 255);
    EXPECT_NE(Said("nobody-capture").err.find("no source shows this machine's SMBIOS table"),
              std::string::npos)
        << Said("nobody-capture").err;
}

/// The guest's folder, packed there with tar -S, unpacked here and asked by an ordinary user.
class UnpackedFolder {
  public:
    explicit UnpackedFolder(const std::string& guest) {
        // Open to everyone, as the build's folders may be private.
        fs::permissions(m_folder.path(), fs::perms::all);
        for (const char* program : {"systally", "systally-on"}) {
            fs::copy(support::ProgramPath(program), m_folder.path() / program);
        }
        fs::copy(std::string(SYSTALLY_VM_ANSWERS) + "/" + guest + "/captured-folder.out",
                 m_folder.path() / "archive");
        const support::Result result =
            support::RunIn(m_folder.path(), support::AsOrdinaryUser({"tar", "-xf", "archive"}));
        EXPECT_EQ(result.status, 0) << result.errors;
    }

    support::Result Ask(const std::vector<std::string>& switches) const {
        support::Arguments command = {m_folder.path() / "systally-on", m_folder.path() / "machine"};
        command.insert(command.end(), switches.begin(), switches.end());
        return support::Run(support::AsOrdinaryUser(command));
    }

  private:
    support::TemporaryFolder m_folder;
};

TEST_P(Companions, FolderAnswersEverySwitchOnAnotherHost) {
    const UnpackedFolder folder(GetParam());
    for (const Question& question : kQuestions) {
        const support::Result here = folder.Ask(question.switches);
        const Answer there = Ran(question.command);
        EXPECT_EQ(here.output, there.out) << question.command;
        EXPECT_EQ(here.errors, "") << question.command;
        EXPECT_EQ(here.status, there.status) << question.command;
    }
}

/// Guests on which the program alone finds nothing.
class CompanionsAlone : public Companions {};

INSTANTIATE_TEST_SUITE_P(VM, CompanionsAlone, GuestsThatDoNotAnswerAlone(), GuestName);

TEST_P(CompanionsAlone, CaptureTakesTheKernelsCopy) {
    EXPECT_EQ(Said("capture").status, 0) << Said("capture").err;
    EXPECT_NE(Said("captured-about").out.find("source = /sys/firmware/dmi/tables"),
              std::string::npos)
        << Said("captured-about").out;
}

TEST(Capture, NamesTheModeOfALockedKernel) {
    const std::string said = AnswerOf("locked", "capture").err;
    EXPECT_TRUE(
        said.starts_with("systally-capture: /dev/mem: Operation not permitted; the kernel is "
                         "locked down: confidentiality\n"))
        << said;
}

TEST(Capture, SaysThatUefiFirmwareLeavesNoAnchor) {
    for (const char* guest : {"uefi", "uefi3", "plainuefi", "anchor3"}) {
        const std::string said = AnswerOf(guest, "capture").err;
        EXPECT_TRUE(
            said.starts_with("systally-capture: /dev/mem: no anchor between 0xF0000 and 0xFFFFF\n"))
            << guest << ": " << said;
    }
}

}  // namespace

}  // namespace vm
