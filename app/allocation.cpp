// Allocation for the whole program, so that running out of memory takes no memory.
// The standard library's own non-throwing forms throw and catch an exception inside, which ends
// the process when there is no memory for that. Throwing forms are for the standard library alone.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

// The first small blocks, those of the switch table, lie in the program's own data: most runs end
// before the heap is needed. They are not used again, which a short process does not miss.
alignas(std::max_align_t) char arena[8192];
char* arenaEnd = arena;

void* FromArena(size_t size) {
    constexpr size_t kAlignment = alignof(std::max_align_t);
    const auto room = static_cast<size_t>(arena + sizeof arena - arenaEnd);
    if (size > room - room % kAlignment) {
        return nullptr;
    }
    char* const block = arenaEnd;
    arenaEnd += (size + kAlignment - 1) / kAlignment * kAlignment;
    return block;
}

bool IsInArena(const void* block) {
    const auto offset = reinterpret_cast<uintptr_t>(block) - reinterpret_cast<uintptr_t>(arena);
    return offset < sizeof arena;
}

}  // namespace

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    const size_t bytes = size == 0 ? 1 : size;
    void* const block = FromArena(bytes);
    return block != nullptr ? block : std::malloc(bytes);
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
    if (!IsInArena(memory)) {
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
