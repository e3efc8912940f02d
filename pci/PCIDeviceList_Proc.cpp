// Lists the PCI functions under /proc/bus/pci and sorts them in linear time.
// Reads each configuration file once; its size may be any, and its name need not be an address.
#include "pci/PCIDeviceList_Proc.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr char kRoot[] = "/proc/bus/pci";

constexpr int kExitUnreadable = 1;
constexpr int kExitOutOfMemory = 2;

// What a PCI address can hold.
constexpr size_t kBuses = 256;
constexpr size_t kDevices = 32;
constexpr size_t kFunctions = 8;

/// The names in a directory, as the kernel hands them out: opendir() would take a block of the heap
/// and a further system call for each bus.
class DirectoryNames {
  public:
    /// Opens a directory by its name in `parent`, or by a whole path.
    DirectoryNames(int parent, const char* name)
        : m_file(openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
    DirectoryNames(const DirectoryNames&) = delete;
    DirectoryNames& operator=(const DirectoryNames&) = delete;
    ~DirectoryNames() {
        if (m_file >= 0) {
            close(m_file);
        }
    }

    int File() const { return m_file; }

    /// The next name but for "." and "..", which stays until the next call; null behind the last
    /// one.
    const char* Next() {
        while (m_next != m_end || Refill()) {
            const auto* const entry = reinterpret_cast<const dirent64*>(m_next);
            m_next += entry->d_reclen;
            const char* const name = entry->d_name;
            if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
                return name;
            }
        }
        return nullptr;
    }
    /// Whether the directory could be opened and what Next() asked for could be read.
    bool IsReadable() const { return m_isReadable; }

  private:
    bool Refill() {
        const ssize_t size = getdents64(m_file, m_entries.data(), m_entries.size());
        m_next = m_entries.data();
        m_end = m_next + std::max<ssize_t>(size, 0);
        m_isReadable = size >= 0 || errno == ENOENT;  // removed since: counts as empty
        return size > 0;
    }

    int m_file;
    bool m_isReadable = m_file >= 0;
    const char* m_next = nullptr;
    const char* m_end = nullptr;
    alignas(dirent64) std::array<char, 8192> m_entries;  // all of a bus at once: 256 functions
};

constexpr uint8_t kHexadecimal = 16;

/// The value of each character as a hexadecimal digit; kHexadecimal for those that are none.
constexpr auto kDigitValues = [] {
    std::array<uint8_t, 256> values = {};
    values.fill(kHexadecimal);
    for (uint8_t digit = 0; digit < kHexadecimal; ++digit) {
        values[static_cast<uint8_t>("0123456789abcdef"[digit])] = digit;
        values[static_cast<uint8_t>("0123456789ABCDEF"[digit])] = digit;
    }
    return values;
}();

uint32_t DigitValue(char c) {
    return kDigitValues[static_cast<uint8_t>(c)];
}

/// The number that the hexadecimal digits at the start of `text` give: 0 without any, 0xFFFF when
/// 16 bits do not hold it. Leaves `text` behind those digits.
uint16_t TakeHexNumber(const char*& text) {
    uint32_t number = 0;
    const char* next = text;
    for (uint32_t digit = DigitValue(*next); digit < kHexadecimal; digit = DigitValue(*++next)) {
        number =
            std::min<uint32_t>(kHexadecimal * number + digit, std::numeric_limits<uint16_t>::max());
    }
    text = next;
    return static_cast<uint16_t>(number);
}

/// The start of a function's configuration space, which identifies it: the same registers for
/// every header type. PCI Local Bus standard, 6.1.
class ConfigurationHeader {
  public:
    /// Reads the whole file in one go, as the kernel gives it: a file that is longer than memory
    /// ends the process with status 2. Bytes that it does not have are 0.
    explicit ConfigurationHeader(int file) {
        const off_t size = lseek(file, 0, SEEK_END);
        if (size > off_t{kLongestSpace}) {
            ReadLongFile(file, size);
        } else {
            ZeroBehind(size > 0 ? pread(file, m_bytes.data(), static_cast<size_t>(size), 0) : 0);
        }
    }

