// Reads and writes that go on until all is done.
#include "machine/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace machine {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(m_fd, other.m_fd);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (IsOpen()) {
        close(m_fd);
    }
}

std::filesystem::path FileDescriptor::Path() const {
    return std::filesystem::path("/proc/self/fd") / std::to_string(m_fd);
}

bool FileDescriptor::Close() {
    return close(std::exchange(m_fd, -1)) == 0;
}

std::string WithReason(const std::string& what) {
    return WithReason(what, errno);
}

std::string WithReason(const std::string& what, int error) {
    return what + ": " + std::strerror(error);
}

FileDescriptor OpenHandle(const std::filesystem::path& path) {
    return FileDescriptor(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

FileDescriptor OpenForReading(int directory, const std::string& name) {
    return FileDescriptor(
        openat(directory, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

FileDescriptor OpenForReading(const std::string& path) {
    return OpenForReading(AT_FDCWD, path);
}

FileDescriptor OpenDirectory(int directory, const std::string& name) {
    return FileDescriptor(
        openat(directory, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

ReadBytes ReadToEnd(int file, size_t limit) {
    constexpr size_t kStep = 65536;
    ReadBytes result;
    for (;;) {
        const size_t done = result.bytes.size();
        result.bytes.resize(done + std::min(kStep, limit - done));
        const ssize_t count = read(file, result.bytes.data() + done, result.bytes.size() - done);
        result.bytes.resize(done + static_cast<size_t>(std::max<ssize_t>(count, 0)));
        if (count <= 0) {
            result.error = count < 0 ? errno : 0;
            return result;
        }
    }
}

ReadBytes ReadAt(int file, uint64_t offset, size_t size) {
    ReadBytes result{Bytes(size), 0};
    size_t done = 0;
    while (done < size) {
        const ssize_t count =
            pread(file, result.bytes.data() + done, size - done, static_cast<off_t>(offset + done));
        if (count <= 0) {
            result.error = count < 0 ? errno : 0;
            break;
        }
        done += static_cast<size_t>(count);
    }
    result.bytes.resize(done);
    return result;
}

bool WriteAt(int file, uint64_t offset, const uint8_t* bytes, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t count =
            pwrite(file, bytes + done, size - done, static_cast<off_t>(offset + done));
        if (count < 0) {
            return false;
        }
        done += static_cast<size_t>(count);
    }
    return true;
}

FileDescriptor CreateFile(int directory, const std::string& name) {
    return FileDescriptor(
        openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
}

bool CreateFileWith(int directory, const std::string& name, const Bytes& contents) {
    FileDescriptor file = CreateFile(directory, name);
    return file.IsOpen() && WriteAt(file.Get(), 0, contents.data(), contents.size()) &&
           file.Close();
}

}  // namespace machine
