// Firmware with each kind of damage that is known: the program must end, and say what it can.
#include "machines/Corpus.h"
#include "machines/Parts.h"

namespace corpus {

namespace {

MachineBuilder Sound() {
    MachineBuilder machine;
    machine.Add(Bios("QEV", "-[DME101AUS-1.01]-", "07/04/2010"))
        .Add(System("QEV", "Arlo 2 -[7712DMG]-", "DM00001", 0xC1))
        .Add(Enclosure(0x17, "DM00001"));
    Add(machine, {2, 2, 0xB3, 2400, "Northlight"});
    AddMemory(machine, 2, 4096);
    AddChipset(machine, 0x3406);
    return machine;
}

/// Nothing announces the end but the length, which is right.
MachineBuilder NoEndOfTable() {
    return Sound().AddRaw({}).AnnounceCount(200);
}

MachineBuilder CountTooSmall() {
    return Sound().AnnounceCount(3);
}

MachineBuilder CountOfZero() {
    return Sound().AnnounceCount(0);
}

/// The table breaks off in the strings of the first processor.
MachineBuilder LengthTooSmall() {
    return Sound().AnnounceLength(200);
}

/// Behind the table there is nothing but zeros.
MachineBuilder LengthTooLarge() {
    return Sound().AnnounceLength(5000);
}

/// Neither checksum is right.
MachineBuilder WrongChecksums() {
    return Sound().Poke(0xF59F4, Bytes{0xA5}).Poke(0xF5A05, Bytes{0x5A});
}

/// "_DMI_" at the very start of the BIOS area, where no fields can precede it.
MachineBuilder FalseAnchor() {
    return Sound().Poke(0xF0000, "_DMI_");
}

/// A table that begins with its end.
MachineBuilder EndOfTableFirst() {
    MachineBuilder machine;
    machine.Add(Structure(127, 4));
    machine.Add(Bios("QEV", "-[DME102AUS-1.02]-", "07/05/2010"));
    machine.Add(System("QEV", "Arlo 2 -[7712DMG]-", "DM00002", 0xC2));
    return machine;
}

/// Fields that name strings which are not there.
MachineBuilder MissingStrings() {
    MachineBuilder machine;
    machine.Add(Structure(0, 0x18).Byte(0x04, 1).Byte(0x05, 2).Byte(0x08, 3).Text("QEV"));
    machine.Add(Structure(1, 0x1B).Byte(0x04, 1).Byte(0x05, 2).Byte(0x07, 4));
    machine.Add(Structure(3, 0x11).Byte(0x05, 0x17).Byte(0x07, 5).Text("QEV"));
    AddMemory(machine, 1, 2048);
    return machine;
}

/// A processor whose length of 200 leads backwards when it is read with a sign.
MachineBuilder LengthThatLeadsBackwards() {
    MachineBuilder machine = Sound();
    machine.Add(Structure(4, 200).String(0x04, "CPU 3").Byte(0x18, 0x41).Word(0x16, 1000));
    AddMemory(machine, 1, 1024);
    return machine;
}

/// Memory of unknown size, texts longer than the record has room for, brackets that stay open.
MachineBuilder StrangeValues() {
    const std::string endless(300, 'Z');
    MachineBuilder machine;
    machine.Add(Bios("QEV", "-[OPEN", "today"))
        .Add(System("QEV", endless, endless, 0))
        .Add(Board(endless, "Bay \xB9"))
        .Add(Enclosure(0xFF, "-[" + endless + "]-"));
    Add(machine, {3, 3, 0xFF, 0xFFFF, endless});
    AddMemory(machine, 2, 0xFFFF);
    machine.Add(OemStrings({"Diagnostics -[OPEN", "Tesk Controller", "Koru Adapter -[" + endless}));
    machine.Add(PciFunction{.bus = 0xFF,
                            .device = 0x1F,
                            .function = 7,
                            .vendorId = 0xFFFF,
                            .deviceId = 0xFFFF,
                            .classCode = 0xFFFFFF,
                            .revision = 0xFF,
                            .headerType = 0xFF,
                            .subVendorId = 0xFFFF,
                            .subDeviceId = 0xFFFF});
    machine.Add(PciFunction{.bus = 1, .device = 2, .vendorId = 0x1234, .configurationSize = 2});
    return machine;
}

/// A structure that gives its own length as 0, between sound ones.
MachineBuilder LengthOfNothing() {
    MachineBuilder machine;
    machine.Add(Bios("QEV", "-[DMF103AUS-1.03]-", "07/06/2010"))
        .Add(System("QEV", "Arlo 2 -[7712DMG]-", "DM00003", 0xC3))
        .AddRaw({0xDD, 0x00, 0x10, 0x00})
        .Add(Enclosure(0x17, "DM00003"));
    AddMemory(machine, 2, 1024);
    return machine.Add(Structure(127, 4));
}

/// Structures that end before the fields that their types have: of the system the serial number, of
/// the processor its speed, of the memory its size.
MachineBuilder ShortStructures() {
    MachineBuilder machine;
    machine.Add(Bios("QEV", "-[DMG104AUS-1.04]-", "07/07/2010"));
    machine.Add(Structure(1, 0x06).String(0x04, "QEV").String(0x05, "Arlo 2 -[7712DMG]-"));
    machine.Add(Structure(3, 0x05).String(0x04, "QEV"));
    machine.Add(Structure(4, 0x10).String(0x04, "CPU 1").Byte(0x05, 3).Byte(0x06, 0xB3));
    machine.Add(Structure(17, 0x0A));
    return machine;
}

/// The strings of the last structure never end.
MachineBuilder EndlessStrings() {
    Bytes strings = Structure(11, 5).Byte(0x04, 2).Text("Diagnostics -[DMH07AUS]-").Encode(0x30);
    strings.pop_back();
    for (const char c : std::string("Koru Adapter -[DMHKR1]-")) {
        strings.push_back(static_cast<uint8_t>(c));
    }
    return Sound().AddRaw(strings);
}

/// Each structure has the handle of the first.
MachineBuilder OneHandleForAll() {
    MachineBuilder machine;
    for (const Structure& structure :
         {Bios("QEV", "-[DMI105AUS-1.05]-", "07/08/2010"),
          System("QEV", "Arlo 2 -[7712DMG]-", "DM00005", 0xC5), Enclosure(0x17, "DM00005"),
          Enclosure(0x17, "DM00006"), OemStrings({"Tesk Controller -[DMITK2]-"}),
          Structure(127, 4)}) {
        machine.AddRaw(structure.Encode(0x0000));
    }
    return machine.AnnounceCount(6);
}

/// Bytes in the strings that a terminal would obey.
MachineBuilder ControlBytes() {
    MachineBuilder machine;
    machine.Add(Bios("QEV\x1B[2J", "-[DMJ106A\x07US-1.06]-", "07/09\r/2010"))
        .Add(System("QEV\x7F", "Arlo\t2 -[7712\x01MG]-", "DM\n00007", 0xC7))
        .Add(Board("Planar", "Bay\x1B 07"))
        .Add(Enclosure(0x17, "-[UUID:\x02\x03]-"));
    return machine;
}

/// In the last paragraph of the BIOS area the fields of an entry point lie outside it.
MachineBuilder EntryPointAtTheVeryEnd() {
    return Sound().EntryPointAt(0xFFFF0);
}

/// Nothing is announced but the number of structures.
MachineBuilder LengthOfZero() {
    return Sound().AnnounceLength(0);
}

/// The largest length there is; behind the table there are zeros.
MachineBuilder LargestLength() {
    return Sound().AnnounceLength(0xFFFF);
}

/// No word of SMBIOS at all.
MachineBuilder NoTables() {
    return Sound().NoEntryPoint();
}

}  // namespace

std::vector<Machine> DamagedServers() {
    std::vector<Machine> machines = {
        {"damaged-no-end-of-table", NoEndOfTable()},
        {"damaged-count-too-small", CountTooSmall()},
        {"damaged-count-of-zero", CountOfZero()},
        {"damaged-length-too-small", LengthTooSmall()},
        {"damaged-length-too-large", LengthTooLarge()},
        {"damaged-wrong-checksums", WrongChecksums()},
        {"damaged-false-anchor", FalseAnchor()},
        {"damaged-end-of-table-first", EndOfTableFirst()},
        {"damaged-missing-strings", MissingStrings()},
        {"damaged-length-that-leads-backwards", LengthThatLeadsBackwards()},
        {"damaged-strange-values", StrangeValues()},
        {"damaged-length-of-nothing", LengthOfNothing()},
        {"damaged-short-structures", ShortStructures()},
        {"damaged-endless-strings", EndlessStrings()},
        {"damaged-one-handle-for-all", OneHandleForAll()},
        {"damaged-control-bytes", ControlBytes()},
        {"damaged-entry-point-at-the-very-end", EntryPointAtTheVeryEnd()},
        {"damaged-length-of-zero", LengthOfZero()},
        {"damaged-largest-length", LargestLength()},
        {"damaged-no-tables", NoTables()},
    };
    for (Machine& machine : machines) {
        machine.isSound = false;
    }
    return machines;
}

}  // namespace corpus
