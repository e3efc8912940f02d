// systally-capture when something fails: a message, the status 255, and nothing left behind.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "machine/Arlo2.h"
#include "machine/EntryPoint.h"
#include "support/MachineAtHand.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using support::MachineAtHand;
using support::ProgramPath;
using support::Result;

constexpr char kTableRead[] =
    "systally-capture: the table comes from /dev/mem: SMBIOS 2.8, 991 bytes, 21 structures\n";

class CaptureFault : public testing::Test {
  protected:
    Result Capture(const fs::path& folder) const {
        return m_machine.Run({ProgramPath("systally-capture"), folder});
    }

    /// What the folder of the test holds, seen from where the machine is: the listing follows the
    /// program's own output.
    Result CaptureAndList() const {
        return m_machine.Run({"sh", "-c", "\"$1\" \"$2/new\"; s=$?; ls -A \"$2\"; exit $s", "sh",
                              ProgramPath("systally-capture"), m_folder.path()});
    }

    void ExpectFailure(const Result& result, const std::string& errors) const {
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, errors);
        EXPECT_EQ(result.status, 255);
    }

    std::string List() const { return support::Run({"ls", "-A", m_folder.path()}).output; }

    support::TemporaryFolder m_folder;
    fs::path m_new = m_folder.path() / "new";
    MachineAtHand m_machine = MachineAtHand(machine::Arlo2());
};

// --- The folder ---------------------------------------------------------------------------------

TEST_F(CaptureFault, FolderThatExistsIsRefusedAndLeftAlone) {
    fs::create_directory(m_new);
    std::ofstream(m_new / "precious") << "text";
    ExpectFailure(Capture(m_new), "systally-capture: " + m_new.string() + " exists already\n");
    EXPECT_EQ(support::Run({"cat", m_new / "precious"}).output, "text");
    EXPECT_EQ(List(), "new\n");
}

TEST_F(CaptureFault, EmptyFolderIsRefusedToo) {
    fs::create_directory(m_new);
    ExpectFailure(Capture(m_new), "systally-capture: " + m_new.string() + " exists already\n");
    EXPECT_TRUE(fs::is_empty(m_new));
}

TEST_F(CaptureFault, FileInTheWayIsRefused) {
    std::ofstream(m_new) << "text";
    ExpectFailure(Capture(m_new), "systally-capture: " + m_new.string() + " exists already\n");
}

TEST_F(CaptureFault, PlantedLinkIsNotFollowed) {
    const fs::path target = m_folder.path() / "target";
    fs::create_symlink(target, m_new);
    ExpectFailure(Capture(m_new), "systally-capture: " + m_new.string() + " exists already\n");
    EXPECT_FALSE(fs::exists(target));
    fs::create_directory(target);
    ExpectFailure(Capture(m_new), "systally-capture: " + m_new.string() + " exists already\n");
    EXPECT_TRUE(fs::is_empty(target));
    ExpectFailure(Capture(m_new.string() + "/"),
                  "systally-capture: " + m_new.string() + "/ exists already\n");
    EXPECT_TRUE(fs::is_empty(target));
}

TEST_F(CaptureFault, FoldersWithoutANameOfTheirOwnExist) {
    for (const char* folder : {"/", ".", ".."}) {
        ExpectFailure(Capture(folder),
                      "systally-capture: " + std::string(folder) + " exists already\n");
    }
}

TEST_F(CaptureFault, ParentMustBeADirectory) {
    const std::string lead = "systally-capture: cannot create " + m_folder.path().string();
    ExpectFailure(Capture(m_folder.path() / "nowhere/new"),
                  lead + "/nowhere/new: " + m_folder.path().string() +
                      "/nowhere: No such file or directory\n");
    std::ofstream(m_folder.path() / "file") << "text";
    ExpectFailure(Capture(m_folder.path() / "file/new"),
                  lead + "/file/new: " + m_folder.path().string() + "/file: Not a directory\n");
}

TEST_F(CaptureFault, ParentThatMayNotBeWrittenIsNamed) {
    m_machine.With([this] {
        return mount("none", m_folder.path().c_str(), "tmpfs", MS_RDONLY, nullptr) == 0 ? "" : "no";
    });
    ExpectFailure(Capture(m_new), "systally-capture: cannot create " + m_new.string() +
                                      ": Read-only file system\n");
}