    void FillIn(PCIDevice& device) const {
        constexpr size_t kVendorID = 0x00;
        constexpr size_t kDeviceID = 0x02;
        constexpr size_t kRevision = 0x08;
        constexpr size_t kClassCode = 0x09;  // three bytes: interface, sub-class, base class
        constexpr size_t kHeaderType = 0x0E;
        constexpr size_t kSubVendorID = 0x2C;
        constexpr size_t kSubDeviceID = 0x2E;

        device.m_wVendorID = Word(kVendorID);
        device.m_wDeviceID = Word(kDeviceID);
        device.m_wSubVendorID = Word(kSubVendorID);
        device.m_wSubDeviceID = Word(kSubDeviceID);
        device.m_wRevision = m_bytes[kRevision];
        device.m_dwClassCode = Word(kClassCode) | uint32_t{m_bytes[kClassCode + 2]} << 16;
        device.m_wHeaderType = m_bytes[kHeaderType];
    }

  private:
    static constexpr size_t kLongestSpace = 4096;  // PCI Express Base standard, 7.2
    static constexpr ssize_t kUsedSize = 0x30;     // up to the last register that is looked at

    void ReadLongFile(int file, off_t size) {
        // The size of a file may be more than an address space is wide.
        const auto whole = static_cast<size_t>(size);
        const std::unique_ptr<uint8_t[]> bytes(
            std::cmp_equal(whole, size) ? new (std::nothrow) uint8_t[whole] : nullptr);
        if (bytes == nullptr) {
            std::exit(kExitOutOfMemory);
        }
        const ssize_t count = pread(file, bytes.get(), whole, 0);
        std::copy_n(bytes.get(), std::clamp<ssize_t>(count, 0, kUsedSize), m_bytes.begin());
        ZeroBehind(count);
    }

    /// Zeroes what the header lacks after a read of `count` bytes, or one that failed.
    void ZeroBehind(ssize_t count) {
        if (count < kUsedSize) {
            const auto header = m_bytes.begin();
            std::fill(header + std::max<ssize_t>(count, 0), header + kUsedSize, uint8_t{0});
        }
    }
    uint16_t Word(size_t offset) const {
        return static_cast<uint16_t>(m_bytes[offset] | m_bytes[offset + 1] << 8);
    }

    std::array<uint8_t, kLongestSpace> m_bytes;  // without values: the first kUsedSize are read
};

/// Sorts a list by a number that each node has, and keeps the order of equal ones; links it
/// backwards too. Returns the new first node. Requires: every node's number is below `Buckets`.
template <size_t Buckets, size_t (*Number)(const PCIDevice&)>
PCIDeviceItem* StableSortBy(PCIDeviceItem* head) {
    struct Queue {
        PCIDeviceItem* first = nullptr;
        PCIDeviceItem* last = nullptr;
    };
    std::array<Queue, Buckets> queues;
    for (PCIDeviceItem* item = head; item != nullptr; item = item->m_pNext) {
        Queue& queue = queues[Number(*item)];
        (queue.first == nullptr ? queue.first : queue.last->m_pNext) = item;
        item->m_pPrev = queue.last;
        queue.last = item;
    }
    PCIDeviceItem* next = nullptr;
    for (auto queue = queues.rbegin(); queue != queues.rend(); ++queue) {
        if (queue->first != nullptr) {
            queue->last->m_pNext = next;
            if (next != nullptr) {
                next->m_pPrev = queue->last;
            }
            next = queue->first;
        }
    }
    return next;
}

size_t BusNumber(const PCIDevice& device) {
    return device.m_wBus;
}

size_t PlaceOnBus(const PCIDevice& device) {
    return kFunctions * device.m_wDevice + device.m_wFunction;
}

bool IsInRange(const PCIDevice& device) {
    return device.m_wBus < kBuses && device.m_wDevice < kDevices && device.m_wFunction < kFunctions;
}

}  // namespace

