// What the record does when memory cannot be had.
// Replaces the global allocation: the test decides which size is too much.
#include <cstdint>
#include <cstdlib>
#include <new>

#include "smbios/OnMachine.h"

namespace {

size_t g_refusedSize = SIZE_MAX;  ///< this size and larger ones are refused

void* Allocate(size_t size) {
    return size < g_refusedSize ? std::malloc(size == 0 ? 1 : size) : nullptr;
}

void* AllocateOrThrow(size_t size) {
    if (void* memory = Allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

/// Refuses allocations of `size` bytes and more for as long as it lives.
class Refusal {
  public:
    explicit Refusal(size_t size) { g_refusedSize = size; }
    Refusal(const Refusal&) = delete;
    Refusal& operator=(const Refusal&) = delete;
    ~Refusal() { g_refusedSize = SIZE_MAX; }
};

}  // namespace

void* operator new(size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    std::free(memory);
}

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;
using support::OnMachine;

constexpr size_t kAreaSize = 65535;

TEST(OutOfMemory, MakeBufferReturnsNull) {
    SERVER_INFORMATION record;
    const Refusal refusal(kAreaSize);
    EXPECT_EQ(record.MakeBuffer(), nullptr);
}

TEST(OutOfMemory, MakeBufferNeedsNoMoreThanTheArea) {
    SERVER_INFORMATION record;
    const Refusal refusal(kAreaSize + 1);
    EXPECT_NE(record.MakeBuffer(), nullptr);
}

TEST(OutOfMemory, LoadBIOSBufferReturnsFalseWithoutAMessage) {
    const std::string output = OnMachine(MachineBuilder().Add(EnclosureOf(0x17)), [] {
        SERVER_INFORMATION record;
        const Refusal refusal(kAreaSize);
        EXPECT_FALSE(record.LoadBIOSBuffer());
    });
    EXPECT_EQ(output, "");
}

TEST(OutOfMemory, MissingDeviceIsStillReported) {
    const std::string output = OnMachine(MachineBuilder(), [] {
        support::CoverWithEmptyDirectory("/dev");
        SERVER_INFORMATION record;
        const Refusal refusal(kAreaSize);
        EXPECT_FALSE(record.LoadBIOSBuffer());
    });
    EXPECT_EQ(output, "Critical error in srvinfo: Could not open /dev/mem.\n");
}

TEST(OutOfMemory, RunWithoutTheAreaGivesMinusTwo) {
    const std::string output = OnMachine(MachineBuilder().Add(EnclosureOf(0x17)), [] {
        SERVER_INFORMATION record;
        const Refusal refusal(kAreaSize);
        EXPECT_EQ(record.Run(), -2);
    });
    EXPECT_EQ(output,
              "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
              " SERVER_INFORMATION::LoadBIOSBuffer()\n");
}

TEST(OutOfMemory, TableThatCannotBeCopiedIsNone) {
    const std::string output = OnMachine(MachineBuilder().AddRaw(Bytes(65535, 'A')), [] {
        SERVER_INFORMATION record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        const Refusal refusal(kAreaSize);
        EXPECT_EQ(record.FindHeader(), nullptr);
        EXPECT_FALSE(record.ParseTables());
    });
    EXPECT_EQ(output, "");
}

constexpr char kListThatCannotGrow[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n";

/// What a run says and gives after a structure for whose list there was no memory.
std::string OutputAfter(unsigned char* (SERVER_INFORMATION::*decode)(unsigned char*), size_t room) {
    return OnMachine(MachineBuilder().Add(EnclosureOf(0x17)), [decode, room] {
        unsigned char structure[600] = {3, 0x18};
        structure[0x18] = 0x41;
        SERVER_INFORMATION record;
        {
            const Refusal refusal(room);
            (record.*decode)(structure);
        }
        EXPECT_EQ(record.GetSystemEnclosureType(0), -1);
        EXPECT_EQ(record.GetProcessorFamily(0), 0);
        EXPECT_EQ(record.Run(), -3);
    });
}

TEST(OutOfMemory, EnclosureThatCannotBeKeptFailsTheRun) {
    EXPECT_EQ(OutputAfter(&SERVER_INFORMATION::FindTable3, 64), kListThatCannotGrow);
}

TEST(OutOfMemory, ProcessorThatCannotBeKeptFailsTheRun) {
    EXPECT_EQ(OutputAfter(&SERVER_INFORMATION::FindTable4, 32), kListThatCannotGrow);
}

TEST(OutOfMemory, ProcessorsAlreadyKeptStayWhenNoMoreCanBe) {
    // A processor whose length leads back to the string in front of it, and so to itself. 16,384
    // fill a list; the next one needs another 65,536 bytes.
    Bytes table = {'a', 0, 0, 4, 0xFD};
    table.resize(64);
    table[3 + 0x06] = 0xB3;
    table[3 + 0x18] = 0x41;
    const std::string output = OnMachine(MachineBuilder().AddRaw(table).AnnounceCount(20000), [] {
        SERVER_INFORMATION record;
        const Refusal refusal(65536);
        EXPECT_EQ(record.Run(), -3);
        EXPECT_EQ(record.GetActiveProcessors(), 19999);
        EXPECT_EQ(record.GetProcessorFamily(16383), 0xB3);
        EXPECT_EQ(record.GetProcessorFamily(16384), 0);
    });
    EXPECT_EQ(output, kListThatCannotGrow);
}

TEST(OutOfMemory, ChassisUUIDIsRefused) {
    SERVER_INFORMATION record;
    const Refusal refusal(33);
    EXPECT_FALSE(record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF"));
    EXPECT_EQ(record.GetChassisUUID(), nullptr);
}

TEST(OutOfMemory, ChassisUUIDNeeds33Bytes) {
    SERVER_INFORMATION record;
    const Refusal refusal(34);
    EXPECT_TRUE(record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF"));
}

/// System information with a UUID, decoded with less than `room` bytes at a time.
std::string UUIDWithin(size_t room) {
    Bytes system = Structure(1, 0x1B).Data(0x08, Bytes(16, 0x5A)).Encode(0);
    system.resize(1024);
    SERVER_INFORMATION record;
    const Refusal refusal(room);
    record.FindTable1(system.data());
    const char* const uuid = record.GetUUID();
    return uuid == nullptr ? "none" : uuid;
}

TEST(OutOfMemory, SystemUUIDIsLeftOut) {
    EXPECT_EQ(UUIDWithin(33), "none");
}

TEST(OutOfMemory, SystemUUIDNeeds33Bytes) {
    EXPECT_EQ(UUIDWithin(34), "5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A5A");
}

}  // namespace
