// What the names of the tree say: numbers in hexadecimal, read as far as they go.
#include "pci/PciTree.h"

namespace {

/// Expects that nothing is listed though the files are counted.
void ExpectCountedButNotListed(const PciTree& tree, int count) {
    ExpectScanOf(tree, [count](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getTotalNumDevices(), count);
        EXPECT_EQ(PlacesFrom(list), Places{});
    });
}

TEST(Names, AreHexadecimalInEitherCase) {
    ExpectPlaces(PciTree({"0a/1f.3"}), {"0a:1f.3"});
    ExpectPlaces(PciTree({"0A/1F.3"}), {"0a:1f.3"});
    ExpectPlaces(PciTree({"fE/1e.7"}), {"fe:1e.7"});
}

TEST(Names, NeedNoLeadingZeros) {
    ExpectPlaces(PciTree({"1/2.3"}), {"01:02.3"});
    ExpectPlaces(PciTree({"0001/0002.0003"}), {"01:02.3"});
}

TEST(Names, BusIsReadAsFarAsItIsHexadecimal) {
    // Kernels write domain and bus where there are several domains.
    ExpectPlaces(PciTree({"0001:02/03.4"}), {"01:03.4"});
    ExpectPlaces(PciTree({"1x/03.4"}), {"01:03.4"});
}

TEST(Names, BusWithoutNumberIsBusZero) {
    ExpectPlaces(PciTree({"xyz/03.4"}), {"00:03.4"});
}

TEST(Names, DeviceEndsAtTheFirstCharacterThatIsNoDigit) {
    ExpectPlaces(PciTree({"00/1f:3", "00/02-1"}), {"00:02.1", "00:1f.3"});
}

TEST(Names, FunctionIsReadAsFarAsItIsHexadecimal) {
    ExpectPlaces(PciTree({"00/1f.3x", "00/1e.2.5"}), {"00:1e.2", "00:1f.3"});
}

TEST(Names, WithoutFunctionItIsZero) {
    ExpectPlaces(PciTree({"00/1f", "00/1e.", "00/1d.x"}), {"00:1d.0", "00:1e.0", "00:1f.0"});
}

TEST(Names, WithoutDeviceItIsZero) {
    ExpectPlaces(PciTree({"00/.3", "00/x5"}), {"00:00.3", "00:00.5"});
}

TEST(Names, NoNumbersAtAllGiveZeros) {
    ExpectPlaces(PciTree({"host/zoo"}), {"00:00.0"});
}

TEST(Names, DotFilesAreEntriesLikeOthers) {
    ExpectPlaces(PciTree({".hidden/...2"}), {"00:00.0"});
}

// --- Out of range -------------------------------------------------------------------------------

TEST(NamesOutOfRange, AreCountedButNotListed) {
    ExpectCountedButNotListed(PciTree({"100/00.0"}), 1);
    ExpectCountedButNotListed(PciTree({"00/20.0"}), 1);
    ExpectCountedButNotListed(PciTree({"00/00.8"}), 1);
    ExpectCountedButNotListed(PciTree({"ffff/ffff.ffff", "100/20.8"}), 2);
}

TEST(NamesOutOfRange, LargestNumbersInRangeAreListed) {
    ExpectPlaces(PciTree({"ff/1f.7"}), {"ff:1f.7"});
}

TEST(NamesOutOfRange, OthersKeepTheirOrderAndTheTotalIsThatOfAll) {
    ExpectScanOf(PciTree({"00/02.0", "00/20.0", "00/01.0", "100/00.0", "01/00.9", "01/00.0"}),
                 [](PCIDeviceList_Proc& list) {
                     EXPECT_EQ(list.getTotalNumDevices(), 6);
                     EXPECT_EQ(PlacesFrom(list), (Places{"00:01.0", "00:02.0", "01:00.0"}));
                     list.resetList();
                     EXPECT_EQ(PlacesFrom(list), (Places{"00:01.0", "00:02.0", "01:00.0"}));
                 });
}

TEST(NamesOutOfRange, NumbersBeyondSixteenBitsAreOutOfRangeToo) {
    ExpectCountedButNotListed(PciTree({"10000/00.0"}), 1);
    ExpectCountedButNotListed(PciTree({"00/10001.0"}), 1);
    ExpectCountedButNotListed(PciTree({"00/00.ffffffffffffffffffff"}), 1);
}

TEST(NamesOutOfRange, SecondScanCountsAnew) {
    ExpectScanOf(PciTree({"00/01.0", "00/20.0"}), [](PCIDeviceList_Proc& list) {
        list.scanPCIBusAndCreateList();
        EXPECT_EQ(list.getTotalNumDevices(), 2);
        EXPECT_EQ(PlacesFrom(list), Places{"00:01.0"});
    });
}

// --- Long names ---------------------------------------------------------------------------------

TEST(LongNames, AreUsedWhole) {
    const std::string zeros(240, '0');
    const PciTree tree;
    tree.Add(zeros + "0a/" + zeros + "1f.3", machine::Bytes{0x86, 0x80});
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getTotalNumDevices(), 1);
        const PCIDevice* device = list.getNextDeviceFromList();
        ASSERT_NE(device, nullptr);
        EXPECT_EQ(PlaceOf(*device), "0a:1f.3");
        EXPECT_EQ(device->m_wVendorID, 0x8086);
    });
}

}  // namespace
