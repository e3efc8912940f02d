// What the sources of the library share behind CString's interface: scratch string and memory.
// Not installed, and not for use outside the library.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "util/CString.h"

namespace string_internals {

/// In which CString builds the strings that it returns by value: those operations are therefore
/// not reentrant.
extern CString g_sBuffer;

/// `length` + 1 bytes that begin with NUL. Memory that cannot be had, and a length that CString
/// cannot count, end the process as CString::CreateCharString does.
std::unique_ptr<char[]> AllocateText(size_t length);

/// Ends the process with the message of CString::CreateCharString, and status 1.
[[noreturn]] void EndWithoutMemory();

/// What is trimmed from the ends of paths, lines and token lists.
inline constexpr char kBlanks[] = " \t\n";
CString Trimmed(CString text);
/// The part of a text that is left without the blanks at its ends.
std::string_view WithoutBlanks(std::string_view text);

/// In a path that begins with "\\\\", the server's name ends at the first backslash from here on.
inline constexpr int kNetworkServerStart = 4;

// Case by the "C" locale, whatever locale the program has chosen: ASCII letters alone.
inline char UpperCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
inline char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The bytes from `first` up to `last`.
CString TextBetween(const char* first, const char* last);

/// Collects a text of unknown length piece by piece, in linear time.
class TextBuilder {
  public:
    TextBuilder() : m_text(AllocateText(kFirstRoom)) {}

    void Append(const char* text, size_t length);
    void Append(const char* text);
    void Append(char c) {
        if (m_length == m_room) {
            Grow(1);
        }
        m_text[m_length++] = c;
    }
    const char* Text() const {
        m_text[m_length] = '\0';
        return m_text.get();
    }

  private:
    static constexpr size_t kFirstRoom = 120;  // most lines

    void Grow(size_t added);

    std::unique_ptr<char[]> m_text;
    size_t m_length = 0;
    size_t m_room = kFirstRoom;
};

}  // namespace string_internals
