// Servers with four and eight sockets, terabytes of memory, hundreds of PCI functions.
#include "machines/Corpus.h"
#include "machines/Parts.h"

namespace corpus {

namespace {

MachineBuilder FourSockets() {
    MachineBuilder machine;
    machine.TableAt(0xBF7E2010);
    machine.Add(Bios("QEV", "-[G0E171AUS-1.71]-", "09/23/2011"))
        .Add(System("QEV", "Dune R -[7731AC1]-", "DR30042", 0x61))
        .Add(Board("Dune R planar", "none"))
        .Add(Enclosure(0x17, "DR30042"));
    Add(machine, {4, 4, 0xB3, 2261, "Northlight E7"});
    AddMemory(machine, 32, 16384);
    AddMemory(machine, 32, 0);
    AddSlots(machine, 7, "PCI Express", 0xA5);
    machine.Add(OemStrings({"QEV Diagnostics -[DSYTB1D-9.31]-", "QEV Tesk Controller -[YUOOE9B]-",
                            "QEV Koru Adapter -[KRU044A]-"}));
    AddChipset(machine, 0x3407);
    AddCard(machine, 0x15, 0, 4, Ethernet());
    AddCard(machine, 0x1B, 0, 1, Disks());
    return machine;
}

/// Two enclosures, eight sockets of which six are in use, memory devices of 32 GB, whose size
/// stands in a field that came later.
MachineBuilder EightSocketsInTwoEnclosures() {
    constexpr uint16_t kSizeStandsElsewhere = 0x7FFF;  // DSP0134 7.18.1
    MachineBuilder machine;
    machine.TableAt(0xFFFE0000);
    machine.Add(Bios("QEV", "-[H2E104CUS-2.04]-", "03/07/2016"))
        .Add(System("QEV", "Dune R -[7731HC2]-", "DR30088", 0x62))
        .Add(Board("Dune R planar, lower", "none"))
        .Add(Board("Dune R planar, upper", "none"))
        .Add(Enclosure(0x17, "DR30088-1"))
        .Add(Enclosure(0x97, "DR30088-2"));
    Add(machine, {8, 6, 0xB3, 2800, "Northlight E7 v4"});
    AddMemory(machine, 96, kSizeStandsElsewhere);
    AddSlots(machine, 16, "PCI Express", 0xB1);
    AddChipset(machine, 0x6F00);
    for (uint16_t bus = 0x20; bus < 0x28; ++bus) {
        AddCard(machine, bus, 0, 2, Ethernet());
    }
    return machine;
}

/// 32 cards with eight functions each, and 100 more that are virtual.
MachineBuilder HundredsOfPciFunctions() {
    MachineBuilder machine;
    machine.TableAt(0x6C1B8000);
    machine.Add(Bios("QEV", "-[IVE120AUS-1.20]-", "05/14/2020"))
        .Add(System("QEV", "Arlo -[7710VM1]-", "AV70001", 0x71))
        .Add(Enclosure(0x17, "AV70001"));
    Add(machine, {2, 2, 0xB3, 3100, "Northlight Gold"});
    AddMemory(machine, 16, 0x7FFE);
    AddChipset(machine, 0x2020);
    for (uint16_t bus = 0x40; bus < 0x60; ++bus) {
        AddCard(machine, bus, 0, 8, Ethernet());
    }
    for (uint16_t device = 1; device <= 25; ++device) {
        AddCard(machine, 0xD8, device, 4,
                {.deviceId = 0x154C, .classCode = 0x020000, .configurationSize = 4096});
    }
    return machine;
}

/// 620 structures, most of them slots and memory devices, in a table of 30 KB.
MachineBuilder HundredsOfStructures() {
    MachineBuilder machine;
    machine.TableAt(0x7A4F0000);
    machine.Add(Bios("QEV", "-[IVE131BUS-1.31]-", "02/03/2021"))
        .Add(System("QEV", "Arlo -[7710HS4]-", "AV70004", 0x74))
        .Add(Enclosure(0x17, "AV70004"));
    Add(machine, {8, 8, 0xB3, 2700, "Northlight Platinum"});
    AddMemory(machine, 192, 0x4000);
    AddSlots(machine, 415, "PCIe ", 0xA5);
    machine.Add(OemStrings({"Diagnostics -[IVEDG7AUS]-"}));
    return machine;
}

/// Modern firmware: no enclosure, no build levels.
MachineBuilder NoEnclosure() {
    MachineBuilder machine;
    machine.TableAt(0x8D1F3018);
    machine.Add(Bios("QEV", "-[TEE160KUS-2.61]-", "10/18/2022"))
        .Add(System("QEV", "Birch -[7709ZX9]-", "BX90001", 0x81));
    Add(machine, {1, 1, 0xB3, 2900, "Northlight D"});
    AddMemory(machine, 2, 0x7FFF);
    AddChipset(machine, 0x09A2);
    return machine;
}

}  // namespace

std::vector<Machine> LargeServers() {
    return {{"four-sockets", FourSockets()},
            {"eight-sockets-in-two-enclosures", EightSocketsInTwoEnclosures()},
            {"hundreds-of-pci-functions", HundredsOfPciFunctions()},
            {"hundreds-of-structures", HundredsOfStructures()},
            {"no-enclosure", NoEnclosure()}};
}

}  // namespace corpus