PCIDeviceList_Proc::PCIDeviceList_Proc() = default;

PCIDeviceList_Proc::~PCIDeviceList_Proc() {
    deleteAll();
}

bool PCIDeviceList_Proc::initialize() {
    return scanPCIBusAndCreateList();
}

PCIDevice* PCIDeviceList_Proc::getNextDeviceFromList() {
    PCIDeviceItem* const device = m_pCurrent;
    if (device != nullptr) {
        m_pCurrent = device->m_pNext;
    }
    return device;
}

void PCIDeviceList_Proc::resetList() {
    m_pCurrent = m_pHead;
}

int PCIDeviceList_Proc::getTotalNumDevices() {
    return m_nCount;
}

PCIDevice* PCIDeviceList_Proc::getNextPCIDevice() {
    return nullptr;
}

bool PCIDeviceList_Proc::scanPCIBusAndCreateList() {
    deleteAll();
    DirectoryNames root(AT_FDCWD, kRoot);
    while (const char* name = root.Next()) {
        // The one file beside the bus directories.
        if (std::strcmp(name, "devices") != 0) {
            scanBus(root.File(), name);
        }
    }
    if (!root.IsReadable()) {
        std::printf("Cannot open %s\n", kRoot);
        std::exit(kExitUnreadable);
    }
    OrderList();
    resetList();
    return false;
}

void PCIDeviceList_Proc::scanBus(int rootDirectory, const char* busName) {
    DirectoryNames directory(rootDirectory, busName);
    const char* number = busName;
    const uint16_t bus = TakeHexNumber(number);
    while (const char* name = directory.Next()) {
        addDevice(directory.File(), bus, name);
    }
    if (!directory.IsReadable()) {
        std::printf("Cannot open %s/%s\n", kRoot, busName);
        std::exit(kExitUnreadable);
    }
}

/// `fileName` is device, point, function.
void PCIDeviceList_Proc::addDevice(int busDirectory, uint16_t bus, const char* fileName) {
    const int file = openat(busDirectory, fileName, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        std::exit(kExitUnreadable);
    }
    const ConfigurationHeader header(file);
    close(file);
    auto* item = new (std::nothrow) PCIDeviceItem;
    if (item == nullptr) {
        std::exit(kExitOutOfMemory);
    }
    item->m_wBus = bus;
    item->m_wDevice = TakeHexNumber(fileName);
    if (*fileName != '\0') {
        ++fileName;
    }
    item->m_wFunction = TakeHexNumber(fileName);
    header.FillIn(*item);
    append(item);
}

/// While the list is being built, the cursor stands on its last node, and nothing leads backwards.
void PCIDeviceList_Proc::append(PCIDeviceItem* item) {
    if (m_pHead == nullptr) {
        m_pHead = item;
    } else {
        m_pCurrent->m_pNext = item;
    }
    m_pCurrent = item;
    ++m_nCount;
}

void PCIDeviceList_Proc::OrderList() {
    dropOutOfRange();
    m_pHead = StableSortBy<kDevices * kFunctions, PlaceOnBus>(m_pHead);
    m_pHead = StableSortBy<kBuses, BusNumber>(m_pHead);
    m_pCurrent = nullptr;
}

void PCIDeviceList_Proc::dropOutOfRange() {
    PCIDeviceItem** link = &m_pHead;
    while (PCIDeviceItem* const item = *link) {
        if (IsInRange(*item)) {
            link = &item->m_pNext;
        } else {
            *link = item->m_pNext;
            delete item;
        }
    }
}

// Flattened for the static program, which is compiled as one source: there a call costs more than
// the end of an empty string, of which each device has three.
[[gnu::flatten]] void PCIDeviceList_Proc::deleteAll() {
    while (PCIDeviceItem* const item = m_pHead) {
        m_pHead = item->m_pNext;
        delete item;
    }
    m_pCurrent = nullptr;
    m_nCount = 0;
}
