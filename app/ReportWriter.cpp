// The lines' numbers and texts, and the way to standard output.
// Whether the lines could be written is asked of stdout, by whoever flushes it at the end.
#include "app/ReportWriter.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>

char* PutLongDecimal(char* end, int value) {
    return std::to_chars(end, end + kMostDigits, value).ptr;
}

char* PutLongHex(char* end, uint32_t value) {
    constexpr int kHexadecimal = 16;
    char* const last = std::to_chars(end, end + kMostDigits, value, kHexadecimal).ptr;
    std::transform(end, last, end, [](unsigned char digit) { return std::toupper(digit); });
    return last;
}

ReportWriter::ReportWriter(std::string_view prefix) : m_prefix{{}, prefix.size()} {
    std::copy(prefix.begin(), prefix.end(), m_prefix.characters.begin());
}

void ReportWriter::AppendText(std::string_view text) {
    // The line's end needs room too.
    if (text.size() >= Room()) {
        Flush();
    }
    if (text.size() >= Room()) {
        std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
        m_end = std::copy(text.begin(), text.end(), m_end);
    }
}

void ReportWriter::Flush() {
    std::fwrite(m_buffer.data(), 1, static_cast<size_t>(m_end - m_buffer.data()), stdout);
    m_end = m_buffer.data();
}
