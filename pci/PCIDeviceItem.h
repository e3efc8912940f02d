// A PCI function as a node of a device list.
// Owns nothing: the list that links the nodes owns them.
#pragma once

#include "pci/PCIDevice.h"

/// A node is its device: the list hands it out as one.
class PCIDeviceItem : public PCIDevice {
  public:
    PCIDeviceItem* m_pNext = nullptr;
    PCIDeviceItem* m_pPrev = nullptr;
};
