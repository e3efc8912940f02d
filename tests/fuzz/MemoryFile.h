// A file that lives in memory and has a name, for code that opens files by name.
// Vanishes with its object, after a crash too.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "fuzz/Input.h"

namespace fuzz {

class MemoryFile {
  public:
    MemoryFile() : m_fd(memfd_create("input", MFD_CLOEXEC)) {
        Require(m_fd >= 0, "a file in memory");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_fd); }

    std::string Name() const { return "/proc/self/fd/" + std::to_string(m_fd); }
    void Write(const std::string& bytes) const {
        Require(ftruncate(m_fd, 0) == 0 && pwrite(m_fd, bytes.data(), bytes.size(), 0) ==
                                               static_cast<ssize_t>(bytes.size()),
                "writing the file");
    }
    std::string Read() const {
        std::string bytes(static_cast<size_t>(lseek(m_fd, 0, SEEK_END)), '\0');
        Require(pread(m_fd, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                "reading the file");
        return bytes;
    }

  private:
    int m_fd;
};

}  // namespace fuzz
