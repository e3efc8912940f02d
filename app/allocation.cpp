// Allocation for the whole program, so that running out of memory takes no memory.
// The standard library's own non-throwing forms throw and catch an exception inside, which ends
// the process when there is no memory for that. Throwing forms are for the standard library alone.
#include <cstdlib>
#include <new>

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
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
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}
