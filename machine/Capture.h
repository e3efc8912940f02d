// Writes the machine at hand into a new machine folder.
// Reads what systally itself would read and nothing else; keeps nothing when it fails.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "machine/FirmwareTables.h"

namespace machine {

struct CaptureRequest {
    std::filesystem::path folder;
    bool sanitized = false;  ///< without what identifies the machine
    FirmwareSources firmware;
    std::string pciTree = "/proc/bus/pci";
};

struct CaptureEnding {
    std::vector<std::string> messages;  ///< what the user should know, in order
    std::string failure;                ///< empty when the folder is there
};

CaptureEnding Capture(const CaptureRequest& request);

}  // namespace machine
