// Reads a file line by line.
#include "export/LineReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace report {

namespace {

constexpr size_t kBlock = 65536;

// The texts of a report end at 127 characters.
constexpr size_t kLongestLine = 4096;

}  // namespace

LineReader::LineReader(const std::string& path)
    : m_source(path == "-" ? kStandardInput : path),
      m_file(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      m_buffer(kBlock) {
    if (m_file < 0) {
        m_error = errno;
    }
}

LineReader::~LineReader() {
    if (m_file > STDIN_FILENO) {
        close(m_file);
    }
}

LineReader::Status LineReader::Next() {
    ++m_number;
    for (size_t searched = 0;;) {
        const char* const start = m_buffer.data() + m_start;
        const size_t length = m_end - m_start;
        const void* const end = std::memchr(start + searched, '\n', length - searched);
        if (end != nullptr) {
            return TakeLine(static_cast<size_t>(static_cast<const char*>(end) - start));
        }
        if (length > kLongestLine) {
            return Fail("the line is longer than any line of a report");
        }
        searched = length;
        if (m_ended || !Fill()) {
            break;
        }
    }
    if (m_error != 0) {
        return FailToRead();
    }
    return m_start == m_end ? Status::kEnd : Fail("the file ends in the middle of a line");
}

/// Reads another block behind what is left. False at the end and on errors.
bool LineReader::Fill() {
    std::memmove(m_buffer.data(), m_buffer.data() + m_start, m_end - m_start);
    m_end -= m_start;
    m_start = 0;
    ssize_t count = -1;
    while (m_error == 0) {
        count = read(m_file, m_buffer.data() + m_end, m_buffer.size() - m_end);
        if (count >= 0) {
            break;
        }
        m_error = errno == EINTR ? 0 : errno;
    }
    m_ended = count <= 0;
    m_end += m_ended ? 0 : static_cast<size_t>(count);
    return !m_ended;
}

LineReader::Status LineReader::TakeLine(size_t length) {
    m_line = {m_buffer.data() + m_start, length};
    m_start += length + 1;
    return m_line.find('\0') == std::string_view::npos ? Status::kLine
                                                       : Fail("the line holds a NUL byte");
}

LineReader::Status LineReader::Fail(const std::string& failure) {
    m_failure = failure;
    return Status::kFailure;
}

LineReader::Status LineReader::FailToRead() {
    m_number = 0;
    return Fail(std::string("cannot read: ") + std::strerror(m_error));
}

}  // namespace report
