// The sample server: a complete blade with every kind of structure that the program decodes.
#pragma once

#include "machine/MachineBuilder.h"

namespace machine {

/// An "Arlo 2" with two enclosures, four processor sockets, six memory devices and twenty PCI
/// functions on five buses.
MachineBuilder Arlo2();

}  // namespace machine
