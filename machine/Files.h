// Descriptors that close themselves, and whole reads and writes on them.
// Creates files that did not exist before, and follows no link in doing so.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "machine/Bytes.h"

namespace machine {

/// An open file, or none: then errno tells why, as long as nothing else has failed since.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    bool IsOpen() const { return m_fd >= 0; }
    int Get() const { return m_fd; }
    /// A path to the open file itself, whatever has happened to its name.
    std::filesystem::path Path() const;
    /// False when the close tells that data were lost.
    bool Close();

  private:
    int m_fd;
};

/// "what: No such file or directory", from errno.
std::string WithReason(const std::string& what);
std::string WithReason(const std::string& what, int error);

/// Names a file without reading it, and keeps it in reach when a mount covers its path.
FileDescriptor OpenHandle(const std::filesystem::path& path);

/// Opens for reading; `name` is relative to `directory`, or absolute. Waits for nobody: a FIFO
/// reads as an empty file as long as nobody writes to it.
FileDescriptor OpenForReading(int directory, const std::string& name);
FileDescriptor OpenForReading(const std::string& path);
FileDescriptor OpenDirectory(int directory, const std::string& name);

struct ReadBytes {
    Bytes bytes;    ///< what could be read, `limit` bytes at the most
    int error = 0;  ///< the errno that ended it early; 0 at the file's end
};

/// Reads on to the end of the file, whatever size it announces.
ReadBytes ReadToEnd(int file, size_t limit);
/// Reads up to `size` bytes from `offset` on.
ReadBytes ReadAt(int file, uint64_t offset, size_t size);

bool WriteAt(int file, uint64_t offset, const uint8_t* bytes, size_t size);

/// A file that did not exist before; not even a dangling link did.
FileDescriptor CreateFile(int directory, const std::string& name);
/// The same with contents; false, with errno, when it cannot be written to the last byte.
bool CreateFileWith(int directory, const std::string& name, const Bytes& contents);

}  // namespace machine
