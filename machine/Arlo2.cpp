// The sample server.
#include "machine/Arlo2.h"

#include <initializer_list>

namespace machine {

namespace {

// Offsets of the fields are those of DSP0134, chapter 7.

Structure Processor(const char* socket, uint8_t status) {
    constexpr uint8_t kFamilyXeon = 0xB3;
    return Structure(4, 0x23)
        .String(0x04, socket)
        .Byte(0x05, 0x03)  // central processor
        .Byte(0x06, kFamilyXeon)
        .String(0x07, "Northlight")
        .String(0x10, "Northlight N1000 CPU @ 2.93GHz")
        .Word(0x14, 4000)  // highest speed
        .Word(0x16, 2933)  // current speed
        .Byte(0x18, status);
}

Structure EmptySocket(const char* socket) {
    return Structure(4, 0x23).String(0x04, socket).Byte(0x05, 0x03).Byte(0x06, 0x02);
}

Structure MemoryDevice(const char* socket, uint16_t size) {
    return Structure(17, 0x1B)
        .Word(0x08, 72)  // total width
        .Word(0x0A, 64)  // data width
        .Word(0x0C, size)
        .Byte(0x0E, 0x09)  // DIMM
        .String(0x10, socket)
        .Byte(0x12, 0x18)  // DDR3
        .Word(0x15, 1333);
}

Structure Slot(const char* designation, uint8_t type) {
    return Structure(9, 0x0D).String(0x04, designation).Byte(0x05, type).Byte(0x07, 0x03);
}

void AddIdentity(MachineBuilder& machine) {
    machine.Add(Structure(0, 0x18)
                    .String(0x04, "QEV")
                    .String(0x05, "-[AB1234CUS-1.07]-")
                    .Word(0x06, 0xE000)
                    .String(0x08, "03/18/2010")
                    .Byte(0x09, 0x3F));
    machine.Add(Structure(1, 0x1B)
                    .String(0x04, "QEV")
                    .String(0x05, "Arlo 2 -[771200X]-")
                    .String(0x06, "03")
                    .String(0x07, "QS0012345")
                    .Data(0x08, {0x5A, 0x0E, 0x2C, 0x91, 0x77, 0x12, 0x40, 0x0B, 0x8E, 0x31, 0x00,
                                 0x1A, 0x64, 0xC3, 0x7D, 0x02})
                    .Byte(0x18, 0x06));
    machine.Add(Structure(2, 0x0F)
                    .String(0x04, "QEV")
                    .String(0x05, "QBRD-2040")
                    .String(0x06, "(none)")
                    .String(0x07, "B0001234")
                    .String(0x08, "(none)")
                    .Byte(0x09, 0x09)
                    .String(0x0A, "Bay 14")
                    .Byte(0x0D, 0x03));
    machine.Add(Structure(3, 0x11)
                    .String(0x04, "QEV")
                    .Byte(0x05, 0x1C)  // blade
                    .String(0x07, "-[UUID:9F3C0D5E6A7B41C2B8D0E1F203142536]-"));
    machine.Add(Structure(3, 0x11).String(0x04, "QEV").Byte(0x05, 0x9D));  // locked blade chassis
}

void AddProcessorsAndMemory(MachineBuilder& machine) {
    constexpr uint8_t kPopulatedAndEnabled = 0x41;
    constexpr uint8_t kPopulated = 0x40;
    machine.Add(Processor("CPU 1", kPopulatedAndEnabled));
    machine.Add(Processor("CPU 2", kPopulatedAndEnabled));
    machine.Add(Processor("CPU 3", kPopulated));
    machine.Add(EmptySocket("CPU 4"));
    machine.Add(MemoryDevice("DIMM 1", 4096));
    machine.Add(MemoryDevice("DIMM 2", 4096));
    machine.Add(MemoryDevice("DIMM 3", 2048));
    machine.Add(MemoryDevice("DIMM 4", 1024));
    machine.Add(MemoryDevice("DIMM 5", 0));
    machine.Add(MemoryDevice("DIMM 6", 0x8000 | 16384));  // in kilobytes
}

void AddSlotsAndBuildLevels(MachineBuilder& machine) {
    machine.Add(Slot("PCI Slot 1", 0x06));
    machine.Add(Slot("PCI-X Slot 2", 0x0E));
    machine.Add(Slot("PCI Express Slot 3", 0xA5));
    machine.Add(Structure(11, 0x05)
                    .Byte(0x04, 4)
                    .Text("QEV Diagnostics -[XYZ10AUS]-")
                    .Text("QEV Tesk Controller -[TKB037A]-")
                    .Text("QEV Koru Adapter -[KRU026B]-")
                    .Text("No further levels"));
    machine.Add(Structure(32, 0x0B));
}

void AddPciFunctions(MachineBuilder& machine) {
    constexpr uint16_t kChipset = 0x8086;
    constexpr uint16_t kQev = 0x51E5;
    constexpr uint8_t kMultiFunction = 0x80;
    constexpr uint8_t kBridge = 0x01;

    // Written in no order, as the kernel promises none.
    for (const PciFunction& function : std::initializer_list<PciFunction>{
             // Bus 0: host bridge, bridges to the other buses, chipset.
             {0x00, 0x1F, 0, kChipset, 0x3A18, 0x060100, 0x00, kMultiFunction, kQev, 0x03BE},
             {0x00, 0x1F, 2, kChipset, 0x3A20, 0x01018F, 0x00, 0x00, kQev, 0x03BF},
             {0x00, 0x1F, 3, kChipset, 0x3A30, 0x0C0500, 0x00, 0x00, kQev, 0x03C0},
             {0x00, 0x1D, 0, kChipset, 0x3A34, 0x0C0300, 0x00, kMultiFunction, kQev, 0x03C1},
             {0x00, 0x1D, 1, kChipset, 0x3A35, 0x0C0300, 0x00, 0x00, kQev, 0x03C1},
             {0x00, 0x1D, 7, kChipset, 0x3A3A, 0x0C0320, 0x00, 0x00, kQev, 0x03C2},
             {0x00, 0x00, 0, kChipset, 0x3406, 0x060000, 0x13, 0x00, kQev, 0x03BD, 4096},
             {0x00, 0x01, 0, kChipset, 0x3408, 0x060400, 0x13, kBridge, 0x0000, 0x0000, 4096},
             {0x00, 0x03, 0, kChipset, 0x340A, 0x060400, 0x13, kBridge, 0x0000, 0x0000, 4096},
             {0x00, 0x07, 0, kChipset, 0x340E, 0x060400, 0x13, kBridge, 0x0000, 0x0000, 4096},
             {0x00, 0x1E, 0, kChipset, 0x244E, 0x060401, 0x90, kBridge, 0x0000, 0x0000},
             // Bus 1: disks.
             {0x01, 0x00, 0, 0x1000, 0x0058, 0x010000, 0x08, 0x00, kQev, 0x0363, 4096},
             // Bus 6: the management processor's graphics.
             {0x06, 0x00, 0, 0x102B, 0x0530, 0x030000, 0x0A, 0x00, kQev, 0x0369},
             // Bus 0x10: four network ports.
             {0x10, 0x00, 1, 0x14E4, 0x1639, 0x020000, 0x20, kMultiFunction, kQev, 0x03A9, 4096},
             {0x10, 0x00, 0, 0x14E4, 0x1639, 0x020000, 0x20, kMultiFunction, kQev, 0x03A9, 4096},
             {0x10, 0x00, 3, 0x14E4, 0x1639, 0x020000, 0x20, kMultiFunction, kQev, 0x03A9, 4096},
             {0x10, 0x00, 2, 0x14E4, 0x1639, 0x020000, 0x20, kMultiFunction, kQev, 0x03A9, 4096},
             // Bus 0xFE: the memory controllers of the processors.
             {0xFE, 0x03, 1, kChipset, 0x2C99, 0x060000, 0x05, 0x00, 0x0000, 0x0000},
             {0xFE, 0x03, 0, kChipset, 0x2C98, 0x060000, 0x05, kMultiFunction, 0x0000, 0x0000},
             {0xFE, 0x00, 0, kChipset, 0x2C40, 0x060000, 0x05, kMultiFunction, 0x0000, 0x0000},
         }) {
        machine.Add(function);
    }
}

}  // namespace

MachineBuilder Arlo2() {
    MachineBuilder machine;
    AddIdentity(machine);
    AddProcessorsAndMemory(machine);
    AddSlotsAndBuildLevels(machine);
    AddPciFunctions(machine);
    // Not page-aligned and above 2 GiB, where firmware keeps its tables in earnest.
    machine.TableAt(0xBF7C8A40);
    return machine;
}

}  // namespace machine
