// The corpus: plausible servers, each a few lines of description.
// Names, serial numbers and UUIDs are invented.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "machine/MachineBuilder.h"

namespace corpus {

struct Machine {
    std::string name;  ///< that of its golden reports: golden/NAME.ini, golden/NAME.properties
    machine::MachineBuilder description;
    bool isSound = true;  ///< its tables are as they should be
};

/// How a test names the machine.
inline void PrintTo(const Machine& machine, std::ostream* stream) {
    *stream << machine.name;
}

/// Every machine; their names differ.
std::vector<Machine> Machines();

// By topic, in the order above.
std::vector<Machine> EarlyServers();
std::vector<Machine> Blades();
std::vector<Machine> LargeServers();
std::vector<Machine> OtherMakersServers();
std::vector<Machine> DamagedServers();

}  // namespace corpus
