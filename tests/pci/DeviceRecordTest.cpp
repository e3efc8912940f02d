// The device record, the list node and the exception type.
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "pci/PCIDeviceItem.h"
#include "pci/PCIException.h"

namespace {

TEST(PCIDevice, NewOneHasNoIdentity) {
    const PCIDevice device;
    EXPECT_EQ(device.m_wVendorID, 0);
    EXPECT_EQ(device.m_wDeviceID, 0);
    EXPECT_EQ(device.m_wSubVendorID, 0);
    EXPECT_EQ(device.m_wSubDeviceID, 0);
    EXPECT_EQ(device.m_wBus, 0);
    EXPECT_EQ(device.m_wDevice, 0);
    EXPECT_EQ(device.m_wFunction, 0);
    EXPECT_EQ(device.m_dwClassCode, 0u);
    EXPECT_EQ(device.m_wRevision, 0);
    EXPECT_EQ(device.m_wHeaderType, 0);
}

TEST(PCIDevice, NewOneHasEmptyTexts) {
    const PCIDevice device;
    EXPECT_TRUE(device.m_sText1.IsEmpty());
    EXPECT_TRUE(device.m_sText2.IsEmpty());
    EXPECT_TRUE(device.m_sText3.IsEmpty());
}

TEST(PCIDevice, NewOneHasReservedNumbersOfMinusOne) {
    const PCIDevice device;
    EXPECT_EQ(device.m_nExtra1, -1);
    EXPECT_EQ(device.m_nExtra2, -1);
}

TEST(PCIDevice, FieldsHaveTheirDocumentedWidths) {
    using Word = uint16_t PCIDevice::*;
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wVendorID)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wDeviceID)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wSubVendorID)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wSubDeviceID)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wBus)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wDevice)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wFunction)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wRevision)>));
    EXPECT_TRUE((std::is_same_v<Word, decltype(&PCIDevice::m_wHeaderType)>));
    EXPECT_TRUE((std::is_same_v<uint32_t, decltype(PCIDevice::m_dwClassCode)>));
    EXPECT_TRUE((std::is_same_v<int32_t, decltype(PCIDevice::m_nExtra1)>));
    EXPECT_TRUE((std::is_same_v<int32_t, decltype(PCIDevice::m_nExtra2)>));
    EXPECT_TRUE((std::is_same_v<CString, decltype(PCIDevice::m_sText1)>));
    EXPECT_TRUE((std::is_same_v<CString, decltype(PCIDevice::m_sText2)>));
    EXPECT_TRUE((std::is_same_v<CString, decltype(PCIDevice::m_sText3)>));
}

TEST(PCIDevice, FieldsStandInTheirDocumentedOrder) {
    const PCIDevice device;
    const void* const fields[] = {
        &device.m_wVendorID, &device.m_wDeviceID,   &device.m_wSubVendorID, &device.m_wSubDeviceID,
        &device.m_wBus,      &device.m_wDevice,     &device.m_wFunction,    &device.m_dwClassCode,
        &device.m_wRevision, &device.m_wHeaderType, &device.m_sText1,       &device.m_sText2,
        &device.m_sText3,    &device.m_nExtra1,     &device.m_nExtra2,
    };
    for (size_t i = 1; i < std::size(fields); ++i) {
        EXPECT_LT(fields[i - 1], fields[i]) << i;
    }
}

TEST(PCIDevice, FieldsArePlainData) {
    PCIDevice device;
    device.m_wVendorID = 0x8086;
    device.m_sText1 = "a text";
    device.m_nExtra1 = 7;
    const PCIDevice copy = device;
    EXPECT_EQ(copy.m_wVendorID, 0x8086);
    EXPECT_STREQ(copy.m_sText1.GetBuffer(), "a text");
    EXPECT_EQ(copy.m_nExtra1, 7);
}

TEST(PCIDeviceItem, NewOneHasNoNeighbours) {
    const PCIDeviceItem item;
    EXPECT_EQ(item.m_pNext, nullptr);
    EXPECT_EQ(item.m_pPrev, nullptr);
}

TEST(PCIDeviceItem, BeginsWithItsDevice) {
    PCIDeviceItem item;
    PCIDevice* const device = &item;
    EXPECT_EQ(static_cast<void*>(device), static_cast<void*>(&item));
    EXPECT_EQ(device->m_nExtra1, -1);
}

TEST(PCIException, CarriesItsMessage) {
    const PCIException exception(CString("no configuration space"));
    EXPECT_STREQ(exception.m_sMessage.GetBuffer(), "no configuration space");
}

TEST(PCIException, CanBeThrown) {
    try {
        throw PCIException(CString("no configuration space"));
    } catch (const PCIException& exception) {
        EXPECT_STREQ(exception.m_sMessage.GetBuffer(), "no configuration space");
        return;
    }
    FAIL() << "nothing was caught";
}

}  // namespace
