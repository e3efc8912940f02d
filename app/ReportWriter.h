// Composes the lines of a report and hands them to standard output in large pieces.
// Knows no key and no order: those are the report's. See dumpAll() for them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The two digits of each byte.
inline constexpr auto kHexPairs = [] {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::array<std::array<char, 2>, 256> pairs = {};
    for (size_t byte = 0; byte < pairs.size(); ++byte) {
        pairs[byte] = {kDigits[byte / 16], kDigits[byte % 16]};
    }
    return pairs;
}();

/// The lines of one section. "KEY = VALUE" where KEY begins with the section's prefix, and
/// "KEY.INDEX = VALUE" for the item that SelectItem() chose. Numbers look as printf writes them;
/// printf itself would take most of a long report's time, which has
/// ten lines for each PCI function. What is written reaches stdout with the destructor.
class ReportWriter {
  public:
    /// Requires: prefix is not longer than kLongestPrefix.
    explicit ReportWriter(std::string_view prefix);
    ReportWriter(const ReportWriter&) = delete;
    ReportWriter& operator=(const ReportWriter&) = delete;
    ~ReportWriter() { Flush(); }

    static constexpr size_t kLongestPrefix = 8;

    template <size_t Size>
    void Text(const char (&key)[Size], const char* value) {
        m_end = Put(Begin(key), kEquals);
        AppendText(value);
        EndLine(m_end);
    }
    /// A key without a value.
    template <size_t Size>
    void Absent(const char (&key)[Size]) {
        Text(key, "");
    }
    template <size_t Size>
    void Decimal(const char (&key)[Size], int value) {
        EndLine(PutDecimal(Put(Begin(key), kEquals), value));
    }
    /// The same with a zero in front of a single digit.
    template <size_t Size>
    void TwoDigits(const char (&key)[Size], int value) {
        char* end = Put(Begin(key), kEquals);
        if (value >= 0 && value < kTen) {
            *end++ = '0';
        }
        EndLine(PutDecimal(end, value));
    }

    /// The index of the following items' keys. Requires: it is not negative.
    void SelectItem(int index);
    template <size_t Size>
    void ItemDecimal(const char (&key)[Size], int value) {
        EndLine(PutDecimal(BeginItem(key), value));
    }
    /// In upper case, with the digits of so many bytes, below four; with more where the value needs
    /// them.
    template <size_t Bytes, size_t Size>
    void ItemHex(const char (&key)[Size], uint32_t value) {
        EndLine(PutHex<Bytes>(BeginItem(key), value));
    }

  private:
    static constexpr char kEquals[] = " = ";
    static constexpr size_t kLongestKey = 40;
    static constexpr size_t kLongestIndex = 16;   // ".2147483647 = "
    static constexpr size_t kLongestNumber = 12;  // "-2147483648" and the line's end
    static constexpr int kTen = 10;
    static constexpr size_t kLongestLine =
        kLongestPrefix + kLongestKey + kLongestIndex + kLongestNumber;

    // A line is composed behind a pointer of its own, which the compiler may keep in a register:
    // each function puts a part there and returns its end. Room is made once for a line, but for a
    // text's value. Short texts of varying length are copied with all the room that they could
    // fill, which is quicker than to look at the length.
    template <size_t Size>
    char* Begin(const char (&key)[Size]) {
        static_assert(Size <= kLongestKey);
        MakeRoom();
        std::memcpy(m_end, m_prefix.data(), m_prefix.size());
        return Put(m_end + m_prefixLength, key);
    }
    template <size_t Size>
    char* BeginItem(const char (&key)[Size]) {
        char* const end = Begin(key);
        std::memcpy(end, m_index.data(), m_index.size());
        return end + m_indexLength;
    }
    template <size_t Size>
    static char* Put(char* end, const char (&text)[Size]) {
        std::memcpy(end, text, Size - 1);
        return end + Size - 1;
    }
    static char* PutDecimal(char* end, int value) {
        if (value >= 0 && value < kTen) {
            *end = static_cast<char>('0' + value);
            return end + 1;
        }
        return PutLongDecimal(end, value);
    }
    template <size_t Bytes>
    static char* PutHex(char* end, uint32_t value) {
        if (value >> (8 * Bytes) != 0) {
            return PutLongHex(end, value);
        }
        for (char* pair = end + 2 * Bytes; pair != end; value >>= 8) {
            pair -= 2;
            std::memcpy(pair, kHexPairs[value & 0xFF].data(), 2);
        }
        return end + 2 * Bytes;
    }
    void EndLine(char* end) {
        *end = '\n';
        m_end = end + 1;
    }

    size_t Room() const { return static_cast<size_t>(m_buffer.data() + m_buffer.size() - m_end); }
    void MakeRoom() {
        if (Room() < kLongestLine) {
            Flush();
        }
    }
    void AppendText(std::string_view text);
    static char* PutLongDecimal(char* end, int value);
    static char* PutLongHex(char* end, uint32_t value);
    void Flush();

    std::array<char, 4096> m_buffer;
    char* m_end = m_buffer.data();
    std::array<char, kLongestPrefix> m_prefix = {};
    size_t m_prefixLength;
    std::array<char, kLongestIndex> m_index = {};  // ".INDEX = "
    size_t m_indexLength = 0;
};
