// Servers of other makers, whom the program must tell apart.
#include "machines/Corpus.h"
#include "machines/Parts.h"

namespace corpus {

namespace {

MachineBuilder OtherMakersServer() {
    MachineBuilder machine;
    machine.TableAt(0x000E9C40);
    machine.Add(Bios("Granite Systems", "G52.07", "04/01/2019"))
        .Add(System("Granite Systems", "Boulder 5 G2", "GX123456", 0x91))
        .Add(Enclosure(0x17, "GX123456"));
    Add(machine, {2, 2, 0xB3, 2100, "Northlight Silver"});
    AddMemory(machine, 8, 16384);
    AddChipset(machine, 0x2020);
    AddCard(machine, 2, 0, 4,
            {.vendorId = 0x8086, .deviceId = 0x1521, .classCode = 0x020000, .subVendorId = 0x1AB4});
    return machine;
}

/// A virtual machine: one socket per processor, hardly any devices, texts that say nothing.
MachineBuilder VirtualMachine() {
    MachineBuilder machine;
    machine.TableAt(0x7FBE9000);
    machine.Add(Bios("Hypervisor", "0.0.0", "02/06/2015"))
        .Add(System("Nobody in particular", "Standard PC", "Not Specified", 0xA1))
        .Add(Enclosure(0x01, "Not Specified"));
    Add(machine, {4, 4, 0x01, 2000, "virtual"});
    AddMemory(machine, 1, 4096);
    machine.Add(PciFunction{.vendorId = 0x8086, .deviceId = 0x1237, .classCode = 0x060000});
    machine.Add(PciFunction{.device = 3,
                            .vendorId = 0x1AF4,
                            .deviceId = 0x1000,
                            .classCode = 0x020000,
                            .subVendorId = 0x1AF4,
                            .subDeviceId = 1});
    return machine;
}

}  // namespace

std::vector<Machine> OtherMakersServers() {
    return {{"other-makers-server", OtherMakersServer()}, {"virtual-machine", VirtualMachine()}};
}

}  // namespace corpus
