// Physical memory through a device such as /dev/mem.
// Reads the addresses that it is asked for and no others.
#pragma once

#include <string>

#include "machine/Bytes.h"
#include "machine/Files.h"
#include "machine/Outcome.h"

namespace machine {

class PhysicalMemory {
  public:
    static Outcome<PhysicalMemory> Open(const std::string& device);

    /// The BIOS area; what cannot be read of it is 0, and the error tells why.
    ReadBytes ReadBiosArea() const;
    /// Whether a file ends before an address. A device has no end.
    bool EndsBefore(uint64_t address) const;
    /// `size` bytes at an address, or why not one of them can be had.
    Outcome<Bytes> Read(uint64_t address, size_t size) const;

  private:
    explicit PhysicalMemory(FileDescriptor device) : m_device(std::move(device)) {}

    FileDescriptor m_device;
};

/// What a failed open or read of the memory device means, on this kernel.
std::string ExplainMemoryError(int error);
/// The same, given what the kernel's lockdown file says: "none [integrity] confidentiality", or
/// nothing where there is no such file.
std::string ExplainMemoryError(int error, const std::string& lockdown);

}  // namespace machine
