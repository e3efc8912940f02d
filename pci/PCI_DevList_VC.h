// The interface of a list of PCI functions, and what a list without an implementation answers.
// Owns no nodes itself: a concrete list frees what it links.
#pragma once

#include <cstdint>
#include <cstdio>

#include "pci/PCIDeviceItem.h"

/// Call scanPCIBusAndCreateList() (or initialize()), then resetList(), then
/// getNextDeviceFromList() until it yields null. The devices belong to the list and stay valid
/// until it is scanned again or destroyed. Every operation that a list does not implement prints
/// a message to standard output.
class PCI_DevList_VC {
  public:
    PCI_DevList_VC() = default;
    PCI_DevList_VC(const PCI_DevList_VC&) = delete;
    PCI_DevList_VC& operator=(const PCI_DevList_VC&) = delete;
    virtual ~PCI_DevList_VC() = default;

    /// Does what the list needs before use.
    virtual bool initialize() {
        reportUnimplemented();
        return false;
    }
    /// The device under the cursor, which moves on; null behind the last one.
    virtual PCIDevice* getNextDeviceFromList() {
        reportUnimplemented();
        return nullptr;
    }
    /// Puts the cursor back on the first device.
    virtual void resetList() { reportUnimplemented(); }
    /// The number of functions that the scan found.
    virtual int getTotalNumDevices() {
        reportUnimplemented();
        return 0;
    }
    /// A second way to iterate, which no list of this system offers.
    virtual PCIDevice* getNextPCIDevice() {
        reportUnimplemented();
        return nullptr;
    }
    /// Discards the contents and lists all functions by bus, device and function.
    virtual bool scanPCIBusAndCreateList() {
        reportUnimplemented();
        return false;
    }

  protected:
    PCIDeviceItem* m_pHead = nullptr;
    int32_t m_nCount = 0;
    PCIDeviceItem* m_pCurrent = nullptr;  // the next device to hand out

  private:
    static void reportUnimplemented() {
        // Users compare this text, the spelling included.
        std::printf("Unimplemented SubClass PCI_DevList_VC Virtual funciton\n");
    }
};
