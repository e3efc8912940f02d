// Blades: with their chassis' data, without it, and with half of it.
#include "machines/Corpus.h"
#include "machines/Parts.h"

namespace corpus {

namespace {

MachineBuilder Blade(const std::string& product, const std::string& location,
                     const std::string& enclosureSerial) {
    MachineBuilder machine;
    machine.TableAt(0x7F6C5000);
    machine.Add(Bios("QEV", "-[CEE153CUS-1.19]-", "11/30/2011"))
        .Add(System("QEV", product, "BL20011", 0x51))
        .Add(Board("Blade planar", location))
        .Add(Enclosure(0x1C, enclosureSerial));
    Add(machine, {2, 2, 0xB3, 2666, "Northlight N2600"});
    AddMemory(machine, 12, 8192);
    machine.Add(OemStrings({"QEV Diagnostics -[CEYT51BUS]-", "QEV Tesk Controller -[TKOO32D]-"}));
    AddChipset(machine, 0x3403);
    AddCard(machine, 0x0B, 0, 2, Ethernet());
    return machine;
}

MachineBuilder BladeInAChassis() {
    MachineBuilder machine =
        Blade("Cedar 1 -[7730AC1]-", "Bay 03", "-[UUID:0A1B2C3D4E5F60718293A4B5C6D7E8F9]-");
    machine.Add(Structure(3, 0x11).String(0x04, "QEV").Byte(0x05, 0x1D));
    return machine;
}

/// On a bench, without a chassis that could tell it its place.
MachineBuilder BladeWithoutChassis() {
    return Blade("Cedar 1 -[7730AC1]-", "", "BL20011");
}

/// A chassis that knows but the first half of its own UUID.
MachineBuilder BladeWithShortChassisUuid() {
    return Blade("Arlo 2 -[771200X]-", "Slot 14 of 14", "-[UUID:0A1B2C3D]-");
}

}  // namespace

std::vector<Machine> Blades() {
    return {{"blade-in-a-chassis", BladeInAChassis()},
            {"blade-without-chassis", BladeWithoutChassis()},
            {"blade-with-short-chassis-uuid", BladeWithShortChassisUuid()}};
}

}  // namespace corpus
