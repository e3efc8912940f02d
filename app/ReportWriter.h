// Composes the lines of a report and hands them to standard output in large pieces.
// Knows no key and no order: those are the report's. See dumpAll() for them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Every Put writes at `end` and returns the new end.

/// A text of varying length. It is copied with all the room that it could fill, which is quicker
/// than to look at the length.
template <size_t Room, typename Length = size_t>
struct ShortText {
    std::array<char, Room> characters;
    Length length;

    /// Requires: `Room` bytes are free at `end`.
    char* PutAt(char* end) const {
        std::memcpy(end, characters.data(), Room);
        return end + length;
    }
};

// --- Numbers ------------------------------------------------------------------------------------

// They look as printf writes them. A long report has ten lines for each PCI function: printf itself
// would take nine tenths of its instructions.

inline constexpr size_t kMostDigits = 11;  // "-2147483648"

/// The numbers of up to three digits, in four bytes, which are copied at once.
inline constexpr auto kShortNumbers = [] {
    constexpr size_t kTen = 10;
    std::array<ShortText<4, uint8_t>, kTen* kTen* kTen> texts = {};
    for (size_t number = 0; number < texts.size(); ++number) {
        auto& [digits, length] = texts[number];
        for (size_t unit = kTen * kTen; unit != 0; unit /= kTen) {
            if (number >= unit || unit == 1) {
                digits[length++] = static_cast<char>('0' + number / unit % kTen);
            }
        }
    }
    return texts;
}();

/// The two digits of each byte.
inline constexpr auto kHexPairs = [] {
    constexpr char kDigits[] = "0123456789ABCDEF";
    constexpr size_t kSixteen = 16;
    std::array<std::array<char, 2>, kSixteen* kSixteen> pairs = {};
    for (size_t byte = 0; byte < pairs.size(); ++byte) {
        pairs[byte] = {kDigits[byte / kSixteen], kDigits[byte % kSixteen]};
    }
    return pairs;
}();

/// A number of any length. Requires: kMostDigits bytes are free at `end`, as below.
char* PutLongDecimal(char* end, int value);
/// In upper case.
char* PutLongHex(char* end, uint32_t value);

struct DecimalNumber {
    int value;

    char* PutAt(char* end) const {
        const auto number = static_cast<unsigned>(value);
        // A negative one is large.
        return number < kShortNumbers.size() ? kShortNumbers[number].PutAt(end)
                                             : PutLongDecimal(end, value);
    }
};

/// In upper case, with the digits of so many bytes; with more where the value needs them.
template <size_t Bytes>
struct HexNumber {
    static_assert(Bytes < sizeof(uint32_t));  // a number is not shifted by all its bits
    uint32_t value;

    char* PutAt(char* end) const {
        if (value >> (8 * Bytes) != 0) {
            return PutLongHex(end, value);
        }
        for (size_t byte = 0; byte < Bytes; ++byte) {
            const uint32_t rest = value >> (8 * (Bytes - 1 - byte));
            std::memcpy(end + 2 * byte, kHexPairs[rest & 0xFF].data(), 2);
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

    /// Requires: value is not null.
    template <size_t Size>
    void Text(const char (&key)[Size], const char* value) {
        m_end = Begin(key);
        AppendText(value);
        m_end = PutLineEnd(m_end);
    }
    /// A key without a value.
    template <size_t Size>
    void Absent(const char (&key)[Size]) {
        Text(key, "");
    }
    template <size_t Size>
    void Decimal(const char (&key)[Size], int value) {
        m_end = PutLineEnd(DecimalNumber{value}.PutAt(Begin(key)));
    }
    /// The same with a zero in front of a single digit.
    template <size_t Size>
    void TwoDigits(const char (&key)[Size], int value) {
        constexpr int kTen = 10;
        char* end = Begin(key);
        if (value >= 0 && value < kTen) {
            *end++ = '0';
        }
        m_end = PutLineEnd(DecimalNumber{value}.PutAt(end));
    }

    /// The lines of the item with that index: ItemDecimal() or ItemHex(). Inline, so that the lines
    /// are handed over in registers.
    template <size_t... Sizes, typename... Numbers>
    [[gnu::always_inline]] void Item(int index, const ItemLine<Sizes, Numbers>&... lines) {
        static_assert(sizeof...(lines) * kLongestLine <= kRoom);
        static_assert(((Sizes <= kLongestKey) && ...));
        MakeRoom(sizeof...(lines) * kLongestLine);
        const IndexText indexText = TextOf(index);
        // Copies, which the compiler may keep in registers from line to line.
        const Prefix prefix = m_prefix;
        char* end = m_end;
        ((end = PutItemLine(end, prefix, indexText, lines)), ...);
        m_end = end;
    }

  private:
    static constexpr char kEquals[] = " = ";
    static constexpr size_t kLongestKey = 40;  // with its NUL; any that is longer will not compile
    static constexpr size_t kLongestIndex = 16;  // ".-2147483648 = ", and one to copy it at once
    static constexpr size_t kLongestLine =
        kLongestPrefix + kLongestKey + kLongestIndex + kMostDigits + 1;
    static constexpr size_t kRoom = 4096;  // the processor's nearest cache keeps it

    using Prefix = ShortText<kLongestPrefix>;
    using IndexText = ShortText<kLongestIndex>;

    /// What stands between an item's keys and values.
    static IndexText TextOf(int index) {
        IndexText text = {{'.'}, 0};
        char* const begin = text.characters.data();
        const char* const end = Put(DecimalNumber{index}.PutAt(begin + 1), kEquals);
        text.length = static_cast<size_t>(end - begin);
        return text;
    }
    template <size_t Size, typename Number>
    [[gnu::always_inline]] static char* PutItemLine(char* end, const Prefix& prefix,
                                                    const IndexText& index,
                                                    const ItemLine<Size, Number>& line) {
        return PutLineEnd(line.number.PutAt(index.PutAt(Put(prefix.PutAt(end), line.key))));
    }
    template <size_t Size>
    static char* Put(char* end, const char (&text)[Size]) {
        std::memcpy(end, text, Size - 1);
        return end + Size - 1;
    }
    static char* PutLineEnd(char* end) {
        *end = '\n';
        return end + 1;
    }
    /// Makes room for the whole line, except for a text's value: AppendText() sees to that.
    template <size_t Size>
    char* Begin(const char (&key)[Size]) {
        static_assert(Size <= kLongestKey);
        MakeRoom(kLongestLine);
        return Put(Put(m_prefix.PutAt(m_end), key), kEquals);
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
    Prefix m_prefix;
};
