// Takes the numbers that tell one machine from another out of what is captured.
// Changes no length and no structure: every other fact of the machine stays.
#pragma once

#include "machine/Bytes.h"
#include "machine/FirmwareTables.h"

namespace machine {

/// Replaces serial numbers, asset tags and UUIDs, and the copies of them in all strings and in the
/// fields of structures of the maker's own. Blanks inactive structures. Of the BIOS area the entry
/// point alone remains; behind the last whole structure nothing does.
void Sanitize(FirmwareTables& tables);

/// Blanks the device serial number of a PCI Express function.
void SanitizeConfiguration(Bytes& configuration);

}  // namespace machine
