// CString: searching, trimming, case and parts of the text.
// Positions count from 0. Out-of-range positions give empty results, never an error.
#include <algorithm>
#include <climits>
#include <cstring>

#include "util/CString.h"
#include "util/CStringInternals.h"

using string_internals::g_sBuffer;
using string_internals::LowerCase;
using string_internals::UpperCase;

namespace {

/// Length of the longest end of `text` that consists of characters of `set`.
size_t LengthOfTail(const char* text, const char* set) {
    size_t length = std::strlen(text);
    const size_t whole = length;
    while (length > 0 && std::strchr(set, text[length - 1]) != nullptr) {
        --length;
    }
    return whole - length;
}

}  // namespace

// --- Searching ----------------------------------------------------------------------------------

int CString::Find(CString sub) const {
    return Find(sub, 1);
}

int CString::Find(CString sub, unsigned nth) const {
    if (sub.IsEmpty()) {
        return -1;
    }
    const char* const text = GetBuffer();
    int position = -1;
    unsigned count = 0;
    for (const char* hit = std::strstr(text, sub.GetBuffer()); hit != nullptr;
         hit = std::strstr(hit + 1, sub.GetBuffer())) {
        position = static_cast<int>(hit - text);
        if (++count == nth) {
            return position;
        }
    }
    return nth == 0 ? position : -1;
}

int CString::ReverseFind(CString sub) const {
    return Find(sub, 0);
}

bool CString::IsSubstring(CString sub) const {
    return Find(sub) >= 0;
}

bool CString::StartsWith(CString prefix) const {
    return !prefix.IsEmpty() &&
           std::strncmp(GetBuffer(), prefix.GetBuffer(), prefix.GetLength()) == 0;
}

bool CString::EndsWith(CString suffix) const {
    const unsigned length = GetLength();
    const unsigned suffixLength = suffix.GetLength();
    return suffixLength > 0 && suffixLength <= length &&
           std::strcmp(GetBuffer() + (length - suffixLength), suffix.GetBuffer()) == 0;
}

int CString::GetNumberOccurances(CString sub) const {
    if (sub.IsEmpty()) {
        return 0;
    }
    const unsigned length = sub.GetLength();
    int count = 0;
    for (const char* hit = std::strstr(GetBuffer(), sub.GetBuffer()); hit != nullptr;
         hit = std::strstr(hit + length, sub.GetBuffer())) {
        ++count;
    }
    return count;
}

// --- Trimming -----------------------------------------------------------------------------------

const char* CString::TrimLeft(CString set) {
    if (m_nLockSize != 0) {
        return "";
    }
    const char* kept = GetBuffer() + std::strspn(GetBuffer(), set.GetBuffer());
    operator=(kept);
    return m_pBuffer.get();
}

const char* CString::TrimRight(CString set) {
    const size_t kept = GetLength() - LengthOfTail(GetBuffer(), set.GetBuffer());
    if (kept == 0) {
        Empty();
    } else {
        ReplaceBuffer(m_pBuffer.get(), kept);
    }
    return m_pBuffer.get();
}

std::string_view string_internals::WithoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    // Behind npos comes 0: of blanks alone nothing is left.
    text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
    return text;
}

CString string_internals::Trimmed(CString text) {
    text.Trim(kBlanks);
    return text;
}

const char* CString::Trim(CString set) {
    TrimLeft(set);
    TrimRight(set);
    return GetBuffer();
}

// --- Case ---------------------------------------------------------------------------------------

/// Converts every character and returns a copy; changes nothing and returns an empty string while
/// locked.
CString CString::ConvertAll(char (*convert)(char)) {
    if (m_nLockSize != 0 || m_pBuffer == nullptr) {
        return {};
    }
    char* text = m_pBuffer.get();
    std::transform(text, text + GetLength(), text, convert);
    g_sBuffer = text;
    return g_sBuffer;
}

/// Converts the character at `index` and returns a copy; changes nothing and returns an empty
/// string while locked or past the end.
CString CString::ConvertAt(unsigned index, char (*convert)(char)) {
    if (!SetAt(index, convert(GetAt(index)))) {
        return {};
    }
    g_sBuffer = *this;
    return g_sBuffer;
}

CString CString::ToUpper() {
    return ConvertAll(UpperCase);
}

CString CString::ToLower() {
    return ConvertAll(LowerCase);
}

CString CString::ToUpper(unsigned index) {
    return ConvertAt(index, UpperCase);
}

CString CString::ToLower(unsigned index) {
    return ConvertAt(index, LowerCase);
}

CString CString::Upper() const {
    return CString(*this).ToUpper();
}

CString CString::Lower() const {
    return CString(*this).ToLower();
}

// --- Parts of the text --------------------------------------------------------------------------

CString CString::Left(int count) const {
    const unsigned length = GetLength();
    const unsigned kept = count < 0 ? length : std::min(static_cast<unsigned>(count), length);
    g_sBuffer.ReplaceBuffer(GetBuffer(), kept);
    return g_sBuffer;
}

CString CString::Mid(int start, unsigned count) const {
    const unsigned length = GetLength();
    const unsigned first = std::min(static_cast<unsigned>(std::max(start, 0)), length);
    const unsigned rest = length - first;
    g_sBuffer.ReplaceBuffer(GetBuffer() + first, count == 0 ? rest : std::min(count, rest));
    return g_sBuffer;
}

CString CString::Substring(unsigned start, unsigned count) const {
    return Mid(static_cast<int>(std::min<unsigned>(start, INT_MAX)), count);
}

CString CString::Right(unsigned count) const {
    const unsigned length = GetLength();
    g_sBuffer = GetBuffer() + (length - std::min(count, length));
    return g_sBuffer;
}

bool CString::RemoveSubstring(CString sub) {
    const int position = m_nLockSize != 0 ? -1 : Find(sub);
    if (position < 0) {
        return false;
    }
    const CString head = Left(position);
    operator=(head + Mid(position + static_cast<int>(sub.GetLength()), 0));
    return true;
}
