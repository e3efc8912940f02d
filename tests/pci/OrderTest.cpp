// Sorting a list that a test links by hand.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "pci/PCIDeviceList_Proc.h"

namespace {

struct Place {
    uint16_t bus;
    uint16_t device;
    uint16_t function;
};

/// A list of hand-made nodes. Each carries its place in the unsorted list as its vendor ID.
class HandMadeList : public PCIDeviceList_Proc {
  public:
    HandMadeList(std::initializer_list<Place> places) {
        PCIDeviceItem* last = nullptr;
        for (const Place& place : places) {
            auto* item = new PCIDeviceItem;
            item->m_wBus = place.bus;
            item->m_wDevice = place.device;
            item->m_wFunction = place.function;
            item->m_wVendorID = static_cast<uint16_t>(m_nCount++);
            item->m_pPrev = last;
            (last == nullptr ? m_pHead : last->m_pNext) = item;
            last = item;
        }
    }

    /// Sorts; returns the earlier places of the nodes along the forward links.
    std::vector<int> Ordered() {
        OrderList();
        std::vector<int> places;
        for (const PCIDeviceItem* item = m_pHead; item != nullptr; item = item->m_pNext) {
            places.push_back(item->m_wVendorID);
        }
        return places;
    }

    /// Sorts; returns the same along the backward links, from the last node on.
    std::vector<int> OrderedBackwards() {
        OrderList();
        const PCIDeviceItem* item = m_pHead;
        while (item->m_pNext != nullptr) {
            item = item->m_pNext;
        }
        std::vector<int> places;
        for (; item != nullptr; item = item->m_pPrev) {
            places.push_back(item->m_wVendorID);
        }
        return places;
    }
};

using Order = std::vector<int>;

TEST(OrderList, EmptyListStaysEmpty) {
    HandMadeList list({});
    EXPECT_EQ(list.Ordered(), Order{});
    EXPECT_EQ(list.getTotalNumDevices(), 0);
}

TEST(OrderList, SingleNodeStays) {
    EXPECT_EQ(HandMadeList({{255, 31, 7}}).Ordered(), Order{0});
}

TEST(OrderList, SortsByBusThenDeviceThenFunction) {
    EXPECT_EQ(HandMadeList({{1, 0, 0}, {0, 31, 7}, {0, 2, 1}, {0, 2, 0}, {0, 1, 7}}).Ordered(),
              (Order{4, 3, 2, 1, 0}));
}

TEST(OrderList, SortedListStays) {
    EXPECT_EQ(HandMadeList({{0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}}).Ordered(),
              (Order{0, 1, 2, 3}));
}

TEST(OrderList, KeepsTheOrderOfEqualOnes) {
    EXPECT_EQ(HandMadeList({{1, 2, 3}, {0, 0, 0}, {1, 2, 3}, {0, 0, 0}, {1, 2, 3}}).Ordered(),
              (Order{1, 3, 0, 2, 4}));
}

TEST(OrderList, DropsNumbersOutOfRangeWhereverTheyStand) {
    EXPECT_EQ(HandMadeList({{256, 0, 0}, {0, 5, 0}, {0, 32, 0}, {0, 4, 0}, {0, 0, 8}}).Ordered(),
              (Order{3, 1}));
    EXPECT_EQ(HandMadeList({{65535, 65535, 65535}}).Ordered(), Order{});
}

TEST(OrderList, KeepsTheLargestNumbersInRange) {
    EXPECT_EQ(HandMadeList({{255, 31, 7}, {255, 31, 6}, {255, 30, 7}, {254, 31, 7}}).Ordered(),
              (Order{3, 2, 1, 0}));
}

TEST(OrderList, DroppedNodesStayInTheTotal) {
    HandMadeList list({{0, 1, 0}, {0, 32, 0}, {0, 0, 0}});
    list.Ordered();
    EXPECT_EQ(list.getTotalNumDevices(), 3);
}

TEST(OrderList, IterationFollowsTheNewOrder) {
    HandMadeList list({{0, 1, 0}, {0, 0, 0}});
    list.OrderList();
    list.resetList();
    EXPECT_EQ(list.getNextDeviceFromList()->m_wVendorID, 1);
    EXPECT_EQ(list.getNextDeviceFromList()->m_wVendorID, 0);
    EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
}

TEST(OrderList, LeavesNothingUnderTheCursor) {
    HandMadeList list({{0, 1, 0}, {0, 0, 0}});
    list.resetList();
    list.OrderList();
    EXPECT_EQ(list.getNextDeviceFromList(), nullptr);
}

TEST(OrderList, LinksLeadBackwardsThroughTheNewOrder) {
    EXPECT_EQ(HandMadeList({{0, 2, 0}, {0, 0, 0}, {0, 1, 0}, {0, 32, 0}}).OrderedBackwards(),
              (Order{0, 2, 1}));
    EXPECT_EQ(HandMadeList({{2, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 0}}).OrderedBackwards(),
              (Order{0, 2, 1, 3}));
}

}  // namespace
