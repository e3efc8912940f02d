// Replaces the global operator new and delete.
#include "support/Allocation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

struct Block {
    const void* memory;
    size_t size;
};

/// The latest allocations that are not freed yet.
std::array<Block, 64> g_latest = {};
size_t g_oldest = 0;

void Remember(const void* memory, size_t size) {
    g_latest[g_oldest] = {memory, size};
    g_oldest = (g_oldest + 1) % g_latest.size();
}

void Free(void* memory) {
    for (Block& block : g_latest) {
        block = block.memory == memory ? Block{} : block;
    }
    std::free(memory);
}

size_t g_allowed = SIZE_MAX;
size_t g_largest = SIZE_MAX;
size_t g_count = 0;
void* g_lastAllocation = nullptr;
bool g_withholdsDelete = false;
void* g_withheld = nullptr;
void (*g_observer)(const void*) = nullptr;

/// Some sizes, kept without any allocation.
struct SizeList {
    std::array<size_t, support::kMaxFailingSizes> sizes = {};
    size_t count = 0;

    bool Holds(size_t size) const {
        const auto* end = sizes.data() + count;
        return std::find(sizes.data(), end, size) != end;
    }
    void Append(size_t size) {
        if (count < sizes.size()) {
            sizes[count] = size;
            ++count;
        }
    }
};
SizeList g_failingSizes;
SizeList g_failedSizes;

void* Allocate(size_t size) {
    ++g_count;
    if (g_allowed == 0 || size > g_largest) {
        return nullptr;
    }
    if (g_failingSizes.Holds(size)) {
        g_failedSizes.Append(size);
        return nullptr;
    }
    if (g_allowed != SIZE_MAX) {
        --g_allowed;
    }
    g_lastAllocation = std::malloc(size == 0 ? 1 : size);
    Remember(g_lastAllocation, size);
    return g_lastAllocation;
}

void* AllocateOrThrow(size_t size) {
    void* memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void FreeArray(void* memory) {
    if (g_observer != nullptr) {
        g_observer(memory);
    }
    if (g_withholdsDelete) {
        g_withholdsDelete = false;
        g_withheld = memory;
    } else {
        Free(memory);
    }
}

}  // namespace

namespace support {

void FailAllocationsAfter(size_t allowed) {
    g_allowed = allowed;
}

void FailAllocationsOf(const std::vector<size_t>& sizes) {
    g_failedSizes = {};
    g_failingSizes = {};
    for (const size_t size : sizes) {
        g_failingSizes.Append(size);
    }
}

std::vector<size_t> FailedSizes() {
    return {g_failedSizes.sizes.data(), g_failedSizes.sizes.data() + g_failedSizes.count};
}

void FailAllocationsAbove(size_t size) {
    g_largest = size;
}

void AllowAllocations() {
    g_allowed = SIZE_MAX;
    g_failingSizes = {};
    g_largest = SIZE_MAX;
}

size_t CountAllocations() {
    return g_count;
}

void* LastAllocation() {
    return g_lastAllocation;
}

size_t SizeOfAllocation(const void* memory) {
    for (const Block& block : g_latest) {
        if (block.memory == memory) {
            return block.size;
        }
    }
    return 0;
}

void WithholdNextArrayDelete() {
    g_withheld = nullptr;
    g_withholdsDelete = true;
}

void* WithheldArrayDelete() {
    return g_withheld;
}

void ObserveArrayDeletes(void (*observer)(const void* memory)) {
    g_observer = observer;
}

}  // namespace support

void* operator new(size_t size) {
    return AllocateOrThrow(size);
}

void* operator new[](size_t size) {
    return AllocateOrThrow(size);
}

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    Free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    Free(memory);
}

void operator delete[](void* memory) noexcept {
    FreeArray(memory);
}

void operator delete[](void* memory, size_t /*size*/) noexcept {
    FreeArray(memory);
}
