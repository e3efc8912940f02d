// Preloaded into a program: lets FAIL_MALLOC_AFTER allocations succeed and fails all later ones.
// Allocates nothing itself.
#include <cerrno>
#include <cstddef>
#include <cstdlib>

// The C library's own entry points, under the names that it keeps for this purpose.
extern "C" void* RealMalloc(size_t size) asm("__libc_malloc");
extern "C" void* RealRealloc(void* memory, size_t size) asm("__libc_realloc");

namespace {

long g_left = -1;  // below 0: not asked yet

bool MayAllocate() {
    if (g_left < 0) {
        const char* const allowed = std::getenv("FAIL_MALLOC_AFTER");
        g_left = allowed == nullptr ? 0 : std::strtol(allowed, nullptr, 10);
    }
    if (g_left == 0) {
        errno = ENOMEM;
        return false;
    }
    --g_left;
    return true;
}

}  // namespace

extern "C" void* malloc(size_t size) {
    return MayAllocate() ? RealMalloc(size) : nullptr;
}

extern "C" void* realloc(void* memory, size_t size) {
    return MayAllocate() ? RealRealloc(memory, size) : nullptr;
}
