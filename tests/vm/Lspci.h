// The PCI functions as lspci tells them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vm {

struct PciFunction {
    std::string slot;  ///< "bus:device.function" in hexadecimal
    unsigned bus;
    unsigned device;
    unsigned function;
    std::vector<uint8_t> bytes;                ///< the configuration space, 256 bytes at least
    std::map<std::string, std::string> named;  ///< what lspci calls "Vendor", "Rev", ...

    unsigned Byte(size_t offset) const { return bytes.at(offset); }
    unsigned Word(size_t offset) const { return Byte(offset) | Byte(offset + 1) << 8U; }
    bool IsBridge() const { return (Byte(0x0E) & 0x7FU) == 1; }
};

using PciFunctions = std::vector<PciFunction>;

/// From the outputs of "lspci -D -n -vmm" and "lspci -D -n -xxx", in their order.
/// Throws std::runtime_error when they name no function, or not the same functions.
PciFunctions ReadLspci(const std::string& named, const std::string& bytes);

}  // namespace vm
