// From physical memory to a private copy of the structure table.
// Reads the BIOS area once and maps the table once; verifies no checksum and no version.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

#include "smbios/srvinfo.h"

namespace {

#ifdef SYSTALLY_BIOS_FROM_FILE
constexpr bool kReadsImageFile = true;
#else
constexpr bool kReadsImageFile = false;
#endif

constexpr char kMemoryDevice[] = "/dev/mem";
constexpr off_t kBIOSAreaAddress = off_t{STARTING_ADDRESS} * 16;

// DSP0134 5.2.1, offsets from the "_SM_" anchor.
constexpr size_t kEntryTableLength = 0x16;   // 16 bits
constexpr size_t kEntryTableAddress = 0x18;  // 32 bits
constexpr size_t kEntryStructures = 0x1C;    // 16 bits
constexpr size_t kEntryFieldsEnd = 0x1E;
constexpr size_t kParagraph = 16;          // the standard aligns anchors to it
constexpr char kLegacyAnchor[] = "_DMI_";  // SM_BIOS_ANCHOR_ID_DMI and the "_" that must follow

// What DumpData shows around a structure.
constexpr size_t kDumpLines = 40;
constexpr size_t kDumpColumns = 15;
constexpr size_t kDumpBefore = 2;

// Zero bytes around the table copy. Before it: a length byte of -128 leads that far back. Behind
// it: the dump window, which exceeds the longest formatted area of 255 bytes and its fields.
constexpr size_t kZerosBefore = 128 + kDumpBefore;
constexpr size_t kZerosBehind = kDumpLines * kDumpColumns;

class Descriptor {
  public:
    explicit Descriptor(const char* path) : m_fd(open(path, O_RDONLY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (IsOpen()) {
            close(m_fd);
        }
    }
    bool IsOpen() const { return m_fd >= 0; }
    int Get() const { return m_fd; }

  private:
    int m_fd;
};

template <typename Number>
Number ReadNumber(const unsigned char* bytes) {
    // Firmware of this family stores numbers as its processor does: little-endian, unaligned.
    Number number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

bool HasAnchor(const unsigned char* position, std::string_view anchor) {
    return std::memcmp(position, anchor.data(), anchor.size()) == 0;
}

/// Fills the buffer; what cannot be read is 0.
void ReadAt(int fd, unsigned char* buffer, size_t size, off_t offset) {
    size_t done = 0;
    ssize_t count = 1;
    while (done < size && count > 0) {
        count = pread(fd, buffer + done, size - done, offset + static_cast<off_t>(done));
        done += static_cast<size_t>(std::max<ssize_t>(count, 0));
    }
    std::fill(buffer + done, buffer + size, 0);
}

/// How many of `wanted` bytes can be touched in a mapping from `offset` on. Memory itself has no
/// end; an image in its place has one, behind which a touch would kill.
size_t TouchableBytes(int fd, off_t offset, size_t wanted) {
    struct stat status = {};
    if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        return wanted;
    }
    const off_t left = std::max<off_t>(status.st_size - offset, 0);
    return static_cast<size_t>(std::min<off_t>(left, static_cast<off_t>(wanted)));
}

/// The entry point in the BIOS area, as if it began with "_SM_"; null when there is none.
/// A legacy entry point, "_DMI_" alone, holds the same fields 16 bytes earlier. One whose fields
/// would lie outside the area is none. machine/EntryPoint.cpp follows this rule and goes with it.
const unsigned char* FindEntryPoint(const unsigned char* area) {
    for (size_t position = 0; position < SIZE_OF_DATA; position += kParagraph) {
        if (area[position] != SM_BIOS_ANCHOR_ID_SM_[0]) {
            continue;  // both anchors begin with the same character
        }
        const bool isCurrent = HasAnchor(area + position, SM_BIOS_ANCHOR_ID_SM_);
        const bool isLegacy = !isCurrent && HasAnchor(area + position, kLegacyAnchor);
        if (isCurrent && position + kEntryFieldsEnd <= SIZE_OF_DATA) {
            return area + position;
        }
        if (isLegacy && position >= kParagraph) {
            return area + position - kParagraph;
        }
    }
    return nullptr;
}

}  // namespace

unsigned char* SERVER_INFORMATION::MakeBuffer() {
    m_pBIOSBuffer.reset(new (std::nothrow) unsigned char[SIZE_OF_DATA]);
    return m_pBIOSBuffer.get();
}

bool SERVER_INFORMATION::LoadBIOSBuffer() {
    const bool allocated = MakeBuffer() != nullptr;
    if constexpr (kReadsImageFile) {
        if (allocated) {
            GetMemoryFromFile(m_pBIOSBuffer.get());
        }
        return allocated;
    }
    // A missing device is told even when there was no memory for its bytes.
    const Descriptor memory(kMemoryDevice);
    if (!memory.IsOpen()) {
        std::printf("Critical error in srvinfo: Could not open /dev/mem.\n");
        return false;
    }
    if (allocated) {
        ReadAt(memory.Get(), m_pBIOSBuffer.get(), SIZE_OF_DATA, kBIOSAreaAddress);
    }
    return allocated;
}

void SERVER_INFORMATION::GetMemoryFromFile(unsigned char* buffer) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen("SM_BIOS.BIN", "rb"), std::fclose);
    const size_t count =
        file == nullptr ? 0 : std::fread(buffer, 1, size_t{SIZE_OF_DATA}, file.get());
    if (count != SIZE_OF_DATA) {
        std::fill(buffer + count, buffer + SIZE_OF_DATA, 0);
        std::printf("File read failed -2 \nGet Memory From File");
    }
}

