// One PCI function as its configuration header describes it.
// Plain data: it reads nothing and checks nothing.
#pragma once

#include <cstdint>

#include "util/CString.h"

/// Offsets in the comments are those of the PCI Local Bus standard's configuration header.
class PCIDevice {
  public:
    uint16_t m_wVendorID = 0;     ///< 0x00
    uint16_t m_wDeviceID = 0;     ///< 0x02
    uint16_t m_wSubVendorID = 0;  ///< 0x2C, whatever the header type: other registers in bridges
    uint16_t m_wSubDeviceID = 0;  ///< 0x2E, likewise
    uint16_t m_wBus = 0;
    uint16_t m_wDevice = 0;      ///< 0 to 31
    uint16_t m_wFunction = 0;    ///< 0 to 7
    uint32_t m_dwClassCode = 0;  ///< 24 bits: base class, sub-class, programming interface
    uint16_t m_wRevision = 0;    ///< 0x08
    uint16_t m_wHeaderType = 0;  ///< 0x0E, the multi-function bit included
    CString m_sText1;            ///< free for the list's users, like the following members
    CString m_sText2;
    CString m_sText3;
    int32_t m_nExtra1 = -1;
    int32_t m_nExtra2 = -1;
};
