// Preloaded into a program: lets FAIL_MALLOC_AFTER allocations succeed and fails all later ones.
// Allocates nothing itself.
#include <cerrno>
#include <cstddef>
#include <cstdlib>

// The C library's own entry points, under the names that it keeps for this purpose.
extern "C" void* __libc_malloc(size_t size);                 // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void* memory, size_t size);  // NOLINT(bugprone-reserved-identifier)

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
    return MayAllocate() ? __libc_malloc(size) : nullptr;
}

extern "C" void* realloc(void* memory, size_t size) {
    return MayAllocate() ? __libc_realloc(memory, size) : nullptr;
}
