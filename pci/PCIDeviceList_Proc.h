// The PCI functions that the Linux kernel lists under /proc/bus/pci.
// Ends the process when that tree cannot be read; missing configuration bytes read as 0.
#pragma once

#include <cstdint>

#include "pci/PCI_DevList_VC.h"

/// A failure ends the process from inside the scan: status 1 when /proc/bus/pci or a bus directory
/// cannot be opened or read (with a message on standard output) or a function's file cannot be
/// opened, status 2 when memory runs out.
class PCIDeviceList_Proc : public PCI_DevList_VC {
  public:
    PCIDeviceList_Proc();
    ~PCIDeviceList_Proc() override;

    /// Scans. Returns what the scan returns: false.
    bool initialize() override;
    PCIDevice* getNextDeviceFromList() override;
    void resetList() override;
    /// The number of function files found, those with numbers out of range included.
    int getTotalNumDevices() override;
    /// Always null.
    PCIDevice* getNextPCIDevice() override;
    /// Always returns false when it returns; callers ignore the result.
    bool scanPCIBusAndCreateList() override;

    /// Sorts by bus, device and function, keeping the order of equal ones. A node whose numbers
    /// lie outside 0-255, 0-31 and 0-7 leaves the list, but not its total.
    void OrderList();

  private:
    void scanBus(int rootDirectory, const char* busName);
    void addDevice(int busDirectory, uint16_t bus, const char* fileName);
    void append(PCIDeviceItem* item);
    void dropOutOfRange();
    void deleteAll();
};
