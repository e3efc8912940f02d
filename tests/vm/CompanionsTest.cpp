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

TEST_P(Companions, ThisAnswersAsTheProgramDoes) {
    ExpectSameAnswer(Said("this-i"), Said("report-ini"), "/i");
    ExpectSameAnswer(Said("this-p"), Said("report-properties"), "/p");
    ExpectSameAnswer(Said("this-dump"), Said("dump"), "/dump");
    ExpectSameAnswer(Said("this-s"), Said("server-family"), "/s");
    ExpectSameAnswer(Said("this-m7712"), Said("type-7712"), "/m:7712");
    ExpectSameAnswer(Said("this-x64"), Said("x64"), "/x64");
    ExpectSameAnswer(Said("this-vid8086"), Said("vid-8086"), "/vid:8086");
    ExpectSameAnswer(Said("this-q"), Said("unknown-switch"), "/q");
}

TEST_P(Companions, CapturedFolderAnswersAsTheProgramDoesInTheGuest) {
    EXPECT_EQ(Said("capture").status, 0) << Said("capture").err;
    EXPECT_EQ(Said("capture").out, "");
    ExpectSameAnswer(Said("captured-i"), Said("report-ini"), "/i");
    ExpectSameAnswer(Said("captured-p"), Said("report-properties"), "/p");
}

TEST_P(Companions, CaptureNamesItsSource) {
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

TEST_P(Companions, FolderAnswersEverySwitchOnAnotherHost) {
    const UnpackedFolder folder(GetParam());
    for (const Question& question : kQuestions) {
        const support::Result here = folder.Ask(question.switches);
        const Answer there = Said(question.command);
        EXPECT_EQ(here.output, there.out) << question.command;
        EXPECT_EQ(here.errors, "") << question.command;
        EXPECT_EQ(here.status, there.status) << question.command;
    }
}

/// Guests on which the program alone finds nothing.
class CompanionsAlone : public Companions {};

INSTANTIATE_TEST_SUITE_P(VM, CompanionsAlone, testing::Values("locked", "anchor3", "uefi", "uefi3"),
                         GuestName);

TEST_P(CompanionsAlone, FolderGivesTheBytesOfTheGuestOnAnotherHost) {
    const UnpackedFolder folder(GetParam());
    EXPECT_EQ(folder.Ask({"/i"}).output, Said("this-i").out);
    EXPECT_EQ(folder.Ask({"/p"}).output, Said("this-p").out);
    EXPECT_EQ(folder.Ask({"/dump"}).output, Said("this-dump").out);
    EXPECT_EQ(folder.Ask({"/s"}).status, Said("this-s").status);
    EXPECT_EQ(folder.Ask({"/m:7712"}).status, Said("this-m7712").status);
    EXPECT_EQ(folder.Ask({"/vid:8086"}).status, Said("this-vid8086").status);
}

TEST_P(CompanionsAlone, CaptureTakesTheKernelsCopy) {
    EXPECT_EQ(Said("capture").status, 0) << Said("capture").err;
    EXPECT_NE(Said("captured-about").out.find("source = /sys/firmware/dmi/tables"),
              std::string::npos)
        << Said("captured-about").out;
}

}  // namespace

}  // namespace vm
