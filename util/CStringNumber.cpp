// CString: numbers as text and text as a number.
// Formats with snprintf: a stream would bring its start-up code into every program.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "util/CString.h"

namespace {

template <typename Number>
void AssignFormatted(CString& string, const char* format, Number value) {
    char text[32];  // "-9223372036854775808" and "-1.17549e-308" are shorter
    std::snprintf(text, sizeof text, format, value);
    string = text;
}

}  // namespace

void CString::ToString(short value) {
    ToString(int{value});
}

void CString::ToString(unsigned short value) {
    ToString(unsigned{value});
}

void CString::ToString(int value) {
    AssignFormatted(*this, "%d", value);
}

void CString::ToString(unsigned value) {
    AssignFormatted(*this, "%u", value);
}

void CString::ToString(long value) {
    AssignFormatted(*this, "%ld", value);
}

void CString::ToString(unsigned long value) {
    AssignFormatted(*this, "%lu", value);
}

void CString::ToString(float value) {
    ToString(double{value});
}

void CString::ToString(double value) {
    AssignFormatted(*this, "%g", value);
    // The decimal point of the "C" locale, whatever locale the program has chosen.
    const CString point = std::localeconv()->decimal_point;
    const int position = point == "." ? -1 : Find(point);
    if (position >= 0) {
        operator=(Left(position) + "." + Mid(position + static_cast<int>(point.GetLength()), 0));
    }
}

void CString::Converter(char* text, int count) {
    if (count <= 0) {
        Empty();
        return;
    }
    const std::unique_ptr<char[]> owned(text);
    const std::unique_ptr<char[]> exact(CreateCharString(static_cast<unsigned>(count)));
    std::memcpy(exact.get(), text, static_cast<size_t>(count));
    exact[static_cast<size_t>(count)] = '\0';
    operator=(exact.get());
}

int CString::ToInt() {
    constexpr int kDecimal = 10;
    if (m_nLockSize != 0 || m_pBuffer == nullptr) {
        return 0;
    }
    // atoi, with a result for numbers out of range too.
    return static_cast<int>(std::strtol(m_pBuffer.get(), nullptr, kDecimal));
}
