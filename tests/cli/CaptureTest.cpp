// systally-capture: the folder that it writes, and how the program answers on it.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/MachineAtHand.h"
#include "support/Patterns.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

std::string Contents(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// The value that the file "about" gives a key.
std::string About(const fs::path& machine, const std::string& key) {
    const std::string text = "\n" + Contents(machine / "about");
    const size_t line = text.find("\n" + key + " = ");
    if (line == std::string::npos) {
        return "(none)";
    }
    const size_t value = line + key.size() + 4;
    return text.substr(value, text.find('\n', value) - value);
}

/// The sample server as the machine at hand, captured.
class CapturedServer : public testing::Test {
  protected:
    CapturedServer() : m_result(m_machine.Run({ProgramPath("systally-capture"), m_captured})) {}

    support::TemporaryFolder m_folder;
    fs::path m_captured = m_folder.path() / "captured";
    MachineAtHand m_machine = MachineAtHand(machine::Arlo2());
    Result m_result;
};

TEST_F(CapturedServer, SaysWhereTheTableComesFrom) {
    EXPECT_EQ(m_result.output, "");
    EXPECT_EQ(m_result.errors,
              "systally-capture: the table comes from /dev/mem: SMBIOS 2.8, 991 bytes, "
              "21 structures\n");
    EXPECT_EQ(m_result.status, 0);
}

TEST_F(CapturedServer, AnswersEverySwitchAsTheMachineDoes) {
    for (const char* argument : {"/s", "/m:7712", "/qMachType7712", "/m:7710", "/i", "/p",
                                 "/dumpINI", "/dumpProp", "/dump", "/vid:8086", "/did:1639",
                                 "/svid:51E5", "/sdid:3a9", "/x64", "/bn:1", "/add:3"}) {
        const Result there = m_machine.Run({ProgramPath("systally"), argument});
        const Result here = support::SystallyOn(m_captured, {argument});
        EXPECT_EQ(here.output, there.output) << argument;
        EXPECT_EQ(here.errors, there.errors) << argument;
        EXPECT_EQ(here.status, there.status) << argument;
    }
}

TEST_F(CapturedServer, FolderHoldsTheMachineAndAboutAlone) {
    EXPECT_EQ(support::Run({"ls", "-A", m_captured}).output, "about\nmem\npci\n");
    EXPECT_EQ(support::Run({"ls", "-A", m_captured / "pci"}).output,
              "00\n01\n06\n10\ndevices\nfe\n");
    EXPECT_EQ(support::Run({"diff", "-r", m_machine.Folder() / "pci", m_captured / "pci"}).output,
              "");
}

TEST_F(CapturedServer, NothingElseIsLeftBesideIt) {
    EXPECT_EQ(support::Run({"ls", "-A", m_folder.path()}).output, "captured\n");
}

/// `size` bytes of a memory image.
std::string MemoryAt(const fs::path& file, std::streamoff address, size_t size) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(address);
    std::string bytes(size, '?');
    stream.read(bytes.data(), static_cast<std::streamsize>(size));
    return bytes;
}

TEST_F(CapturedServer, MemoryHoldsTheSameBytesAndTakesLittleRoom) {
    const fs::path machine = m_machine.Folder() / "mem";
    EXPECT_EQ(MemoryAt(m_captured / "mem", 0xF0000, 0x10000), MemoryAt(machine, 0xF0000, 0x10000));
    EXPECT_EQ(MemoryAt(m_captured / "mem", 0xBF7C8A40, 992), MemoryAt(machine, 0xBF7C8A40, 992));
    EXPECT_EQ(fs::file_size(m_captured / "mem"), 0xBF7CA000U);
    struct stat status = {};
    ASSERT_EQ(stat((m_captured / "mem").c_str(), &status), 0);
    EXPECT_LT(status.st_blocks * 512, 200 * 1024);
}

TEST_F(CapturedServer, AboutTellsOfTheCapture) {
    EXPECT_EQ(About(m_captured, "source"), "/dev/mem");
    EXPECT_EQ(About(m_captured, "smbios"), "2.8");
    EXPECT_EQ(About(m_captured, "entry_point"), "0x000F59F0");
    EXPECT_EQ(About(m_captured, "table"), "0xBF7C8A40");
    EXPECT_EQ(About(m_captured, "moved_from"), "(none)");
    EXPECT_EQ(About(m_captured, "table_bytes"), "991");
    EXPECT_EQ(About(m_captured, "structures"), "21");
    EXPECT_EQ(About(m_captured, "loss"), "(none)");
    EXPECT_EQ(About(m_captured, "memory_bytes"), std::to_string(0xBF7CA000));
    EXPECT_EQ(About(m_captured, "sanitized"), "no");
    EXPECT_EQ(About(m_captured, "pci_functions"), "20");
    EXPECT_EQ(About(m_captured, "pci_bytes"), std::to_string(11 * 256 + 9 * 4096));
}

