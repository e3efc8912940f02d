// Memory whose bytes come in pieces, as a device may hand them out, and that has no size.
// Replaces the functions that read and describe an open file: the test decides what they say.
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "smbios/OnMachine.h"

namespace {

size_t g_piece = SIZE_MAX;      ///< the most that one read gives
int g_readsLeft = -1;           ///< reads that succeed before all fail; below 0: all succeed
off_t g_endOfReads = 0;         ///< the end of what was asked for
bool g_isMemoryItself = false;  ///< files look like the device

template <typename Function>
Function* Original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

ssize_t Read(int fd, void* buffer, size_t count, off_t offset) {
    g_endOfReads = std::max(g_endOfReads, offset + static_cast<off_t>(count));
    if (g_readsLeft == 0) {
        errno = EIO;
        return -1;
    }
    g_readsLeft = std::max(g_readsLeft - 1, -1);
    static auto* const original = Original<ssize_t(int, void*, size_t, off_t)>("pread64");
    return original(fd, buffer, std::min(count, g_piece), offset);
}

int Describe(int fd, struct stat* status) {
    static auto* const original = Original<int(int, struct stat*)>("fstat64");
    const int result = original(fd, status);
    if (result == 0 && g_isMemoryItself) {
        status->st_mode = S_IFCHR | 0600;
        status->st_size = 0;
    }
    return result;
}

}  // namespace

// Under all names that the C library's headers give them.
extern "C" ssize_t pread(int fd, void* buffer, size_t count, off_t offset) {
    return Read(fd, buffer, count, offset);
}
extern "C" ssize_t FortifiedPread(int fd, void* buffer, size_t count, off_t offset,
                                  size_t room) asm("__pread64_chk");
ssize_t FortifiedPread(int fd, void* buffer, size_t count, off_t offset, size_t /*room*/) {
    return Read(fd, buffer, count, offset);
}
extern "C" int fstat(int fd, struct stat* status) {
    return Describe(fd, status);
}

namespace {

using machine::MachineBuilder;
using support::OnMachine;

constexpr off_t kEndOfBIOSArea = 0xF0000 + 65535;

void ExpectEnclosureReadInPiecesOf(size_t piece) {
    const MachineBuilder server = MachineBuilder().Add(EnclosureOf(0x17)).EntryPointAt(0x000FFFD0);
    const std::string output = OnMachine(server, [piece] {
        g_piece = piece;
        SERVER_INFORMATION record;
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.GetSystemEnclosureType(0), 0x17);
        EXPECT_EQ(g_endOfReads, kEndOfBIOSArea);
    });
    EXPECT_EQ(output, "");
}

TEST(PiecemealMemory, BIOSAreaIsReadToItsEnd) {
    ExpectEnclosureReadInPiecesOf(1000);
}

TEST(PiecemealMemory, SingleBytesAreReadToItsEnd) {
    ExpectEnclosureReadInPiecesOf(1);
}

TEST(PiecemealMemory, WhatCameBeforeAnErrorIsKept) {
    const std::string output = OnMachine(MachineBuilder().Add(EnclosureOf(0x17)), [] {
        g_piece = 0xA000;
        g_readsLeft = 1;
        SERVER_INFORMATION record;
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.GetSystemEnclosureType(0), 0x17);
    });
    EXPECT_EQ(output, "");
}

TEST(MemoryItself, HasNoEnd) {
    const std::string output = OnMachine(MachineBuilder().Add(EnclosureOf(0x17)), [] {
        g_isMemoryItself = true;
        SERVER_INFORMATION record;
        EXPECT_EQ(record.Run(), 0);
        EXPECT_EQ(record.GetSystemEnclosureType(0), 0x17);
    });
    EXPECT_EQ(output, "");
}

}  // namespace
