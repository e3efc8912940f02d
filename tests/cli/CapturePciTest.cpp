// systally-capture on PCI trees of which not all can be read: the rest is captured, and what is
// missing is said on standard error and in "about".
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"
#include "support/Traced.h"

namespace {

namespace fs = std::filesystem;

using support::Arguments;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

constexpr char kTableRead[] =
    "systally-capture: the table comes from /dev/mem: SMBIOS 2.8, 991 bytes, 21 structures\n";

class PciLoss : public testing::Test {
  protected:
    /// Captures with a command that gets the program and the folder as its last arguments.
    Result Capture(const std::function<Arguments(const Arguments&)>& with) const {
        return m_machine.Run(with({ProgramPath("systally-capture"), m_captured}));
    }
    Result Capture() const {
        return Capture([](const Arguments& command) { return command; });
    }
    /// The same under strace, with a fault in the calls on one path.
    Result CaptureWithFault(const std::string& path, const std::string& fault) const {
        return Capture([&](const Arguments& command) {
            return support::Traced({"-o", "/dev/null", "-P", path, "-e", "inject=" + fault},
                                   command);
        });
    }

    /// The capture is complete but for one loss.
    void ExpectLoss(const Result& result, const std::string& loss) const {
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, kTableRead + ("systally-capture: " + loss + "\n"));
        EXPECT_EQ(result.status, 0);
        std::ostringstream about;
        about << std::ifstream(m_captured / "about").rdbuf();
        EXPECT_NE(about.str().find("\nloss = " + loss + "\n"), std::string::npos) << about.str();
    }

    fs::path InTree(const std::string& name) const { return m_machine.Folder() / "pci" / name; }
    fs::path InCopy(const std::string& name) const { return m_captured / "pci" / name; }

    support::TemporaryFolder m_folder;
    fs::path m_captured = m_folder.path() / "captured";
    MachineAtHand m_machine = MachineAtHand(machine::Arlo2());
};

TEST_F(PciLoss, BusThatMayNotBeReadIsEmptyInTheCopy) {
    fs::permissions(InTree("01"), fs::perms::none);
    ExpectLoss(Capture(support::WithoutRights), "cannot read /proc/bus/pci/01: Permission denied");
    fs::permissions(InTree("01"), fs::perms::owner_all);
    EXPECT_TRUE(fs::is_empty(InCopy("01")));
    EXPECT_EQ(fs::file_size(InCopy("00/00.0")), fs::file_size(InTree("00/00.0")));
    EXPECT_EQ(support::SystallyOn(m_captured, {"/m:7712"}).status, 1);
}

TEST_F(PciLoss, BusThatVanishesIsLeftOut) {
    const Result result = CaptureWithFault("01", "openat:error=ENOENT");
    EXPECT_EQ(result.errors, kTableRead);
    EXPECT_FALSE(fs::exists(InCopy("01")));
}

TEST_F(PciLoss, BusWhoseListEndsInAnErrorIsNamed) {
    ExpectLoss(CaptureWithFault("/proc/bus/pci/01", "getdents64:error=EIO"),
               "cannot read /proc/bus/pci/01: Input/output error");
}

TEST_F(PciLoss, TreeWhoseListEndsInAnErrorIsNamed) {
    ExpectLoss(CaptureWithFault("/proc/bus/pci", "getdents64:error=EIO:when=2"),
               "cannot read /proc/bus/pci: Input/output error");
    EXPECT_TRUE(fs::exists(InCopy("01/00.0")));
}

TEST_F(PciLoss, FunctionThatMayNotBeReadIsEmptyInTheCopy) {
    fs::permissions(InTree("01/00.0"), fs::perms::none);
    ExpectLoss(Capture(support::WithoutRights),
               "cannot read /proc/bus/pci/01/00.0: Permission denied");
    EXPECT_EQ(fs::file_size(InCopy("01/00.0")), 0U);
}

TEST_F(PciLoss, FunctionWhoseReadFailsIsKeptAsFarAsItGoes) {
    ExpectLoss(CaptureWithFault("/proc/bus/pci/01/00.0", "read:error=EIO:when=2"),
               "cannot read /proc/bus/pci/01/00.0 from byte " +
                   std::to_string(fs::file_size(InTree("01/00.0"))) + " on: Input/output error");
    EXPECT_EQ(fs::file_size(InCopy("01/00.0")), fs::file_size(InTree("01/00.0")));
}

TEST_F(PciLoss, FunctionsThatGiveFewerBytesThanTheyAnnounceAreCounted) {
    ExpectLoss(CaptureWithFault("/proc/bus/pci/01/00.0", "read:retval=0"),
               "files below /proc/bus/pci that give fewer bytes than they announce: 1");
}

TEST_F(PciLoss, ListOfDevicesThatCannotBeReadIsNamed) {
    ExpectLoss(CaptureWithFault("/proc/bus/pci/devices", "read:error=EIO"),
               "cannot read /proc/bus/pci/devices from byte 0 on: Input/output error");
}

TEST_F(PciLoss, DirectoryInsideABusIsNoFunction) {
    fs::create_directory(InTree("01/05.0"));
    ExpectLoss(Capture(), "/proc/bus/pci/01/05.0 is no regular file");
    EXPECT_FALSE(fs::exists(InCopy("01/05.0")));
}

TEST_F(PciLoss, FifoIsNoFunctionAndNobodyWaitsForIt) {
    ASSERT_EQ(mkfifo(InTree("01/05.0").c_str(), 0600), 0);
    ExpectLoss(Capture([](Arguments command) {
                   command.insert(command.begin(), {"timeout", "-k", "1", "20"});
                   return command;
               }),
               "/proc/bus/pci/01/05.0 is no regular file");
    EXPECT_FALSE(fs::exists(InCopy("01/05.0")));
}

TEST_F(PciLoss, NameWithALineBreakAddsNoLineToAbout) {
    fs::create_directory(InTree("01/0\nsource = elsewhere"));
    EXPECT_EQ(Capture().status, 0);
    std::ostringstream about;
    about << std::ifstream(m_captured / "about").rdbuf();
    EXPECT_EQ(about.str().find("\nsource = elsewhere"), std::string::npos) << about.str();
    EXPECT_NE(about.str().find("/01/0?source = elsewhere is no regular file\n"), std::string::npos);
}

}  // namespace
