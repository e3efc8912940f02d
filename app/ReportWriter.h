// Composes the lines of a report and hands them to standard output in large pieces.
// Knows no key and no order: those are the report's. See dumpAll() for them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// --- Numbers ------------------------------------------------------------------------------------

// They look as printf writes them; printf itself would take most of a long report's time, which
// has ten lines for each PCI function. Each puts itself at `end` and returns its own end.

/// The two digits of each number below the square of `Base`.
template <size_t Base>
inline constexpr auto kDigitPairs = [] {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::array<std::array<char, 2>, Base* Base> pairs = {};
    for (size_t number = 0; number < pairs.size(); ++number) {
        pairs[number] = {kDigits[number / Base], kDigits[number % Base]};
    }
    return pairs;
}();

/// A number of any length.
char* PutLongDecimal(char* end, int value);
/// In upper case.
char* PutLongHex(char* end, uint32_t value);

struct DecimalNumber {
    int value;

    char* PutAt(char* end) const {
        constexpr unsigned kTen = 10;
        constexpr unsigned kHundred = 100;
        constexpr unsigned kThousand = 1000;
        const auto number = static_cast<unsigned>(value);
        if (number >= kThousand) {  // a negative one too
            return PutLongDecimal(end, value);
        }
        if (number < kTen) {
            *end = static_cast<char>('0' + number);
            return end + 1;
        }
        if (number >= kHundred) {
            *end++ = static_cast<char>('0' + number / kHundred);
        }
        std::memcpy(end, kDigitPairs<kTen>[number % kHundred].data(), 2);
        return end + 2;
    }
};

/// In upper case, with the digits of so many bytes; with more where the value needs them.
template <size_t Bytes>
struct HexNumber {
    static_assert(Bytes < sizeof(uint32_t));
    uint32_t value;

    char* PutAt(char* end) const {
        constexpr size_t kSixteen = 16;
        if (value >> (8 * Bytes) != 0) {
            return PutLongHex(end, value);
        }
        uint32_t rest = value;
        for (size_t byte = Bytes; byte-- > 0; rest >>= 8) {
            std::memcpy(end + 2 * byte, kDigitPairs<kSixteen>[rest & 0xFF].data(), 2);
        }
        return end + 2 * Bytes;
    }
};

// --- Lines of items -----------------------------------------------------------------------------

template <size_t Size, typename Number>
struct ItemLine {
    const char (&key)[Size];
    Number number;
};

template <size_t Size>
ItemLine<Size, DecimalNumber> ItemDecimal(const char (&key)[Size], int value) {
    return {key, {value}};
}

template <size_t Bytes, size_t Size>
ItemLine<Size, HexNumber<Bytes>> ItemHex(const char (&key)[Size], uint32_t value) {
    return {key, {value}};
}

// --- The report ---------------------------------------------------------------------------------

/// The lines of one section. "KEY = VALUE" where KEY begins with the section's prefix, and
/// "KEY.INDEX = VALUE" for those of an item. They leave in large pieces, the last with the
/// destructor: while a writer lives, nobody else may print, and the process may not exit.
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
        m_end = Begin(key);
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
        EndLine(DecimalNumber{value}.PutAt(Begin(key)));
    }
    /// The same with a zero in front of a single digit.
    template <size_t Size>
    void TwoDigits(const char (&key)[Size], int value) {
        constexpr int kTen = 10;
        char* end = Begin(key);
        if (value >= 0 && value < kTen) {
            *end++ = '0';
        }
        EndLine(DecimalNumber{value}.PutAt(end));
    }

    /// The lines of the item with that index, which is not negative: ItemDecimal() or ItemHex().
    template <size_t... Sizes, typename... Numbers>
    void Item(int index, const ItemLine<Sizes, Numbers>&... lines) {
        static_assert(sizeof...(lines) * kLongestLine <= kRoom);
        static_assert(((Sizes <= kLongestKey) && ...));
        MakeRoom(sizeof...(lines) * kLongestLine);
        std::array<char, kLongestIndex> indexText = {'.'};
        const char* const indexEnd = Put(DecimalNumber{index}.PutAt(indexText.data() + 1), kEquals);
        const auto indexLength = static_cast<size_t>(indexEnd - indexText.data());
        // Pointers of its own, which the compiler may keep in registers from line to line.
        char* end = m_end;
        const auto write = [&](const auto& line) {
            end = Put(PutPrefix(end), line.key);
            std::memcpy(end, indexText.data(), indexText.size());
            end = line.number.PutAt(end + indexLength);
            *end++ = '\n';
        };
        (write(lines), ...);
        m_end = end;
    }

  private:
    static constexpr char kEquals[] = " = ";
    static constexpr size_t kLongestKey = 40;
    static constexpr size_t kLongestIndex = 16;   // ".2147483647 = "
    static constexpr size_t kLongestNumber = 12;  // "-2147483648" and the line's end
    static constexpr size_t kLongestLine =
        kLongestPrefix + kLongestKey + kLongestIndex + kLongestNumber;
    static constexpr size_t kRoom = 4096;

    // Short texts of varying length are copied with all the room that they could fill, which is
    // quicker than to look at the length.
    char* PutPrefix(char* end) const {
        std::memcpy(end, m_prefix.data(), m_prefix.size());
        return end + m_prefixLength;
    }
    template <size_t Size>
    static char* Put(char* end, const char (&text)[Size]) {
        std::memcpy(end, text, Size - 1);
        return end + Size - 1;
    }
    /// Room is made once for a line, but for a text's value.
    template <size_t Size>
    char* Begin(const char (&key)[Size]) {
        static_assert(Size <= kLongestKey);
        MakeRoom(kLongestLine);
        return Put(Put(PutPrefix(m_end), key), kEquals);
    }
    void EndLine(char* end) {
        *end = '\n';
        m_end = end + 1;
    }

    size_t Room() const { return static_cast<size_t>(m_buffer.data() + m_buffer.size() - m_end); }
    void MakeRoom(size_t size) {
        if (Room() < size) {
            Flush();
        }
    }
    void AppendText(std::string_view text);
    void Flush();

    std::array<char, kRoom> m_buffer;
    char* m_end = m_buffer.data();
    std::array<char, kLongestPrefix> m_prefix = {};
    size_t m_prefixLength;
};
