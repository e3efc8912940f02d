// A machine whose PCI tree a test writes entry by entry, and what a scan of it lists.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "machine/MachineBuilder.h"
#include "pci/PCIDeviceList_Proc.h"
#include "support/InMachine.h"
#include "support/TemporaryFolder.h"

namespace fs = std::filesystem;

/// A machine folder with an empty tree.
class PciTree {
  public:
    PciTree() { machine::MachineBuilder().WriteTo(Machine()); }
    /// One function of 256 zero bytes for each name such as "00/1f.3".
    explicit PciTree(std::initializer_list<const char*> functions) : PciTree() {
        for (const char* function : functions) {
            Add(function, machine::Bytes(256));
        }
    }

    /// Writes a function's file and, where it is missing, its bus directory.
    void Add(const fs::path& function, const machine::Bytes& configuration) const {
        fs::create_directories((Root() / function).parent_path());
        std::ofstream file(Root() / function, std::ios::binary);
        file.write(reinterpret_cast<const char*>(configuration.data()),
                   static_cast<std::streamsize>(configuration.size()));
    }
    fs::path Machine() const { return m_folder.path() / "machine"; }
    fs::path Root() const { return Machine() / "pci"; }

  private:
    support::TemporaryFolder m_folder;
};

/// The place of a function in the form "00:1f.3".
inline std::string PlaceOf(const PCIDevice& device) {
    char text[sizeof "ffff:ffff.ffff"];
    std::snprintf(text, sizeof text, "%02x:%02x.%x", unsigned{device.m_wBus},
                  unsigned{device.m_wDevice}, unsigned{device.m_wFunction});
    return text;
}

using Places = std::vector<std::string>;

/// The places of the devices from the cursor on.
inline Places PlacesFrom(PCI_DevList_VC& list) {
    Places places;
    while (const PCIDevice* device = list.getNextDeviceFromList()) {
        places.push_back(PlaceOf(*device));
    }
    return places;
}

/// Scans the tree without a word and looks at the list.
inline void ExpectScanOf(const PciTree& tree,
                         const std::function<void(PCIDeviceList_Proc&)>& expectations) {
    const std::string output = support::OnMachine(tree.Machine(), [&expectations] {
        PCIDeviceList_Proc list;
        EXPECT_FALSE(list.scanPCIBusAndCreateList());
        expectations(list);
    });
    EXPECT_EQ(output, "");
}

inline void ExpectPlaces(const PciTree& tree, const Places& places) {
    ExpectScanOf(tree, [&places](PCIDeviceList_Proc& list) {
        EXPECT_EQ(PlacesFrom(list), places);
        EXPECT_EQ(list.getTotalNumDevices(), static_cast<int>(places.size()));
    });
}
