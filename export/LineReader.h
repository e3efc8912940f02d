// Reads a file line by line in a memory of fixed size.
// Never holds more than one block; a line that no report has is an error, not a reason to grow.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// What standard input is called in messages.
inline constexpr char kStandardInput[] = "standard input";

class LineReader {
  public:
    enum class Status { kLine, kEnd, kFailure };

    /// Reads `path`, or standard input when it is "-". A file that cannot be opened fails at the
    /// first line.
    explicit LineReader(const std::string& path);
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader();

    [[nodiscard]] Status Next();

    /// The line that Next() found, without its end. Valid until the next call.
    std::string_view Line() const { return m_line; }
    /// Its number, counted from 1; where reading failed, that of the line in question, or 0 when
    /// no line is to blame.
    size_t Number() const { return m_number; }
    /// The name for messages: the path, or "standard input".
    const std::string& Source() const { return m_source; }
    const std::string& Failure() const { return m_failure; }

  private:
    bool Fill();
    Status Fail(const std::string& failure);
    Status FailToRead();
    Status TakeLine(size_t length);

    std::string m_source;
    int m_file;
    std::vector<char> m_buffer;
    size_t m_start = 0;  ///< of what was not handed out yet
    size_t m_end = 0;
    bool m_ended = false;
    int m_error = 0;
    std::string_view m_line;
    size_t m_number = 0;
    std::string m_failure;
};

}  // namespace report
