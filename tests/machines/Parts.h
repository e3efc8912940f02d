// What servers are made of: structures and PCI functions with the fields that matter.
// Describes sound hardware; DamagedServers.cpp damages it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "machine/MachineBuilder.h"

namespace corpus {

using machine::Bytes;
using machine::MachineBuilder;
using machine::PciFunction;
using machine::Structure;

constexpr uint16_t kQev = 0x51E5;  // the maker's own sub-vendor number

/// BIOS information, DSP0134 7.1.
Structure Bios(const std::string& vendor, const std::string& version, const std::string& date);

/// System information, 7.2. The UUID is one byte, counted up.
Structure System(const std::string& maker, const std::string& product, const std::string& serial,
                 uint8_t firstUuidByte);

/// Baseboard, 7.3; `location` is where a blade sits.
Structure Board(const std::string& product, const std::string& location);

/// Enclosure, 7.4; its serial number is where a blade's firmware keeps the chassis UUID.
Structure Enclosure(uint8_t type, const std::string& serial);

/// `sockets` processors of which the first `populated` are there, 7.5.
struct Processors {
    int sockets = 1;
    int populated = 1;
    uint8_t family = 0xB3;
    uint16_t megahertz = 2400;
    std::string name;
};
void Add(MachineBuilder& machine, const Processors& processors);

/// `count` memory devices of `size`, as 7.18 encodes it: megabytes, or with bit 15 kilobytes.
void AddMemory(MachineBuilder& machine, int count, uint16_t size);

/// System slots of one type, 7.10, numbered from 1.
void AddSlots(MachineBuilder& machine, int count, const std::string& name, uint8_t type);

/// OEM strings, 7.12.
Structure OemStrings(const std::vector<std::string>& texts);

/// Host bridge, bridge to the south, two USB controllers: what each board here has on bus 0.
void AddChipset(MachineBuilder& machine, uint16_t hostBridge);

/// `count` functions of one card at a bus and a device.
void AddCard(MachineBuilder& machine, uint16_t bus, uint16_t device, int count,
             const PciFunction& function);

/// A network port, and a disk controller.
PciFunction Ethernet();
PciFunction Disks();

}  // namespace corpus
