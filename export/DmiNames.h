// The names of enclosure types and processor families. DSP0134 7.4.1 and 7.5.2.
#pragma once

#include <cstdint>

namespace report {

/// "Blade"; null for a type that the standard does not name.
const char* EnclosureName(uint32_t type);

/// "Xeon"; null for a family that the standard does not name, or no x86 processor has.
const char* ProcessorFamilyName(int family);

}  // namespace report
