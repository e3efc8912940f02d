// A global operator new that can be told to fail, over malloc.
// Only for test programs that link it: it replaces the allocation of the whole program.
#pragma once

#include <cstddef>

namespace support {

/// Lets `allowed` allocations succeed from here on and fails those after them.
void FailAllocationsAfter(size_t allowed);

/// Lets every allocation succeed again.
void AllowAllocations();

/// The number of allocations so far, failed ones included.
size_t CountAllocations();

/// The memory that was allocated last.
void* LastAllocation();

/// Keeps the next array delete from freeing what it is given.
void WithholdNextArrayDelete();

/// What the withheld array delete was given; null when there was none.
void* WithheldArrayDelete();

}  // namespace support
