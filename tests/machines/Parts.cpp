// Field by field; offsets are those of DSP0134, chapter 7.
#include "machines/Parts.h"

namespace corpus {

namespace {

/// An empty string would end the set: a field without a text names none.
void PutText(Structure& structure, size_t offset, const std::string& text) {
    if (!text.empty()) {
        structure.String(offset, text);
    }
}

}  // namespace

Structure Bios(const std::string& vendor, const std::string& version, const std::string& date) {
    return Structure(0, 0x18)
        .String(0x04, vendor)
        .String(0x05, version)
        .Word(0x06, 0xE000)
        .String(0x08, date)
        .Byte(0x09, 0x3F);
}

Structure System(const std::string& maker, const std::string& product, const std::string& serial,
                 uint8_t firstUuidByte) {
    Structure system(1, 0x1B);
    system.String(0x04, maker).String(0x05, product).String(0x06, "01");
    PutText(system, 0x07, serial);
    for (uint8_t i = 0; i < 16; ++i) {
        system.Byte(0x08 + i, static_cast<uint8_t>(firstUuidByte + i));
    }
    return system.Byte(0x18, 0x06);
}

Structure Board(const std::string& product, const std::string& location) {
    Structure board(2, 0x0F);
    board.String(0x04, "QEV")
        .String(0x05, product)
        .String(0x06, "(none)")
        .String(0x07, "B0000001")
        .String(0x08, "(none)")
        .Byte(0x09, 0x09);
    PutText(board, 0x0A, location);
    return board.Byte(0x0D, 0x0A);
}

Structure Enclosure(uint8_t type, const std::string& serial) {
    Structure enclosure(3, 0x11);
    enclosure.String(0x04, "QEV").Byte(0x05, type).String(0x06, "00");
    PutText(enclosure, 0x07, serial);
    return enclosure.String(0x08, "none");
}

void Add(MachineBuilder& machine, const Processors& processors) {
    constexpr uint8_t kPopulatedAndEnabled = 0x41;
    for (int i = 0; i < processors.sockets; ++i) {
        Structure socket(4, 0x23);
        socket.String(0x04, "CPU " + std::to_string(i + 1)).Byte(0x05, 0x03);
        if (i < processors.populated) {
            socket.Byte(0x06, processors.family)
                .String(0x07, "Northlight")
                .String(0x10, processors.name)
                .Word(0x14, processors.megahertz)
                .Word(0x16, processors.megahertz)
                .Byte(0x18, kPopulatedAndEnabled);
        }
        machine.Add(socket);
    }
}

void AddMemory(MachineBuilder& machine, int count, uint16_t size) {
    for (int i = 0; i < count; ++i) {
        machine.Add(Structure(17, 0x1B)
                        .Word(0x08, 72)
                        .Word(0x0A, 64)
                        .Word(0x0C, size)
                        .Byte(0x0E, 0x09)
                        .String(0x10, "DIMM " + std::to_string(i + 1))
                        .Byte(0x12, 0x18));
    }
}

void AddSlots(MachineBuilder& machine, int count, const std::string& name, uint8_t type) {
    for (int i = 0; i < count; ++i) {
        machine.Add(Structure(9, 0x0D)
                        .String(0x04, name + " " + std::to_string(i + 1))
                        .Byte(0x05, type)
                        .Byte(0x07, 0x03));
    }
}

Structure OemStrings(const std::vector<std::string>& texts) {
    Structure strings(11, 0x05);
    strings.Byte(0x04, static_cast<uint8_t>(texts.size()));
    for (const std::string& text : texts) {
        strings.Text(text);
    }
    return strings;
}

void AddChipset(MachineBuilder& machine, uint16_t hostBridge) {
    constexpr uint16_t kVendor = 0x8086;
    machine.Add(PciFunction{.vendorId = kVendor, .deviceId = hostBridge, .classCode = 0x060000});
    machine.Add(PciFunction{.device = 0x1E,
                            .vendorId = kVendor,
                            .deviceId = 0x244E,
                            .classCode = 0x060401,
                            .headerType = 0x01});
    AddCard(machine, 0, 0x1D, 2,
            {.vendorId = kVendor, .deviceId = 0x2658, .classCode = 0x0C0300, .revision = 3});
}

void AddCard(MachineBuilder& machine, uint16_t bus, uint16_t device, int count,
             const PciFunction& function) {
    constexpr uint8_t kMultiFunction = 0x80;
    for (int i = 0; i < count; ++i) {
        PciFunction one = function;
        one.bus = bus;
        one.device = device;
        one.function = static_cast<uint16_t>(i);
        one.headerType = count > 1 ? kMultiFunction : uint8_t{0};
        machine.Add(one);
    }
}

PciFunction Ethernet() {
    return {.vendorId = 0x14E4,
            .deviceId = 0x1639,
            .classCode = 0x020000,
            .revision = 0x20,
            .subVendorId = kQev,
            .subDeviceId = 0x03A9,
            .configurationSize = 4096};
}

PciFunction Disks() {
    return {.vendorId = 0x1000,
            .deviceId = 0x0058,
            .classCode = 0x010000,
            .revision = 0x08,
            .subVendorId = kQev,
            .subDeviceId = 0x0363};
}

}  // namespace corpus
