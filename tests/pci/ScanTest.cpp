// Scanning a tree and going through the list.
#include <sys/resource.h>

#include <filesystem>
#include <iterator>

#include "pci/PciTree.h"
#include "support/BytesLeft.h"

namespace {

// --- Order --------------------------------------------------------------------------------------

TEST(Scan, ListsByBusDeviceAndFunction) {
    ExpectPlaces(PciTree({"00/1f.0", "00/02.0", "01/00.1", "01/00.0"}),
                 {"00:02.0", "00:1f.0", "01:00.0", "01:00.1"});
}

TEST(Scan, ListsManyBusesInOrder) {
    ExpectPlaces(PciTree({"ff/1f.7", "80/00.0", "0a/1f.0", "01/00.1", "00/1f.3", "ff/00.0",
                          "0a/02.0", "00/00.0", "80/10.1", "01/00.0", "00/1f.2", "80/0f.7"}),
                 {"00:00.0", "00:1f.2", "00:1f.3", "01:00.0", "01:00.1", "0a:02.0", "0a:1f.0",
                  "80:00.0", "80:0f.7", "80:10.1", "ff:00.0", "ff:1f.7"});
}

TEST(Scan, BusCountsMoreThanDeviceAndDeviceMoreThanFunction) {
    ExpectPlaces(PciTree({"00/1f.7", "01/00.0"}), {"00:1f.7", "01:00.0"});
    ExpectPlaces(PciTree({"00/02.0", "00/01.7"}), {"00:01.7", "00:02.0"});
}

TEST(Scan, NumbersOrderByValueNotByText) {
    ExpectPlaces(PciTree({"9/00.0", "10/00.0", "a/1f.0", "0a/9.0"}),
                 {"09:00.0", "0a:09.0", "0a:1f.0", "10:00.0"});
}

// --- The tree -----------------------------------------------------------------------------------

TEST(Scan, EmptyTreeGivesAnEmptyList) {
    ExpectPlaces(PciTree(), {});
}

TEST(Scan, BusWithThousandsOfFilesIsReadToItsEnd) {
    // More names than the kernel hands out at once.
    const PciTree tree;
    for (int i = 0; i < 3000; ++i) {
        tree.Add("00/01.0-" + std::to_string(i), machine::Bytes());
    }
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getTotalNumDevices(), 3000);
        EXPECT_EQ(PlacesFrom(list), Places(3000, "00:01.0"));
    });
}

TEST(Scan, BusWithoutFunctionsAddsNothing) {
    const PciTree tree({"01/00.0"});
    fs::create_directory(tree.Root() / "00");
    fs::create_directory(tree.Root() / "02");
    ExpectPlaces(tree, {"01:00.0"});
}

TEST(Scan, DevicesFileIsNoBus) {
    const PciTree tree({"00/00.0"});
    ASSERT_TRUE(fs::is_regular_file(tree.Root() / "devices"));
    ExpectPlaces(tree, {"00:00.0"});
}

TEST(Scan, DirectoryNamedDevicesIsNoBusEither) {
    const PciTree tree({"00/00.0"});
    fs::remove(tree.Root() / "devices");
    tree.Add("devices/01.0", machine::Bytes(256));
    ExpectPlaces(tree, {"00:00.0"});
}

TEST(Scan, NameThatOnlyBeginsLikeTheDevicesFileIsABus) {
    // Read as far as it is hexadecimal.
    ExpectPlaces(PciTree({"devices2/01.0"}), {"de:01.0"});
    ExpectPlaces(PciTree({"device/01.0"}), {"de:01.0"});
}

TEST(Scan, DevicesInsideABusIsAFunctionFile) {
    // Device 0xDE, cut off at the 'v', is out of range: counted, not listed.
    ExpectScanOf(PciTree({"00/00.0", "00/devices"}), [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getTotalNumDevices(), 2);
        EXPECT_EQ(PlacesFrom(list), Places{"00:00.0"});
    });
}

TEST(Scan, TreeWithoutDevicesFileIsScanned) {
    const PciTree tree({"00/00.0"});
    fs::remove(tree.Root() / "devices");
    ExpectPlaces(tree, {"00:00.0"});
}

TEST(Scan, TotalIsTheNumberOfFunctionFiles) {
    ExpectScanOf(PciTree({"00/00.0", "00/01.0", "01/00.0", "02/00.0", "02/00.1"}),
                 [](PCIDeviceList_Proc& list) { EXPECT_EQ(list.getTotalNumDevices(), 5); });
}

// --- Iteration ----------------------------------------------------------------------------------

TEST(Iteration, BeginsAtTheFirstDeviceAfterTheScan) {
    ExpectScanOf(PciTree({"00/01.0", "00/02.0"}), [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(PlaceOf(*list.getNextDeviceFromList()), "00:01.0");
        EXPECT_EQ(PlaceOf(*list.getNextDeviceFromList()), "00:02.0");
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
    });
}

TEST(Iteration, KeepsReturningNullUntilTheReset) {
    ExpectScanOf(PciTree({"00/01.0", "00/02.0"}), [](PCIDeviceList_Proc& list) {
        PlacesFrom(list);
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
        list.resetList();
        EXPECT_EQ(PlacesFrom(list), (Places{"00:01.0", "00:02.0"}));
    });
}

TEST(Iteration, ResetInTheMiddleGoesBackToTheFirst) {
    ExpectScanOf(PciTree({"00/01.0", "00/02.0"}), [](PCIDeviceList_Proc& list) {
        const PCIDevice* first = list.getNextDeviceFromList();
        list.resetList();
        EXPECT_EQ(list.getNextDeviceFromList(), first);
    });
}

