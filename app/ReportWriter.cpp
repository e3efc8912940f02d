// The lines' numbers and texts, and the way to standard output.
// Whether the lines could be written is asked of stdout, by whoever flushes it at the end.
#include "app/ReportWriter.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>

ReportWriter::ReportWriter(std::string_view prefix) : m_prefixLength(prefix.size()) {
    std::copy(prefix.begin(), prefix.end(), m_prefix.begin());
}

void ReportWriter::SelectItem(int index) {
    char* end = m_index.data();
    *end++ = '.';
    end = std::to_chars(end, m_index.data() + m_index.size(), index).ptr;
    end = std::copy_n(kEquals, sizeof kEquals - 1, end);
    m_indexLength = static_cast<size_t>(end - m_index.data());
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

char* ReportWriter::PutLongDecimal(char* end, int value) {
    return std::to_chars(end, end + kLongestNumber, value).ptr;
}

char* ReportWriter::PutLongHex(char* end, uint32_t value) {
    constexpr int kHexadecimal = 16;
    char* const last = std::to_chars(end, end + kLongestNumber, value, kHexadecimal).ptr;
    std::transform(end, last, end, [](unsigned char digit) { return std::toupper(digit); });
    return last;
}

void ReportWriter::Flush() {
    std::fwrite(m_buffer.data(), 1, static_cast<size_t>(m_end - m_buffer.data()), stdout);
    m_end = m_buffer.data();
}