TEST_F(CapturedServer, AboutTellsTheKernelAndTheDateAndNoHostName) {
    EXPECT_EQ(About(m_captured, "kernel") + "\n", support::Run({"uname", "-srm"}).output);
    const std::string date = About(m_captured, "date");
    EXPECT_EQ(support::FindAll(date, "^20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ$"),
              std::vector{date});
    m_machine.With([] {
        const bool renamed = unshare(CLONE_NEWUTS) == 0 && sethostname("secret-host", 11) == 0;
        return renamed ? "" : "cannot rename the host";
    });
    const Result other =
        m_machine.Run({"sh", "-c", "uname -n; exec \"$@\"", "sh", ProgramPath("systally-capture"),
                       m_folder.path() / "other"});
    EXPECT_EQ(other.output, "secret-host\n");
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(Contents(m_folder.path() / "other/about").find("secret-host"), std::string::npos);
}

TEST_F(CapturedServer, FolderIsItsOwnersAlone) {
    EXPECT_EQ(fs::status(m_captured).permissions(), fs::perms::owner_all);
}

TEST_F(CapturedServer, DateIsInUtc) {
    const Result far = m_machine.Run(
        {"env", "TZ=XST-13", ProgramPath("systally-capture"), m_folder.path() / "far"});
    EXPECT_EQ(far.status, 0);
    const std::string hour = About(m_folder.path() / "far", "date").substr(0, 13);
    const std::string now = support::Run({"date", "-u", "+%FT%H"}).output.substr(0, 13);
    const std::string before = About(m_captured, "date").substr(0, 13);
    EXPECT_TRUE(hour == now || hour == before) << hour;
}

TEST_F(CapturedServer, PackedAndUnpackedElsewhereItAnswersTheSame) {
    const fs::path elsewhere = m_folder.path() / "elsewhere";
    fs::create_directory(elsewhere);
    ASSERT_EQ(support::RunIn(m_folder.path(), {"tar", "-cSf", "packed.tar", "captured"}).errors,
              "");
    EXPECT_LT(fs::file_size(m_folder.path() / "packed.tar"), 300U * 1024);
    ASSERT_EQ(support::RunIn(elsewhere, {"tar", "-xf", "../packed.tar"}).errors, "");
    EXPECT_EQ(support::SystallyOn(elsewhere / "captured", {"/i"}).output,
              support::SystallyOn(m_captured, {"/i"}).output);
}

TEST(Capture, TakesAFolderNameWithATrailingSlash) {
    const support::TemporaryFolder folder;
    EXPECT_EQ(MachineAtHand(machine::Arlo2())
                  .Run({ProgramPath("systally-capture"), folder.path().string() + "/new/"})
                  .status,
              0);
    EXPECT_TRUE(fs::exists(folder.path() / "new/mem"));
}

TEST(Capture, TakesAFolderInTheCurrentDirectory) {
    const support::TemporaryFolder folder;
    const Result result = MachineAtHand(machine::Arlo2())
                              .Run({"sh", "-c", "cd \"$1\" && exec \"$2\" new", "sh", folder.path(),
                                    ProgramPath("systally-capture")});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(fs::exists(folder.path() / "new/mem"));
}

TEST(Capture, TakesAFolderThatBeginsWithAHyphenBehindTwo) {
    const support::TemporaryFolder folder;
    const Result result = MachineAtHand(machine::Arlo2())
                              .Run({"sh", "-c", "cd \"$1\" && exec \"$2\" --sanitize -- --sanitize",
                                    "sh", folder.path(), ProgramPath("systally-capture")});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(About(folder.path() / "--sanitize", "sanitized"), "yes");
}

// --- The command line ---------------------------------------------------------------------------

void ExpectComplaint(const support::Arguments& arguments, const std::string& message) {
    support::Arguments command = {ProgramPath("systally-capture")};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const Result result = support::Run(command);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "systally-capture: " + message + "\n");
    EXPECT_EQ(result.status, 255);
}

TEST(CaptureCommandLine, WithoutAFolderSaysHowItIsUsed) {
    ExpectComplaint({}, "usage: systally-capture FOLDER [--sanitize]");
}

TEST(CaptureCommandLine, RefusesWhatItDoesNotKnow) {
    ExpectComplaint({"--frobnicate"},
                    "unknown option --frobnicate; systally-capture --help lists them");
    ExpectComplaint({"one", "--", "--two"}, "give one folder; systally-capture --help says more");
    ExpectComplaint({"one", "two"}, "give one folder; systally-capture --help says more");
    ExpectComplaint({""}, "give one folder; systally-capture --help says more");
}

TEST(CaptureCommandLine, HelpAndVersionGoToStandardOutput) {
    const Result help = support::Run({ProgramPath("systally-capture"), "--help"});
    EXPECT_EQ(help.output.substr(0, 43), "usage: systally-capture FOLDER [--sanitize]");
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(help.status, 0);
    const Result version = support::Run({ProgramPath("systally-capture"), "--version"});
    EXPECT_EQ(version.output, "systally-capture 1.3.01\n");
    EXPECT_EQ(version.status, 0);
}

}  // namespace
