// Composes the lines of a report and hands them to standard output in large pieces.
// Knows no key and no order: those are the report's. See dumpAll() for them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The lines of one section. "KEY = VALUE" where KEY begins with the section's prefix, and
/// "KEY.INDEX = VALUE" for the item that SelectItem() chose. Numbers look as printf writes them,
/// with at least so many digits; printf itself would take most of a long report's time, which has
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
        Begin(key);
        Append(kEquals);
        AppendText(value);
        EndLine();
    }
    /// A key without a value.
    template <size_t Size>
    void Absent(const char (&key)[Size]) {
        Text(key, "");
    }
    template <size_t Size>
    void Decimal(const char (&key)[Size], int value, unsigned digits = 1) {
        Begin(key);
        Append(kEquals);
        AppendDecimal(value, digits);
        EndLine();
    }

    /// The index of the following items' keys. Requires: it is not negative.
    void SelectItem(int index);
    template <size_t Size>
    void ItemDecimal(const char (&key)[Size], int value) {
        BeginItem(key);
        AppendDecimal(value, 1);
        EndLine();
    }
    /// In upper case.
    template <size_t Size>
    void ItemHex(const char (&key)[Size], uint32_t value, unsigned digits) {
        BeginItem(key);
        AppendHex(value, digits);
        EndLine();
    }

  private:
    static constexpr char kEquals[] = " = ";
    static constexpr size_t kLongestKey = 40;
    static constexpr size_t kLongestIndex = 16;   // ".2147483647 = "
    static constexpr size_t kLongestNumber = 12;  // "-2147483648" and the line's end
    static constexpr size_t kLongestLine =
        kLongestPrefix + kLongestKey + kLongestIndex + kLongestNumber;

    // Room is made once for a line, but for a text's value. Short texts of varying length are
    // copied with all the room that they could fill, which is quicker than to look at the length.
    template <size_t Size>
    void Begin(const char (&key)[Size]) {
        static_assert(Size <= kLongestKey);
        MakeRoom();
        std::memcpy(m_end, m_prefix.data(), m_prefix.size());
        m_end += m_prefixLength;
        Append(key);
    }
    template <size_t Size>
    void BeginItem(const char (&key)[Size]) {
        Begin(key);
        std::memcpy(m_end, m_index.data(), m_index.size());
        m_end += m_indexLength;
    }
    template <size_t Size>
    void Append(const char (&text)[Size]) {
        std::memcpy(m_end, text, Size - 1);
        m_end += Size - 1;
    }
    void EndLine() { *m_end++ = '\n'; }

    size_t Room() const { return static_cast<size_t>(m_buffer.data() + m_buffer.size() - m_end); }
    void MakeRoom() {
        if (Room() < kLongestLine) {
            Flush();
        }
    }
    void AppendText(std::string_view text);
    void AppendDecimal(int value, unsigned digits);
    void AppendHex(uint32_t value, unsigned digits);
    void Flush();

    std::array<char, 4096> m_buffer;
    char* m_end = m_buffer.data();
    std::array<char, kLongestPrefix> m_prefix = {};
    size_t m_prefixLength;
    std::array<char, kLongestIndex> m_index = {};  // ".INDEX = "
    size_t m_indexLength = 0;
};
