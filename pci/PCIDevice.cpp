// One PCI function: construction and destruction.
#include "pci/PCIDevice.h"

PCIDevice::PCIDevice() = default;
PCIDevice::~PCIDevice() = default;
