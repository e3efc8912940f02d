// The exception type of the PCI layer: construction.
#include "pci/PCIException.h"

PCIException::PCIException(CString message) : m_sMessage(message) {}
