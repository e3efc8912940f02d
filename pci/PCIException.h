// The exception type of the PCI layer.
// The lists of this system report their failures otherwise and do not throw it.
#pragma once

#include "util/CString.h"

/// Carries one message.
class PCIException {
  public:
    explicit PCIException(CString message);

    CString m_sMessage;
};