// --- The disk -----------------------------------------------------------------------------------

TEST_F(CaptureFault, FullDiskLeavesNothingBehind) {
    m_machine.With([this] { return support::Cover(m_folder.path(), "size=4k"); });
    ExpectFailure(CaptureAndList(), std::string(kTableRead) +
                                        "systally-capture: cannot write mem: No space left on "
                                        "device\n");
}

/// Disks with room for ever more: up to some size nothing is left, from there on all is there.
TEST_F(CaptureFault, DiskThatFillsUpAtAnyPointLeavesNothingBehind) {
    int failures = 0;
    int pages = 1;
    for (Result result; result.status != 0; ++pages) {
        ASSERT_LT(pages, 200);
        MachineAtHand machine(machine::Arlo2());
        machine.With([&] {
            return support::Cover(m_folder.path(), "size=" + std::to_string(4 * pages) + "k");
        });
        result = machine.Run({"sh", "-c", "\"$1\" \"$2/new\"; s=$?; ls -A \"$2\"; exit $s", "sh",
                              ProgramPath("systally-capture"), m_folder.path()});
        EXPECT_EQ(result.output, result.status == 0 ? "new\n" : "") << pages;
        EXPECT_TRUE(result.status == 0 || result.status == 255) << result.status;
        failures += result.status == 255 ? 1 : 0;
    }
    // Two pages of memory, one for each function, one for "about".
    EXPECT_EQ(failures, 22);
}

TEST_F(CaptureFault, DiskThatTakesNoMoreFilesLeavesNothingBehind) {
    int failures = 0;
    int files = 2;
    for (Result result; result.status != 0; ++files) {
        ASSERT_LT(files, 200);
        MachineAtHand machine(machine::Arlo2());
        machine.With(
            [&] { return support::Cover(m_folder.path(), "nr_inodes=" + std::to_string(files)); });
        result = machine.Run({"sh", "-c", "\"$1\" \"$2/new\"; s=$?; ls -A \"$2\"; exit $s", "sh",
                              ProgramPath("systally-capture"), m_folder.path()});
        EXPECT_EQ(result.output, result.status == 0 ? "new\n" : "") << files;
        EXPECT_TRUE(result.status == 0 || result.status == 255) << result.status;
        failures += result.status == 255 ? 1 : 0;
    }
    EXPECT_GT(failures, 20);
}

TEST_F(CaptureFault, FileSizeLimitIsAnErrorLikeAnyOther) {
    m_machine.With([] {
        const rlimit limit = {1 << 20, 1 << 20};
        return setrlimit(RLIMIT_FSIZE, &limit) == 0 ? "" : "cannot set the limit";
    });
    ExpectFailure(Capture(m_new),
                  std::string(kTableRead) + "systally-capture: cannot write mem: File too large\n");
    EXPECT_EQ(List(), "");
}

TEST_F(CaptureFault, SignalToEndTakesEffectWhenAllIsCleanedUp) {
    m_machine.With([] {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGTERM);
        const bool isPending = sigprocmask(SIG_BLOCK, &held, nullptr) == 0 && raise(SIGTERM) == 0;
        return isPending ? "" : "cannot hold the signal";
    });
    ExpectFailure(Capture(m_new), std::string(kTableRead) + "systally-capture: interrupted\n");
    EXPECT_EQ(List(), "");
}

// --- What the machine withholds -----------------------------------------------------------------

TEST_F(CaptureFault, WithoutPciTreeThereIsNoCapture) {
    m_machine.WithoutPciTree();
    ExpectFailure(Capture(m_new), std::string(kTableRead) +
                                      "systally-capture: cannot read /proc/bus/pci: No such file "
                                      "or directory\n");
    EXPECT_EQ(List(), "");
}

TEST_F(CaptureFault, WithoutSysfsPhysicalMemoryServes) {
    m_machine.WithoutSysfs();
    const Result result = Capture(m_new);
    EXPECT_EQ(result.errors, kTableRead);
    EXPECT_EQ(result.status, 0);
}

TEST_F(CaptureFault, WithoutSysfsAndMemoryEachIsNamed) {
    m_machine.WithoutSysfs().WithoutMemory();
    ExpectFailure(Capture(m_new),
                  "systally-capture: /dev/mem: No such file or directory\n"
                  "systally-capture: /sys/firmware/dmi/tables/smbios_entry_point: No such file or "
                  "directory\n"
                  "systally-capture: no source shows this machine's SMBIOS table\n");
    EXPECT_EQ(List(), "");
}

