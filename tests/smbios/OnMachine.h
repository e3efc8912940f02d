// Reads a machine of the test's own the way the program does, from end to end.
// Runs in a child process: the record is looked at there.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "machine/MachineBuilder.h"
#include "smbios/srvinfo.h"
#include "support/InMachine.h"

/// Expects that Run() succeeds on the machine without a word, then asks the record.
inline void ExpectOn(const machine::MachineBuilder& machine,
                     const std::function<void(const SERVER_INFORMATION&)>& expectations) {
    const std::string output = support::OnMachine(machine, [&expectations] {
        SERVER_INFORMATION record;
        EXPECT_EQ(record.Run(), 0);
        expectations(record);
    });
    EXPECT_EQ(output, "");
}

/// Expects that Run() finds no structure table.
inline void ExpectNoTableOn(const machine::MachineBuilder& machine) {
    const std::string output = support::OnMachine(machine, [] {
        SERVER_INFORMATION record;
        EXPECT_EQ(record.Run(), -3);
    });
    EXPECT_EQ(output,
              "Catastrophic ParseTables() failure -3 \n"
              "SERVER_INFORMATION::ParseTables()\n");
}

/// An enclosure that tests tell by its type; its string keeps its end where it belongs.
inline machine::Structure EnclosureOf(uint8_t type) {
    return machine::Structure(3, 0x0D).String(0x04, "QEV").Byte(0x05, type);
}

/// BIOS information that names the BIOS.
inline machine::Structure BIOS() {
    return machine::Structure(0, 0x18)
        .String(0x04, "QEV")
        .String(0x05, "-[AB1234CUS-1.07]-")
        .String(0x08, "03/18/2010");
}