void SERVER_INFORMATION::CopyMemoryToFile() {
    // The drive letter is part of the name: the file appears in the current directory.
    FILE* file = std::fopen("Y:\\SM_BIOS.BIN", "wb");
    bool written = file != nullptr && m_pBIOSBuffer != nullptr &&
                   std::fwrite(m_pBIOSBuffer.get(), SIZE_OF_DATA, 1, file) == 1;
    if (file != nullptr) {
        // A full disk may show only here.
        written = std::fclose(file) == 0 && written;
    }
    if (!written) {
        std::printf("File write failed -2 \nCopy Memory to File");
    }
}

unsigned char* SERVER_INFORMATION::FindHeader() {
    if (m_pBIOSBuffer == nullptr) {
        return nullptr;
    }
    const unsigned char* entry = FindEntryPoint(m_pBIOSBuffer.get());
    if (entry == nullptr) {
        return nullptr;
    }
    m_wNumStructures = ReadNumber<uint16_t>(entry + kEntryStructures);
    const auto address = ReadNumber<uint32_t>(entry + kEntryTableAddress);
    const auto length = ReadNumber<uint16_t>(entry + kEntryTableLength);
    return CopyTable(address, length) ? m_pTableBuffer : nullptr;
}

/// Copies `length` + 1 bytes at a physical address between the zeros of the table storage; the byte
/// behind the table is copied as well. What the memory does not have of them reads as 0.
bool SERVER_INFORMATION::CopyTable(uint32_t address, uint16_t length) {
    const size_t copied = size_t{length} + 1;
    m_pTableBuffer = nullptr;
    m_pTableEnd = nullptr;
    m_pTableStorage.reset(new (std::nothrow) unsigned char[kZerosBefore + copied + kZerosBehind]);
    const Descriptor memory(kMemoryDevice);
    if (m_pTableStorage == nullptr || !memory.IsOpen()) {
        return false;
    }
    const auto pageSize = static_cast<size_t>(getpagesize());
    const size_t inPage = address % pageSize;
    const size_t mapLength = ((length + pageSize) / pageSize) * pageSize + pageSize;
    void* const mapping = mmap(nullptr, mapLength, PROT_READ, MAP_SHARED, memory.Get(),
                               off_t{address} - static_cast<off_t>(inPage));
    if (mapping == MAP_FAILED) {
        // The call on the failed result does nothing, and is kept.
        munmap(mapping, mapLength);
        return false;
    }
    m_pTableBuffer = m_pTableStorage.get() + kZerosBefore;
    m_pTableEnd = m_pTableBuffer + copied;
    const size_t touchable = TouchableBytes(memory.Get(), off_t{address}, copied);
    std::memset(m_pTableStorage.get(), 0, kZerosBefore);
    std::memcpy(m_pTableBuffer, static_cast<const unsigned char*>(mapping) + inPage, touchable);
    std::memset(m_pTableBuffer + touchable, 0, copied - touchable + kZerosBehind);
    munmap(mapping, mapLength);
    return true;
}

void SERVER_INFORMATION::DumpData(const unsigned char* structure) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    constexpr char kLineEnd[] = "      \n";
    constexpr size_t kLineLength = kDumpColumns * 3 + 1 + kDumpColumns + sizeof kLineEnd - 1;

    char text[kDumpLines * kLineLength + 1];
    char* end = text;
    const unsigned char* line = structure - kDumpBefore;
    for (size_t i = 0; i < kDumpLines; ++i, line += kDumpColumns) {
        for (const unsigned char* byte = line; byte < line + kDumpColumns; ++byte) {
            *end++ = kDigits[*byte >> 4];
            *end++ = kDigits[*byte & 0x0F];
            *end++ = ' ';
        }
        *end++ = ' ';
        end = std::transform(line, line + kDumpColumns, end, [](unsigned char byte) {
            return std::isprint(byte) != 0 ? static_cast<char>(byte) : '_';
        });
        end = std::copy_n(kLineEnd, sizeof kLineEnd - 1, end);
    }
    *end = '\0';
    std::printf("Dump Data Test Box \n\n hex dump\n%s", text);
}
