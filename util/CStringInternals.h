// What the sources of the library share behind CString's interface: scratch string and memory.
// Not installed, and not for use outside the library.
#pragma once

#include <cstddef>
#include <memory>

#include "util/CString.h"

namespace string_internals {

/// In which CString builds the strings that it returns by value: those operations are therefore
/// not reentrant.
extern CString g_sBuffer;

/// `length` + 1 bytes that begin with NUL. Memory that cannot be had, and a length that CString
/// cannot count, end the process as CString::CreateCharString does.
std::unique_ptr<char[]> AllocateText(size_t length);

/// Ends the process with the message and the status of missing memory.
[[noreturn]] void EndWithoutMemory();

// Case by the "C" locale, whatever locale the program has chosen: ASCII letters alone.
char UpperCase(char c);
char LowerCase(char c);

/// The bytes from `first` up to `last`.
CString TextBetween(const char* first, const char* last);

/// Collects a text of unknown length piece by piece, in linear time.
class TextBuilder {
  public:
    TextBuilder() : m_text(AllocateText(0)) {}

    void Append(const char* text, size_t length);
    void Append(const char* text);
    void Append(char c) { Append(&c, 1); }
    const char* Text() const { return m_text.get(); }

  private:
    std::unique_ptr<char[]> m_text;
    size_t m_length = 0;
    size_t m_room = 0;
};

}  // namespace string_internals