TEST_F(CaptureFault, MemoryThatCannotBeReadIsNamedWithItsReason) {
    m_machine.WithoutMemory().WithoutSysfs().With(support::MakeMemoryADirectory);
    ExpectFailure(Capture(m_new),
                  "systally-capture: /dev/mem: Is a directory\n"
                  "systally-capture: /sys/firmware/dmi/tables/smbios_entry_point: No such file or "
                  "directory\n"
                  "systally-capture: no source shows this machine's SMBIOS table\n");
}

TEST_F(CaptureFault, NamespacesAreNotNeeded) {
    const std::string script =
        "echo 0 > /proc/sys/user/max_mnt_namespaces && "
        "echo 0 > /proc/sys/user/max_user_namespaces && exec \"$@\"";
    const Result result = m_machine.Run(
        {"unshare", "-r", "sh", "-c", script, "sh", ProgramPath("systally-capture"), m_new});
    EXPECT_EQ(result.errors, kTableRead);
    EXPECT_EQ(result.status, 0);
}

TEST_F(CaptureFault, FunctionThatCannotBeOpenedIsNamedAndEmpty) {
    fs::create_symlink("itself", m_machine.Folder() / "pci/01/itself");
    const Result result = Capture(m_new);
    EXPECT_EQ(result.errors,
              std::string(kTableRead) +
                  "systally-capture: cannot read /proc/bus/pci/01/itself: Too many levels of "
                  "symbolic links\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(fs::file_size(m_new / "pci/01/itself"), 0U);
}

TEST_F(CaptureFault, FunctionThatVanishesIsLeftOut) {
    fs::create_symlink("nowhere", m_machine.Folder() / "pci/01/05.0");
    const Result result = Capture(m_new);
    EXPECT_EQ(result.errors, kTableRead);
    EXPECT_FALSE(fs::is_symlink(m_new / "pci/01/05.0"));
    EXPECT_EQ(support::SystallyOn(m_new, {"/vid:1000"}).status, 1);
}

TEST_F(CaptureFault, ConfigurationThatEndsEarlyIsKeptAsFarAsItGoes) {
    fs::resize_file(m_machine.Folder() / "pci/01/00.0", 64);
    EXPECT_EQ(Capture(m_new).status, 0);
    EXPECT_EQ(fs::file_size(m_new / "pci/01/00.0"), 64U);
}

// --- Firmware tables that are none --------------------------------------------------------------

class KernelsCopyFault : public CaptureFault {
  protected:
    /// What systally-capture says of a kernel's copy, as the only source, before it gives up.
    void ExpectRefusal(const Bytes& entryPoint, const Bytes& table, const std::string& refusal) {
        m_machine.WithoutMemory().WithKernelsCopy(entryPoint, table);
        ExpectFailure(Capture(m_new),
                      "systally-capture: /dev/mem: No such file or directory\n" + refusal);
        EXPECT_EQ(List(), "");
    }
};

constexpr char kUnknownKind[] =
    "systally-capture: /sys/firmware/dmi/tables/smbios_entry_point: no entry point of a kind that "
    "is known\n"
    "systally-capture: no source shows this machine's SMBIOS table\n";
constexpr char kWrongChecksum[] =
    "systally-capture: /sys/firmware/dmi/tables/smbios_entry_point: an entry point with a wrong "
    "checksum\n"
    "systally-capture: no source shows this machine's SMBIOS table\n";
constexpr char kNoStructure[] =
    "systally-capture: /sys/firmware/dmi/tables: the table begins with no structure\n";

TEST_F(KernelsCopyFault, EntryPointOfAnUnknownKindIsRefused) {
    ExpectRefusal(Bytes(24, 'x'), machine::Arlo2().EncodeTable(), kUnknownKind);
}

TEST_F(KernelsCopyFault, EntryPointThatIsCutShortIsRefused) {
    Bytes entry = support::EntryPoint64(0x1000, 0x1000);
    entry.pop_back();
    ExpectRefusal(entry, machine::Arlo2().EncodeTable(), kUnknownKind);
}

TEST_F(KernelsCopyFault, EntryPointWithAWrongChecksumIsRefused) {
    const Bytes table = machine::Arlo2().EncodeTable();
    Bytes entry64 = support::EntryPoint64(0x1000, 0x1000);
    entry64[5] ^= 0x55;
    ExpectRefusal(entry64, table, kWrongChecksum);
    for (const size_t byte : {0x04U, 0x15U}) {
        Bytes entry = EncodeEntryPoint(machine::EntryPoint());
        entry[byte] ^= 0x55;
        ExpectRefusal(entry, table, kWrongChecksum);
    }
    Bytes garbage(4096, 0xFF);
    std::copy_n("_SM_", 4, garbage.begin());
    ExpectRefusal(garbage, table, kWrongChecksum);
}

TEST_F(KernelsCopyFault, IntermediateChecksumCountsToo) {
    Bytes entry = EncodeEntryPoint(machine::EntryPoint());
    // Two changes whose sum is 0 leave the outer checksum right.
    entry[0x06] = static_cast<uint8_t>(entry[0x06] + 1);
    entry[0x16] = static_cast<uint8_t>(entry[0x16] - 1);
    ExpectRefusal(entry, machine::Arlo2().EncodeTable(), kWrongChecksum);
}

TEST_F(KernelsCopyFault, EmptyEntryPointIsRefused) {
    ExpectRefusal({}, machine::Arlo2().EncodeTable(), kUnknownKind);
}

TEST_F(KernelsCopyFault, EmptyTableIsRefused) {
    ExpectRefusal(support::EntryPoint64(0x1000, 0), {}, kNoStructure);
}

TEST_F(KernelsCopyFault, TableWithoutAWholeHeaderIsRefused) {
    const Bytes table = machine::Arlo2().EncodeTable();
    ExpectRefusal(support::EntryPoint64(0x1000, 0x1000), {table.begin(), table.begin() + 3},
                  kNoStructure);
}

TEST_F(KernelsCopyFault, TableThatBeginsWithAStructureOfNoLengthIsRefused) {
    ExpectRefusal(support::EntryPoint64(0x1000, 0x1000), {1, 3, 0, 0, 0, 0}, kNoStructure);
}

TEST_F(KernelsCopyFault, StructureThatNoEntryPointCanNameIsRefused) {
    MachineBuilder machine;
    machine.Add(Structure(0xDD, 4).Text(std::string(65535, 'x')));
    ExpectRefusal(support::EntryPoint64(0x1000, 0x20000), machine.EncodeTable(),
                  "systally-capture: /sys/firmware/dmi/tables: the table's first structure is too "
                  "long\n");
}

TEST_F(KernelsCopyFault, MissingTableIsNamed) {
    m_machine.WithoutMemory().WithKernelsCopy(support::EntryPoint64(0x1000, 0x1000), {});
    m_machine.With(
        [] { return fs::remove("/sys/firmware/dmi/tables/DMI") ? "" : "there is no table"; });
    ExpectFailure(Capture(m_new),
                  "systally-capture: /dev/mem: No such file or directory\n"
                  "systally-capture: /sys/firmware/dmi/tables/DMI: No such file or directory\n"
                  "systally-capture: no source shows this machine's SMBIOS table\n");
}

TEST_F(KernelsCopyFault, TableThatCannotBeReadIsNamed) {
    m_machine.WithoutMemory().WithKernelsCopy(support::EntryPoint64(0x1000, 0x1000), {});
    m_machine.With([] {
        const fs::path table = "/sys/firmware/dmi/tables/DMI";
        return fs::remove(table) && fs::create_directory(table) ? "" : "there is no table";
    });
    ExpectFailure(Capture(m_new),
                  "systally-capture: /dev/mem: No such file or directory\n"
                  "systally-capture: /sys/firmware/dmi/tables/DMI: Is a directory\n"
                  "systally-capture: no source shows this machine's SMBIOS table\n");
}

// --- Standard output ----------------------------------------------------------------------------

TEST(CaptureHelp, FullStandardOutputIsAFailure) {
    for (const char* program : {"systally-capture", "systally-on"}) {
        const Result result = support::Run(
            {"sh", "-c", "exec \"$1\" --help > /dev/full", "sh", ProgramPath(program)});
        EXPECT_EQ(result.status, 255) << program;
    }
}

}  // namespace
