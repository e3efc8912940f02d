// Pages in, a sparse file out.
#include "machine/MemoryImage.h"

#include <unistd.h>

#include <algorithm>

#include "machine/Files.h"

namespace machine {

namespace {

constexpr uint64_t kFirstMegabyte = 0x100000;

}  // namespace

void MemoryImage::Put(uint64_t address, const Bytes& bytes) {
    for (size_t i = 0; i < bytes.size(); ++i) {
        const uint64_t place = address + i;
        m_pages[place / kPage][place % kPage] = bytes[i];
    }
    ReachTo(address + bytes.size());
}

void MemoryImage::ReachTo(uint64_t end) {
    m_end = std::max(m_end, end);
}

uint64_t MemoryImage::Size() const {
    return std::max(kFirstMegabyte, (m_end / kPage + 2) * kPage);
}

bool MemoryImage::WriteTo(int file) const {
    if (ftruncate(file, static_cast<off_t>(Size())) != 0) {
        return false;
    }
    for (const auto& [number, page] : m_pages) {
        const bool isEmpty =
            std::all_of(page.begin(), page.end(), [](uint8_t byte) { return byte == 0; });
        if (!isEmpty && !WriteAt(file, number * kPage, page.data(), page.size())) {
            return false;
        }
    }
    return true;
}

}  // namespace machine
