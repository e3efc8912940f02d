// What a function's configuration file says, and what stands for bytes that it lacks.
#include <unistd.h>

#include <array>

#include "pci/PciTree.h"

namespace {

using machine::Bytes;

/// A header of which every byte tells its offset: byte i is i + 0x80.
Bytes Numbered(size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(i + 0x80);
    }
    return bytes;
}

/// Lists the one function with this file and looks at it.
void ExpectDevice(const Bytes& configuration,
                  const std::function<void(const PCIDevice&)>& expectations) {
    const PciTree tree;
    tree.Add("0a/1f.3", configuration);
    ExpectScanOf(tree, [&expectations](PCIDeviceList_Proc& list) {
        ASSERT_EQ(list.getTotalNumDevices(), 1);
        const PCIDevice* device = list.getNextDeviceFromList();
        ASSERT_NE(device, nullptr);
        expectations(*device);
    });
}

TEST(ConfigurationFile, EachRegisterGoesToItsField) {
    ExpectDevice(Numbered(256), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wVendorID, 0x8180);
        EXPECT_EQ(device.m_wDeviceID, 0x8382);
        EXPECT_EQ(device.m_wRevision, 0x88);
        EXPECT_EQ(device.m_dwClassCode, 0x8B8A89u);
        EXPECT_EQ(device.m_wHeaderType, 0x8E);
        EXPECT_EQ(device.m_wSubVendorID, 0xADAC);
        EXPECT_EQ(device.m_wSubDeviceID, 0xAFAE);
    });
}

TEST(ConfigurationFile, NameGivesThePlace) {
    ExpectDevice(Numbered(256), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wBus, 0x0A);
        EXPECT_EQ(device.m_wDevice, 0x1F);
        EXPECT_EQ(device.m_wFunction, 3);
    });
}

TEST(ConfigurationFile, OtherFieldsStayAsTheyAre) {
    ExpectDevice(Numbered(256), [](const PCIDevice& device) {
        EXPECT_TRUE(device.m_sText1.IsEmpty());
        EXPECT_TRUE(device.m_sText2.IsEmpty());
        EXPECT_TRUE(device.m_sText3.IsEmpty());
        EXPECT_EQ(device.m_nExtra1, -1);
        EXPECT_EQ(device.m_nExtra2, -1);
    });
}

TEST(ConfigurationFile, LargestValuesFit) {
    ExpectDevice(Bytes(64, 0xFF), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wVendorID, 0xFFFF);
        EXPECT_EQ(device.m_wDeviceID, 0xFFFF);
        EXPECT_EQ(device.m_wRevision, 0xFF);
        EXPECT_EQ(device.m_dwClassCode, 0xFFFFFFu);
        EXPECT_EQ(device.m_wHeaderType, 0xFF);
        EXPECT_EQ(device.m_wSubVendorID, 0xFFFF);
        EXPECT_EQ(device.m_wSubDeviceID, 0xFFFF);
    });
}

TEST(ConfigurationFile, HeaderTypeKeepsTheMultiFunctionBit) {
    for (const uint8_t type : Bytes{0x00, 0x01, 0x80, 0x81, 0x82}) {
        Bytes configuration(256);
        configuration[0x0E] = type;
        ExpectDevice(configuration,
                     [type](const PCIDevice& device) { EXPECT_EQ(device.m_wHeaderType, type); });
    }
}

TEST(ConfigurationFile, SubsystemIsTakenFromTheSamePlaceInBridges) {
    for (const uint8_t type : Bytes{0x01, 0x02, 0x81}) {
        Bytes configuration = Numbered(256);
        configuration[0x0E] = type;
        ExpectDevice(configuration, [](const PCIDevice& device) {
            EXPECT_EQ(device.m_wSubVendorID, 0xADAC);
            EXPECT_EQ(device.m_wSubDeviceID, 0xAFAE);
        });
    }
}

TEST(ConfigurationFile, AnySizeWillDo) {
    for (const size_t size : {48u, 64u, 256u, 4096u, 4097u, 100'000u}) {
        ExpectDevice(Numbered(size), [size](const PCIDevice& device) {
            EXPECT_EQ(device.m_wVendorID, 0x8180) << size;
            EXPECT_EQ(device.m_wSubDeviceID, 0xAFAE) << size;
        });
    }
}

TEST(ConfigurationFile, FilesDoNotMix) {
    const PciTree tree;
    tree.Add("00/00.0", Numbered(256));
    tree.Add("00/01.0", Bytes{0x86, 0x80});
    tree.Add("00/02.0", Bytes{});
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        EXPECT_EQ(list.getNextDeviceFromList()->m_wSubVendorID, 0xADAC);
        const PCIDevice* second = list.getNextDeviceFromList();
        EXPECT_EQ(second->m_wVendorID, 0x8086);
        EXPECT_EQ(second->m_wSubVendorID, 0);
        EXPECT_EQ(list.getNextDeviceFromList()->m_wVendorID, 0);
    });
}

