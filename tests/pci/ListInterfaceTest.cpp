// The abstract list: what its operations answer where a list implements none of them.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <type_traits>

#include "pci/PCIDeviceList_Proc.h"

namespace {

constexpr char kMessage[] = "Unimplemented SubClass PCI_DevList_VC Virtual funciton\n";

/// A list that implements nothing.
class BareList : public PCI_DevList_VC {
  public:
    using PCI_DevList_VC::m_nCount;
    using PCI_DevList_VC::m_pCurrent;
    using PCI_DevList_VC::m_pHead;
};

std::string OutputOf(const std::function<void(PCI_DevList_VC&)>& operation) {
    BareList list;
    testing::internal::CaptureStdout();
    operation(list);
    return testing::internal::GetCapturedStdout();
}

TEST(ListInterface, NewListIsEmpty) {
    const BareList list;
    EXPECT_EQ(list.m_pHead, nullptr);
    EXPECT_EQ(list.m_nCount, 0);
    EXPECT_EQ(list.m_pCurrent, nullptr);
    EXPECT_TRUE((std::is_same_v<int32_t, decltype(BareList::m_nCount)>));
}

TEST(ListInterface, InitializePrintsTheMessageAndReturnsFalse) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) { EXPECT_FALSE(list.initialize()); }), kMessage);
}

TEST(ListInterface, GetNextDeviceFromListPrintsTheMessageAndReturnsNull) {
    EXPECT_EQ(
        OutputOf([](PCI_DevList_VC& list) { EXPECT_EQ(list.getNextDeviceFromList(), nullptr); }),
        kMessage);
}

TEST(ListInterface, ResetListPrintsTheMessage) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) { list.resetList(); }), kMessage);
}

TEST(ListInterface, GetTotalNumDevicesPrintsTheMessageAndReturnsZero) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) { EXPECT_EQ(list.getTotalNumDevices(), 0); }),
              kMessage);
}

TEST(ListInterface, GetNextPCIDevicePrintsTheMessageAndReturnsNull) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) { EXPECT_EQ(list.getNextPCIDevice(), nullptr); }),
              kMessage);
}

TEST(ListInterface, ScanPrintsTheMessageAndReturnsFalse) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) { EXPECT_FALSE(list.scanPCIBusAndCreateList()); }),
              kMessage);
}

TEST(ListInterface, MessageIsPrintedOncePerCall) {
    EXPECT_EQ(OutputOf([](PCI_DevList_VC& list) {
                  list.resetList();
                  list.resetList();
                  list.getTotalNumDevices();
              }),
              std::string(kMessage) + kMessage + kMessage);
}

TEST(ListInterface, DestructorIsVirtualAndSilent) {
    EXPECT_TRUE(std::has_virtual_destructor_v<PCI_DevList_VC>);
    EXPECT_EQ(OutputOf([](PCI_DevList_VC&) { const BareList list; }), "");
}

TEST(ListInterface, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<BareList>);
    EXPECT_FALSE(std::is_copy_assignable_v<BareList>);
    EXPECT_FALSE(std::is_copy_constructible_v<PCIDeviceList_Proc>);
    EXPECT_FALSE(std::is_copy_assignable_v<PCIDeviceList_Proc>);
}

/// Where a virtual operation stands: compilers of this platform keep its slot in the pointer.
template <typename Operation>
std::ptrdiff_t SlotOf(Operation operation) {
    std::ptrdiff_t slot = 0;
    std::memcpy(&slot, &operation, sizeof slot);
    return slot;
}

TEST(ListInterface, OperationsStandInTheirDocumentedOrder) {
    const std::ptrdiff_t slots[] = {
        SlotOf(&PCI_DevList_VC::initialize),       SlotOf(&PCI_DevList_VC::getNextDeviceFromList),
        SlotOf(&PCI_DevList_VC::resetList),        SlotOf(&PCI_DevList_VC::getTotalNumDevices),
        SlotOf(&PCI_DevList_VC::getNextPCIDevice), SlotOf(&PCI_DevList_VC::scanPCIBusAndCreateList),
    };
    for (size_t i = 1; i < std::size(slots); ++i) {
        EXPECT_EQ(slots[i] - slots[i - 1], static_cast<std::ptrdiff_t>(sizeof(void*))) << i;
    }
    // The destructor stands first: as itself and in the form that also frees.
    EXPECT_EQ(slots[0], static_cast<std::ptrdiff_t>(2 * sizeof(void*)) + 1);
}

// --- What the concrete list does without a scan
// ---------------------------------------------------

TEST(ListOfTheKernel, NewOneIsEmptyAndSilent) {
    testing::internal::CaptureStdout();
    {
        PCIDeviceList_Proc list;
        EXPECT_EQ(list.getTotalNumDevices(), 0);
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
        list.resetList();
        EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(ListOfTheKernel, SecondIterationReturnsNullSilently) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(PCIDeviceList_Proc().getNextPCIDevice(), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

class ListWithItsOwnScan : public PCIDeviceList_Proc {
  public:
    explicit ListWithItsOwnScan(bool result) : m_result(result) {}
    bool scanPCIBusAndCreateList() override {
        ++m_scans;
        return m_result;
    }
    int Scans() const { return m_scans; }

  private:
    bool m_result;
    int m_scans = 0;
};

TEST(ListOfTheKernel, InitializeScansThroughTheVirtualTable) {
    for (const bool result : {true, false}) {
        ListWithItsOwnScan list(result);
        EXPECT_EQ(list.initialize(), result);
        EXPECT_EQ(list.Scans(), 1);
    }
}

}  // namespace