TEST(Iteration, TotalStaysDuringIt) {
    ExpectScanOf(PciTree({"00/01.0", "00/02.0"}), [](PCIDeviceList_Proc& list) {
        PlacesFrom(list);
        EXPECT_EQ(list.getTotalNumDevices(), 2);
    });
}

TEST(Iteration, SecondIterationReturnsNullAndMovesNothing) {
    ExpectScanOf(PciTree({"00/01.0"}), [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getNextPCIDevice(), nullptr);
        EXPECT_EQ(PlacesFrom(list), Places{"00:01.0"});
    });
}

// --- Scanning again -----------------------------------------------------------------------------

TEST(Rescan, ListsTheTreeAnew) {
    const PciTree tree({"00/01.0", "00/02.0", "01/00.0"});
    ExpectScanOf(tree, [&tree](PCIDeviceList_Proc& list) {
        list.getNextDeviceFromList();
        fs::remove(tree.Root() / "00/01.0");
        tree.Add("02/00.0", machine::Bytes(256));
        tree.Add("00/1f.0", machine::Bytes(256));
        EXPECT_FALSE(list.scanPCIBusAndCreateList());
        EXPECT_EQ(list.getTotalNumDevices(), 4);
        EXPECT_EQ(PlacesFrom(list), (Places{"00:02.0", "00:1f.0", "01:00.0", "02:00.0"}));
    });
}

TEST(Rescan, OfAnEmptiedTreeGivesAnEmptyList) {
    const PciTree tree({"00/01.0", "00/02.0"});
    ExpectScanOf(tree, [&tree](PCIDeviceList_Proc& list) {
        fs::remove_all(tree.Root() / "00");
        list.scanPCIBusAndCreateList();
        EXPECT_EQ(list.getTotalNumDevices(), 0);
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
    });
}

TEST(Initialize, ScansAndReturnsFalse) {
    const PciTree tree({"00/02.0", "00/01.0"});
    const std::string output = support::OnMachine(tree.Machine(), [] {
        PCIDeviceList_Proc list;
        EXPECT_FALSE(list.initialize());
        EXPECT_EQ(PlacesFrom(list), (Places{"00:01.0", "00:02.0"}));
    });
    EXPECT_EQ(output, "");
}

TEST(Scan, WorksThroughTheInterface) {
    const PciTree tree({"00/02.0", "00/01.0"});
    support::OnMachine(tree.Machine(), [] {
        PCI_DevList_VC* list = new PCIDeviceList_Proc;
        list->scanPCIBusAndCreateList();
        list->resetList();
        EXPECT_EQ(list->getTotalNumDevices(), 2);
        EXPECT_EQ(PlacesFrom(*list), (Places{"00:01.0", "00:02.0"}));
        delete list;
    });
}

// --- What a scan leaves behind ------------------------------------------------------------------

size_t CountOpenFiles() {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

TEST(Scan, ListGivesItsMemoryBack) {
    // One function with impossible numbers, which the list drops.
    const PciTree tree({"00/01.0", "00/20.0", "01/00.0"});
    const std::string output = support::OnMachine(tree.Machine(), [] {
        EXPECT_EQ(support::BytesLeftBy([] {
                      PCIDeviceList_Proc list;
                      list.scanPCIBusAndCreateList();
                  }),
                  0U);
    });
    EXPECT_EQ(output, "");
}

TEST(Scan, ClosesWhatItOpened) {
    const PciTree tree({"00/01.0", "01/00.0"});
    const std::string output = support::OnMachine(tree.Machine(), [] {
        const size_t before = CountOpenFiles();
        PCIDeviceList_Proc list;
        list.scanPCIBusAndCreateList();
        EXPECT_EQ(CountOpenFiles(), before);
    });
    EXPECT_EQ(output, "");
}

// --- Every place that a PCI address can name -----------------------------------------------------

constexpr int kAllFunctions = 256 * 32 * 8;

/// Writes the current directory full of functions, the last one first.
void WriteAllFunctions() {
    for (int place = kAllFunctions - 1; place >= 0; --place) {
        char name[sizeof "ff/1f.7"];
        std::snprintf(name, sizeof name, "%02x", static_cast<unsigned char>(place / 256));
        fs::create_directory(name);
        std::snprintf(name, sizeof name, "%02x/%02x.%x", static_cast<unsigned char>(place / 256),
                      static_cast<unsigned char>(place / 8 % 32),
                      static_cast<unsigned char>(place % 8));
        std::ofstream(name, std::ios::binary).put(static_cast<char>(place));
    }
}

TEST(Scan, ListsAll65536FunctionsInOrder) {
    const PciTree tree;
    support::OnMachine(tree.Machine(), [] {
        support::CoverWithEmptyDirectory("/proc/bus/pci");
        fs::current_path("/proc/bus/pci");
        WriteAllFunctions();
        // Neither files nor directories may stay open.
        const rlimit few = {16, 16};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
        PCIDeviceList_Proc list;
        list.scanPCIBusAndCreateList();
        ASSERT_EQ(list.getTotalNumDevices(), kAllFunctions);
        for (int place = 0; place < kAllFunctions; ++place) {
            const PCIDevice* device = list.getNextDeviceFromList();
            ASSERT_NE(device, nullptr) << place;
            ASSERT_EQ(device->m_wBus * 256 + device->m_wDevice * 8 + device->m_wFunction, place);
            ASSERT_EQ(device->m_wVendorID, place % 256);
        }
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
    });
}

}  // namespace
