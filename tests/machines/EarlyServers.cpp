// Servers of the BIOS era: one or two sockets, tables below the first megabyte.
#include "machines/Corpus.h"
#include "machines/Parts.h"

namespace corpus {

namespace {

/// Only the legacy entry point, system information of the first kind, memory modules instead of
/// memory devices.
MachineBuilder PedestalOf1998() {
    MachineBuilder machine;
    machine.LegacyEntryPoint().EntryPointAt(0xFA2B0).TableAt(0xF1000);
    machine.Add(Bios("QEV", "-[LPKT09AUS]-", "08/11/98"))
        .Add(
            Structure(1, 0x08).String(0x04, "QEV").String(0x05, "Lone Pine").String(0x07, "1998-A"))
        .Add(Enclosure(0x11, "LP-4711"));
    Add(machine, {1, 1, 0x11, 450, "P2"});
    machine.Add(Structure(6, 0x0C).String(0x04, "J1").Byte(0x09, 0x07));
    AddSlots(machine, 2, "ISA", 0x03);
    AddSlots(machine, 3, "PCI", 0x06);
    AddChipset(machine, 0x7190);
    return machine;
}

/// The machine type stands in the product's brackets.
MachineBuilder TowerOf2004() {
    MachineBuilder machine;
    machine.TableAt(0xE5010);
    machine.Add(Bios("QEV", "-[BRE144BUS-1.44]-", "02/26/2004"))
        .Add(System("QEV", "Birch -[77093AU]-", "BR04711", 0x20))
        .Add(Board("Birch planar", "none"))
        .Add(Enclosure(0x07, "BR04711"));
    Add(machine, {2, 2, 0xB5, 3200, "Northlight X 3.20GHz"});
    AddMemory(machine, 4, 512);
    AddMemory(machine, 4, 0);
    AddSlots(machine, 2, "PCI-X", 0x0E);
    AddSlots(machine, 1, "AGP", 0x0F);
    machine.Add(OemStrings({"QEV Diagnostics -[BRYT20AUS]-"}));
    AddChipset(machine, 0x3590);
    AddCard(machine, 3, 4, 2, Ethernet());
    AddCard(machine, 4, 1, 1, Disks());
    return machine;
}

/// Brackets that were left blank: the product's name implies the type.
MachineBuilder RackServerOf2007() {
    MachineBuilder machine;
    machine.TableAt(0xDF7E0);
    machine.Add(Bios("QEV", "1.12", "06/05/2007"))
        .Add(System("QEV", "Arlo 1 -[       ]-", "AR10007", 0x30))
        .Add(Board("Arlo 1 planar", ""))
        .Add(Enclosure(0x17, "AR10007"));
    Add(machine, {2, 1, 0xB3, 2333, "Northlight 5100"});
    AddMemory(machine, 8, 1024);
    AddSlots(machine, 2, "PCI Express", 0xA5);
    AddChipset(machine, 0x25D8);
    AddCard(machine, 5, 0, 2, Ethernet());
    return machine;
}

/// Blank brackets and a name that implies nothing; half a megabyte of memory.
MachineBuilder PrototypeWithBlankType() {
    MachineBuilder machine;
    machine.Add(Bios("QEV", "-[PROTO]-", "01/01/2006"))
        .Add(System("QEV", "Engineering sample -[ ]-", "", 0x40))
        .Add(Enclosure(0x01, ""));
    Add(machine, {1, 1, 0x02, 0, "sample"});
    AddMemory(machine, 1, 0x8000 | 512);
    AddChipset(machine, 0x3406);
    return machine;
}

}  // namespace

std::vector<Machine> EarlyServers() {
    return {{"pedestal-of-1998", PedestalOf1998()},
            {"tower-of-2004", TowerOf2004()},
            {"rack-server-of-2007", RackServerOf2007()},
            {"prototype-with-blank-type", PrototypeWithBlankType()}};
}

}  // namespace corpus
