// CString: construction and end, assignment, appending and single characters.
// Keeps no spare room: every change allocates exactly what the new text needs.
#include "util/CString.h"

#include <cstring>
#include <new>

#include "util/CStringInternals.h"

using string_internals::AllocateText;
using string_internals::g_sBuffer;

// First to be constructed and last to be destroyed: other static objects use it too.
[[gnu::init_priority(101)]] CString string_internals::g_sBuffer;

// --- Construction -------------------------------------------------------------------------------

CString::CString() : m_pBuffer(CreateCharString(0)) {}

CString::CString(const CString& other) {
    operator=(other);
}

CString::CString(const char* text) {
    operator=(text);
}

CString::CString(char c, unsigned count) {
    if (count == 1) {
        operator=(c);
    } else {
        RepeatChar(c, count);
    }
}

CString::CString(short value) {
    ToString(value);
}

CString::CString(unsigned short value) {
    ToString(value);
}

CString::CString(int value) {
    ToString(value);
}

CString::CString(unsigned value) {
    ToString(value);
}

CString::CString(long value) {
    ToString(value);
}

CString::CString(unsigned long value) {
    ToString(value);
}

CString::CString(float value) {
    ToString(value);
}

CString::CString(double value) {
    ToString(value);
}

// Most strings never had a tokenizer: that is asked once. What follows spares the pointers, which
// are null by then, the asking that their own destructors would do.
CString::~CString() {
    if (m_bBuffersInit) {
        BufferRelease();
    }
    AbandonTokenizer();
}

void CString::Initialize() {
    // Released, not freed: the members of a raw object point nowhere.
    static_cast<void>(m_pBuffer.release());
    m_nLockSize = 0;
    m_bBuffersInit = false;
    m_bEmptyToken = false;
    AbandonTokenizer();
    m_nRemainderStart = 0;
}

void CString::BufferInit() {
    if (m_bBuffersInit) {
        return;
    }
    m_bBuffersInit = true;
    for (auto* tokenizerString : {&m_psToken, &m_psRemainder, &m_psDelimiter}) {
        tokenizerString->reset(new (std::nothrow) CString);
        if (*tokenizerString == nullptr) {
            string_internals::EndWithoutMemory();
        }
    }
}

void CString::BufferRelease() {
    m_psToken.reset();
    m_psRemainder.reset();
    m_psDelimiter.reset();
    m_nRemainderStart = 0;
    m_bBuffersInit = false;
}

/// Sets the pointers to null, whatever they point to.
void CString::AbandonTokenizer() {
    static_cast<void>(m_psToken.release());
    static_cast<void>(m_psRemainder.release());
    static_cast<void>(m_psDelimiter.release());
}

// --- Assignment and appending -------------------------------------------------------------------

/// Replaces the text by the first `length` bytes of `text`, which may lie in this string's own
/// buffer. Does not look at the lock.
void CString::ReplaceBuffer(const char* text, size_t length) {
    std::unique_ptr<char[]> buffer = AllocateText(length);
    std::memcpy(buffer.get(), text, length);
    buffer[length] = '\0';
    m_pBuffer = std::move(buffer);
}

void CString::operator=(const char* text) {
    if (m_nLockSize != 0) {
        return;
    }
    if (text == nullptr || *text == '\0') {
        Empty();
    } else {
        ReplaceBuffer(text, std::strlen(text));
    }
}

void CString::operator=(char c) {
    if (m_nLockSize == 0) {
        ReplaceBuffer(&c, 1);
    }
}

void CString::operator=(const CString& other) {
    operator=(other.GetBuffer());
}

void CString::operator+=(const char* text) {
    if (m_nLockSize != 0 || text == nullptr || *text == '\0') {
        return;
    }
    if (IsEmpty()) {
        operator=(text);
        return;
    }
    const size_t oldLength = std::strlen(m_pBuffer.get());
    const size_t addedLength = std::strlen(text);
    std::unique_ptr<char[]> buffer = AllocateText(oldLength + addedLength);
    std::memcpy(buffer.get(), m_pBuffer.get(), oldLength);
    std::memcpy(buffer.get() + oldLength, text, addedLength + 1);
    m_pBuffer = std::move(buffer);
}

void CString::operator+=(char c) {
    const char text[] = {c, '\0'};
    operator+=(text);
}

void CString::operator+=(const CString& other) {
    operator+=(other.GetBuffer());
}

bool CString::operator-=(const CString& sub) {
    return RemoveSubstring(sub);
}

bool CString::operator-=(const char* sub) {
    return RemoveSubstring(sub);
}

CString operator+(const CString& left, const CString& right) {
    return left + right.GetBuffer();
}

CString operator+(const CString& left, const char* right) {
    return left.GetBuffer() + CString(right);
}

CString operator+(const CString& left, char right) {
    return left.GetBuffer() + CString(right, 1);
}

CString operator+(const char* left, const CString& right) {
    g_sBuffer = left;
    g_sBuffer += right;
    return g_sBuffer;
}

CString operator+(char left, const CString& right) {
    g_sBuffer = left;
    g_sBuffer += right;
    return g_sBuffer;
}

// --- Elements -----------------------------------------------------------------------------------

unsigned CString::GetLength() const {
    return static_cast<unsigned>(std::strlen(GetBuffer()));
}

bool CString::IsEmpty() const {
    return *GetBuffer() == '\0';
}

char CString::GetAt(unsigned index) const {
    return index < GetLength() ? m_pBuffer[index] : '\0';
}

char CString::operator[](unsigned index) const {
    return GetAt(index);
}

char CString::GetLastChar() const {
    return IsEmpty() ? '\0' : m_pBuffer[GetLength() - 1];
}

bool CString::SetAt(unsigned index, char c) {
    if (m_nLockSize != 0 || index >= GetLength()) {
        return false;
    }
    m_pBuffer[index] = c;
    return true;
}

void CString::Empty() {
    if (m_nLockSize != 0) {
        return;
    }
    m_bEmptyToken = false;
    m_pBuffer = AllocateText(0);
}

char* CString::RepeatChar(char c, unsigned count) {
    if (m_nLockSize == 0) {
        if (count == 0) {
            Empty();
        } else {
            m_pBuffer = AllocateText(count);
            std::memset(m_pBuffer.get(), c, count);
            m_pBuffer[count] = '\0';
        }
    }
    return m_pBuffer.get();
}
