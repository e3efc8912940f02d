// The program's allocation: small blocks out of chunks, the others from the heap, null at the end.
// Its own test program, which lives on what it tests.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

namespace {

constexpr std::ptrdiff_t kAlignment = 16;

char* New(size_t size) {
    return static_cast<char*>(operator new(size, std::nothrow));
}

/// How far behind a block of `size` bytes the next one begins, in a chunk that has room for both.
std::ptrdiff_t DistanceBehind(size_t size) {
    constexpr std::ptrdiff_t kFar = 1024;
    for (;;) {
        const char* const block = New(size);
        const std::ptrdiff_t distance = New(1) - block;
        if (distance > 0 && distance < kFar) {
            return distance;
        }
    }
}

TEST(Allocation, SmallBlocksLieSideBySideAndAligned) {
    EXPECT_EQ(DistanceBehind(0), 16);
    EXPECT_EQ(DistanceBehind(1), 16);
    EXPECT_EQ(DistanceBehind(16), 16);
    EXPECT_EQ(DistanceBehind(17), 32);
    EXPECT_EQ(DistanceBehind(512), 512);
    EXPECT_EQ(reinterpret_cast<size_t>(New(1)) % kAlignment, 0U);
}

TEST(Allocation, LargerBlocksLieElsewhere) {
    const std::ptrdiff_t room = DistanceBehind(512);  // so much is left where the next ones lie
    ASSERT_EQ(room, 512);
    const char* const before = New(1);
    char* const large = New(513);
    EXPECT_EQ(New(1) - before, kAlignment);
    operator delete(large);
}

/// How many blocks each of the next chunks holds, the rest of the one in use left out.
std::vector<int> BlocksOfNextChunks(size_t chunks) {
    std::vector<int> runs = {1};
    runs.reserve(chunks + 2);
    for (const char* last = New(1); runs.size() < chunks + 2;) {
        const char* const next = New(1);
        if (next - last == kAlignment) {
            ++runs.back();
        } else {
            runs.push_back(1);
        }
        last = next;
    }
    return {runs.begin() + 1, runs.end() - 1};
}

TEST(Allocation, ChunksDouble) {
    const std::vector<int> runs = BlocksOfNextChunks(3);
    EXPECT_GE(runs[0], 65'536);
    EXPECT_EQ(runs[1], 2 * runs[0]);
    EXPECT_EQ(runs[2], 2 * runs[1]);
}

TEST(Allocation, SmallBlocksOfAllChunksMayBeFreedAndAreNotUsedAgain) {
    std::vector<char*> blocks;
    for (int i = 0; i < 500'000; ++i) {
        blocks.push_back(New(16));
    }
    for (char* const block : blocks) {
        operator delete(block);
    }
    EXPECT_EQ(std::count(blocks.begin(), blocks.end(), New(16)), 0);
}

TEST(Allocation, LargerBlocksGoBackToTheHeap) {
    constexpr size_t kSize = 100'000;
    const size_t before = mallinfo2().uordblks;
    char* const block = New(kSize);
    EXPECT_GE(mallinfo2().uordblks, before + kSize);
    operator delete(block);
    EXPECT_EQ(mallinfo2().uordblks, before);
}

/// Takes blocks until there are none, in an address space of so many bytes; ends with 0 when most
/// of it was had.
[[noreturn]] void TakeAll(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
    constexpr size_t kBlock = 512;
    size_t taken = 0;
    for (char* block = New(kBlock); block != nullptr; block = New(kBlock)) {
        std::memset(block, 1, kBlock);
        taken += kBlock;
    }
    std::_Exit(taken > bytes / 2 ? 0 : 1);
}

TEST(Allocation, WithoutRoomForAChunkSingleBlocksAreHadUntilNullComes) {
    constexpr rlim_t kBytes = 64 << 20;
    EXPECT_EXIT(TakeAll(kBytes), testing::ExitedWithCode(0), "");
}

TEST(Allocation, LargestSmallBlocksTakeFurtherChunks) {
    constexpr std::ptrdiff_t kLargest = 512;
    const char* last = New(kLargest);
    const char* next = New(kLargest);
    while (next - last == kLargest) {
        last = next;
        next = New(kLargest);
    }
    // The chunk is full; the next one has room for more than the block that did not fit.
    EXPECT_EQ(New(kLargest) - next, kLargest);
}

}  // namespace
