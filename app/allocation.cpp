// Allocation for the whole program, so that running out of memory takes no memory.
// The standard library's own non-throwing forms throw and catch an exception inside, which ends
// the process when there is no memory for that. Throwing forms are for the standard library alone.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

// For one thread alone. Small blocks are cut from chunks, which costs a few instructions where the
// heap takes hundreds. They are not used again: a short process does not miss them, and chunks that
// double in size are so few that it is soon told whether a block lies in one.
struct Chunk {
    char* begin;
    size_t size;

    bool Holds(const void* block) const {
        return reinterpret_cast<uintptr_t>(block) - reinterpret_cast<uintptr_t>(begin) < size;
    }
};

constexpr size_t kAlignment = alignof(std::max_align_t);
constexpr size_t kLargestSmallBlock = 512;
constexpr size_t kFirstChunk = 8192;
constexpr size_t kSecondChunk = size_t{1} << 20;  // pages that are not written take no memory
constexpr size_t kMostChunks = 64;                // the last one would be larger than any memory

// In the program's own data: most runs need no further chunk.
alignas(kAlignment) char firstChunk[kFirstChunk];
Chunk chunks[kMostChunks] = {{firstChunk, kFirstChunk}};
Chunk* newest = chunks;
char* next = firstChunk;  // what is left of the newest chunk
size_t room = kFirstChunk;

bool AddChunk() {
    const size_t size = std::max(2 * newest->size, kSecondChunk);
    auto* const begin = static_cast<char*>(std::malloc(size));
    if (begin == nullptr) {
        return false;
    }
    *++newest = {begin, size};
    next = begin;
    room = size;
    return true;
}

// Not in line: blocks that fit, nearly all, then need no registers saved.
[[gnu::noinline]] void* AllocateElsewhere(size_t bytes) {
    if (bytes <= kLargestSmallBlock && AddChunk()) {
        return operator new(bytes, std::nothrow);
    }
    return std::malloc(bytes);
}

bool IsInChunk(const void* block) {
    const Chunk* chunk = newest;
    while (!chunk->Holds(block)) {
        if (chunk == chunks) {
            return false;
        }
        --chunk;
    }
    return true;
}

}  // namespace

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    const size_t bytes = std::max<size_t>(size, 1);
    const size_t taken = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (bytes <= kLargestSmallBlock && taken <= room) {
        room -= taken;
        return std::exchange(next, next + taken);
    }
    return AllocateElsewhere(bytes);
}

void* operator new[](size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void* operator new(size_t size) {
    if (void* memory = operator new(size, std::nothrow)) {
        return memory;
    }
    std::abort();
}

void* operator new[](size_t size) {
    return operator new(size);
}

void operator delete(void* memory) noexcept {
    if (!IsInChunk(memory)) {
        std::free(memory);
    }
}

void operator delete[](void* memory) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, size_t /*size*/) noexcept {
    operator delete(memory);
}
