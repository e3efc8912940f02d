// Reads the low memory and maps the rest, as systally does: some kernels allow the one, not the
// other.
#include "machine/PhysicalMemory.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "machine/EntryPoint.h"

namespace machine {

namespace {

constexpr char kLockdownFile[] = "/sys/kernel/security/lockdown";

std::string Lockdown() {
    constexpr size_t kLimit = 256;
    const FileDescriptor file = OpenForReading(kLockdownFile);
    const Bytes bytes = file.IsOpen() ? ReadToEnd(file.Get(), kLimit).bytes : Bytes();
    return {bytes.begin(), bytes.end()};
}

/// The bracketed word of "none [integrity] confidentiality".
std::string CurrentMode(const std::string& lockdown) {
    const size_t opening = lockdown.find('[');
    const size_t closing = lockdown.find(']');
    if (opening == std::string::npos || closing == std::string::npos || closing < opening) {
        return "";
    }
    return lockdown.substr(opening + 1, closing - opening - 1);
}

uint64_t PageSize() {
    return static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

uint64_t StartOfPage(uint64_t address) {
    return address - address % PageSize();
}

/// A read-only view of the device that ends with its object.
class Mapping {
  public:
    Mapping(int file, uint64_t offset, size_t size)
        : m_size(size),
          m_start(mmap(nullptr, size, PROT_READ, MAP_SHARED, file, static_cast<off_t>(offset))) {}
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping() {
        if (IsMapped()) {
            munmap(m_start, m_size);
        }
    }
    bool IsMapped() const { return m_start != MAP_FAILED; }
    const uint8_t* Start() const { return static_cast<const uint8_t*>(m_start); }

  private:
    size_t m_size;
    void* m_start;
};

}  // namespace

Outcome<PhysicalMemory> PhysicalMemory::Open(const std::string& device) {
    FileDescriptor file = OpenForReading(device);
    if (const int error = errno; !file.IsOpen()) {
        return Failure{ExplainMemoryError(error)};
    }
    return PhysicalMemory(std::move(file));
}

ReadBytes PhysicalMemory::ReadBiosArea() const {
    ReadBytes area = ReadAt(m_device.Get(), kBiosAreaAddress, kBiosAreaSize);
    area.bytes.resize(kBiosAreaSize);
    return area;
}

bool PhysicalMemory::EndsBefore(uint64_t address) const {
    struct stat status = {};
    return fstat(m_device.Get(), &status) == 0 && S_ISREG(status.st_mode) &&
           static_cast<uint64_t>(status.st_size) < address;
}

Outcome<Bytes> PhysicalMemory::Read(uint64_t address, size_t size) const {
    const size_t inPage = address - StartOfPage(address);
    // To touch a mapped file behind its last page raises SIGBUS.
    if (size > 0 && EndsBefore(StartOfPage(address + size - 1) + 1)) {
        return Failure{"the memory ends before it does"};
    }
    const Mapping mapping(m_device.Get(), address - inPage, inPage + size);
    if (!mapping.IsMapped()) {
        return Failure{std::strerror(errno)};
    }
    return Bytes(mapping.Start() + inPage, mapping.Start() + inPage + size);
}

std::string ExplainMemoryError(int error) {
    return ExplainMemoryError(error, Lockdown());
}

std::string ExplainMemoryError(int error, const std::string& lockdown) {
    std::string reason = std::strerror(error);
    const std::string mode = CurrentMode(lockdown);
    if (error == EPERM && mode != "none") {
        reason += mode.empty() ? "; the kernel may be locked down"
                               : "; the kernel is locked down: " + mode;
    }
    return reason;
}

}  // namespace machine