// --- Missing bytes ------------------------------------------------------------------------------

void ExpectNoIdentity(const PCIDevice& device) {
    EXPECT_EQ(PlaceOf(device), "0a:1f.3");
    EXPECT_EQ(device.m_wVendorID, 0);
    EXPECT_EQ(device.m_wDeviceID, 0);
    EXPECT_EQ(device.m_wRevision, 0);
    EXPECT_EQ(device.m_dwClassCode, 0u);
    EXPECT_EQ(device.m_wHeaderType, 0);
    EXPECT_EQ(device.m_wSubVendorID, 0);
    EXPECT_EQ(device.m_wSubDeviceID, 0);
}

TEST(ShortConfigurationFile, EmptyOneReadsAsZeros) {
    ExpectDevice(Bytes(), ExpectNoIdentity);
}

TEST(ShortConfigurationFile, EmptyOneTakesNothingFromTheOthers) {
    // Whichever way the directory is listed, full ones are read before an empty one.
    PciTree tree;
    for (const char* name : {"00/00.0", "00/02.0", "00/04.0"}) {
        tree.Add(name, Bytes(256, 0xFF));
    }
    for (const char* name : {"00/01.0", "00/03.0"}) {
        tree.Add(name, Bytes());
    }
    for (const char* name : {"00/05.0", "00/06.0"}) {
        tree.Add(name, Bytes(256, 0xFF));
    }
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        int empty = 0;
        while (const PCIDevice* device = list.getNextDeviceFromList()) {
            if (device->m_wDevice == 1 || device->m_wDevice == 3) {
                EXPECT_EQ(device->m_wVendorID, 0);
                EXPECT_EQ(device->m_dwClassCode, 0U);
                EXPECT_EQ(device->m_wSubDeviceID, 0);
                ++empty;
            }
        }
        EXPECT_EQ(empty, 2);
    });
}

TEST(ShortConfigurationFile, SixteenBytesHoldTheFirstRegisters) {
    ExpectDevice(Numbered(16), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wVendorID, 0x8180);
        EXPECT_EQ(device.m_dwClassCode, 0x8B8A89u);
        EXPECT_EQ(device.m_wHeaderType, 0x8E);
        EXPECT_EQ(device.m_wSubVendorID, 0);
        EXPECT_EQ(device.m_wSubDeviceID, 0);
    });
}

TEST(ShortConfigurationFile, RegisterMayBeCutInTheMiddle) {
    ExpectDevice(Numbered(47), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wSubVendorID, 0xADAC);
        EXPECT_EQ(device.m_wSubDeviceID, 0x00AE);
    });
    ExpectDevice(Numbered(1), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wVendorID, 0x0080);
        EXPECT_EQ(device.m_wDeviceID, 0);
    });
    ExpectDevice(Numbered(11), [](const PCIDevice& device) {
        EXPECT_EQ(device.m_wRevision, 0x88);
        EXPECT_EQ(device.m_dwClassCode, 0x008A89u);
    });
}

TEST(ShortConfigurationFile, FileOfUnknownSizeReadsAsZeros) {
    const PciTree tree;
    std::array<int, 2> pipeEnds = {};
    ASSERT_EQ(pipe(pipeEnds.data()), 0);
    ASSERT_EQ(write(pipeEnds[1], "\x86\x80", 2), 2);
    close(pipeEnds[1]);
    fs::create_directory(tree.Root() / "0a");
    fs::create_symlink("/proc/self/fd/" + std::to_string(pipeEnds[0]), tree.Root() / "0a/1f.3");
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        ASSERT_EQ(list.getTotalNumDevices(), 1);
        ExpectNoIdentity(*list.getNextDeviceFromList());
    });
    close(pipeEnds[0]);
}

TEST(ShortConfigurationFile, DeviceWithoutContentsReadsAsZeros) {
    const PciTree tree;
    fs::create_directory(tree.Root() / "0a");
    fs::create_symlink("/dev/null", tree.Root() / "0a/1f.3");
    ExpectScanOf(tree, [](PCIDeviceList_Proc& list) {
        ASSERT_EQ(list.getTotalNumDevices(), 1);
        ExpectNoIdentity(*list.getNextDeviceFromList());
    });
}

}  // namespace
