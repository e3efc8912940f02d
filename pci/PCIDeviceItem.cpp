// A node of a device list: construction.
#include "pci/PCIDeviceItem.h"

PCIDeviceItem::PCIDeviceItem() = default;
