// A global operator new that can be told to fail, over malloc.
// Only for test programs that link it: it replaces the allocation of the whole program.
#pragma once

#include <cstddef>
#include <vector>

namespace support {

/// Lets `allowed` allocations succeed from here on and fails those after them.
void FailAllocationsAfter(size_t allowed);

/// Fails every allocation of exactly one of these sizes from here on.
/// Requires: kMaxFailingSizes sizes at most.
void FailAllocationsOf(const std::vector<size_t>& sizes);
inline constexpr size_t kMaxFailingSizes = 16;

/// The sizes that have failed since then because they were listed, in order; kMaxFailingSizes at
/// most.
std::vector<size_t> FailedSizes();

/// Fails each allocation of more than `size` bytes from here on.
void FailAllocationsAbove(size_t size);

/// Lets every allocation succeed again.
void AllowAllocations();

/// The number of allocations so far, failed ones included.
size_t CountAllocations();

/// The memory that was allocated last.
void* LastAllocation();

/// The size that was asked for `memory`; 0 when it was freed or is none of the latest 64.
size_t SizeOfAllocation(const void* memory);

/// Keeps the next array delete from freeing what it is given.
void WithholdNextArrayDelete();

/// What the withheld array delete was given; null when there was none.
void* WithheldArrayDelete();

/// Tells `observer` of each memory that array delete frees, just before; null ends that.
void ObserveArrayDeletes(void (*observer)(const void* memory));

}  // namespace support
