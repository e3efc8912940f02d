// What ends the process from inside the scan: the words and the status.
#include "pci/PciTree.h"

namespace {

using support::CoverWithEmptyDirectory;
using support::Ending;
using support::EndingOnMachine;

void Scan() {
    PCIDeviceList_Proc list;
    list.scanPCIBusAndCreateList();
    ADD_FAILURE() << "the scan returned";
}

void ExpectEnding(const Ending& ending, const std::string& output, int status) {
    EXPECT_EQ(ending.output, output);
    EXPECT_EQ(ending.status, status);
}

// --- Status 1 -----------------------------------------------------------------------------------

TEST(ScanFailure, MissingTreeEndsWith1AndAMessage) {
    ExpectEnding(EndingOnMachine(PciTree().Machine(),
                                 [] {
                                     CoverWithEmptyDirectory("/proc/bus");
                                     Scan();
                                 }),
                 "Cannot open /proc/bus/pci\n", 1);
}

TEST(ScanFailure, FileInPlaceOfTheTreeEndsWith1AndAMessage) {
    ExpectEnding(EndingOnMachine(PciTree().Machine(),
                                 [] {
                                     CoverWithEmptyDirectory("/proc/bus");
                                     std::ofstream("/proc/bus/pci").close();
                                     Scan();
                                 }),
                 "Cannot open /proc/bus/pci\n", 1);
}

TEST(ScanFailure, FileInPlaceOfABusEndsWith1AndAMessage) {
    const PciTree tree;
    std::ofstream(tree.Root() / "00").close();
    ExpectEnding(EndingOnMachine(tree.Machine(), Scan), "Cannot open /proc/bus/pci/00\n", 1);
}

TEST(ScanFailure, BusThatLeadsNowhereEndsWith1AndAMessage) {
    const PciTree tree;
    fs::create_symlink("nowhere", tree.Root() / "1f");
    ExpectEnding(EndingOnMachine(tree.Machine(), Scan), "Cannot open /proc/bus/pci/1f\n", 1);
}

TEST(ScanFailure, OtherFilesBesideTheBusesEndWith1AndAMessage) {
    // The file "devices" alone is passed over.
    const PciTree tree({"00/00.0"});
    std::ofstream(tree.Root() / "Devices").close();
    ExpectEnding(EndingOnMachine(tree.Machine(), Scan), "Cannot open /proc/bus/pci/Devices\n", 1);
}

TEST(ScanFailure, LongNameOfABusIsShownWhole) {
    const PciTree tree;
    const std::string name(255, 'b');
    std::ofstream(tree.Root() / name).close();
    ExpectEnding(EndingOnMachine(tree.Machine(), Scan), "Cannot open /proc/bus/pci/" + name + "\n",
                 1);
}

TEST(ScanFailure, FunctionThatLeadsNowhereEndsWith1Silently) {
    const PciTree tree({"00/00.0"});
    fs::create_symlink("nowhere", tree.Root() / "00/1f.3");
    ExpectEnding(EndingOnMachine(tree.Machine(), Scan), "", 1);
}

TEST(ScanFailure, LaterScanEndsTheProcessToo) {
    const PciTree tree({"00/00.0"});
    ExpectEnding(EndingOnMachine(tree.Machine(),
                                 [] {
                                     PCIDeviceList_Proc list;
                                     list.scanPCIBusAndCreateList();
                                     EXPECT_EQ(list.getTotalNumDevices(), 1);
                                     CoverWithEmptyDirectory("/proc/bus");
                                     list.scanPCIBusAndCreateList();
                                     ADD_FAILURE() << "the scan returned";
                                 }),
                 "Cannot open /proc/bus/pci\n", 1);
}

TEST(ScanFailure, InitializeEndsTheProcessToo) {
    ExpectEnding(EndingOnMachine(PciTree().Machine(),
                                 [] {
                                     CoverWithEmptyDirectory("/proc/bus");
                                     PCIDeviceList_Proc().initialize();
                                     ADD_FAILURE() << "the scan returned";
                                 }),
                 "Cannot open /proc/bus/pci\n", 1);
}

TEST(ScanFailure, OutputWrittenBeforeIsNotLost) {
    ExpectEnding(EndingOnMachine(PciTree().Machine(),
                                 [] {
                                     CoverWithEmptyDirectory("/proc/bus");
                                     std::printf("[System]\n");
                                     Scan();
                                 }),
                 "[System]\nCannot open /proc/bus/pci\n", 1);
}

// --- Status 2 -----------------------------------------------------------------------------------

TEST(ScanFailure, FileLargerThanMemoryEndsWith2Silently) {
    ExpectEnding(EndingOnMachine(PciTree().Machine(),
                                 [] {
                                     // This file system has no limit for a file's size.
                                     CoverWithEmptyDirectory("/proc/bus/pci");
                                     fs::create_directory("/proc/bus/pci/00");
                                     std::ofstream("/proc/bus/pci/00/00.0").close();
                                     fs::resize_file("/proc/bus/pci/00/00.0", uintmax_t{1} << 60);
                                     Scan();
                                 }),
                 "", 2);
}

}  // namespace
