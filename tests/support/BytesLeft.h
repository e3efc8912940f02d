// What an operation leaves behind in memory each time, by the C library's own account.
// Sees nothing under the sanitizers, whose allocation is another; they find leaks themselves.
#pragma once

#include <malloc.h>

#include <cstddef>

namespace support {

/// The bytes that are still allocated after `work` was done, for each time.
template <typename Work>
size_t BytesLeftBy(const Work& work) {
    constexpr size_t kTimes = 64;
    // The allocator keeps a few freed pieces of each size; after these it has them.
    for (size_t i = 0; i < kTimes; ++i) {
        work();
    }
    const size_t before = mallinfo2().uordblks;
    for (size_t i = 0; i < kTimes; ++i) {
        work();
    }
    return (mallinfo2().uordblks - before) / kTimes;
}

}  // namespace support
