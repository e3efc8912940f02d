// CString: its memory, the raw buffer and its lock, and buffers that callers own.
// Memory that cannot be had ends the process here, for the whole library.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "util/CStringInternals.h"
#include "util/ErrorHandler.h"

// --- Memory -------------------------------------------------------------------------------------

void string_internals::EndWithoutMemory() {
    char where[] = "CString::CreateCharString";
    CErrorHandler().ErrorHandler(CErrorHandler::ERROR_FATAL, CErrorHandler::MEMORY_ALLOCATION_ERROR,
                                 where);
    std::abort();  // the handler does not return from a fatal error
}

namespace {

// What an unsigned length can count, less the NUL where that would exceed the address space.
constexpr size_t kLongestText =
    std::min<size_t>(std::numeric_limits<unsigned>::max(), std::numeric_limits<size_t>::max() - 1);

}  // namespace

char* CString::CreateCharString(unsigned length) {
    const size_t size = size_t{length} + 1;  // 0 where size_t has 32 bits
    char* const text = size == 0 ? nullptr : new (std::nothrow) char[size];
    if (text == nullptr) {
        string_internals::EndWithoutMemory();
    }
    *text = '\0';
    return text;
}

std::unique_ptr<char[]> string_internals::AllocateText(size_t length) {
    if (length > kLongestText) {
        EndWithoutMemory();
    }
    return std::unique_ptr<char[]>(CString::CreateCharString(static_cast<unsigned>(length)));
}

CString string_internals::TextBetween(const char* first, const char* last) {
    TextBuilder text;
    text.Append(first, static_cast<size_t>(last - first));
    return text.Text();
}

/// Makes room for `added` more bytes, and for as many again where the length allows.
void string_internals::TextBuilder::Grow(size_t added) {
    m_room = std::max(m_length + added, std::min(2 * m_room, kLongestText));
    std::unique_ptr<char[]> larger = AllocateText(m_room);
    std::memcpy(larger.get(), m_text.get(), m_length);
    m_text = std::move(larger);
}

void string_internals::TextBuilder::Append(const char* text, size_t length) {
    if (length > m_room - m_length) {
        Grow(length);
    }
    std::memcpy(m_text.get() + m_length, text, length);
    m_length += length;
}

void string_internals::TextBuilder::Append(const char* text) {
    Append(text, std::strlen(text));
}

// --- The raw buffer -----------------------------------------------------------------------------

namespace {

using string_internals::AllocateText;

/// A copy that belongs to the caller.
char* CopyOf(const char* text) {
    const size_t size = std::strlen(text) + 1;
    char* copy = AllocateText(size - 1).release();
    std::memcpy(copy, text, size);
    return copy;
}

// Frees the array of pointers before it stores into it, and ends the text through the array's
// element number `length`: what this overload has always done. Only an allocator that keeps freed
// memory in place makes that work.
#pragma GCC diagnostic push
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif
void StoreThroughDeletedArray(char** pdst, const char* src) {
    const size_t length = std::strlen(src);
    delete[] pdst;
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDelete)
    *pdst = AllocateText(length).release();
    std::memcpy(*pdst, src, length);
    pdst[length][0] = '\0';
    // NOLINTEND(clang-analyzer-cplusplus.NewDelete)
}
#pragma GCC diagnostic pop

}  // namespace

char* CString::GetBuffer() {
    if (m_pBuffer == nullptr) {
        Empty();
    }
    return m_pBuffer.get();
}

const char* CString::GetBuffer() const {
    return m_pBuffer == nullptr ? "" : m_pBuffer.get();
}

char* CString::GetBuffer(unsigned size) {
    if (size == 0) {
        Empty();
    } else {
        std::unique_ptr<char[]> buffer = AllocateText(size);
        const size_t kept = strnlen(std::as_const(*this).GetBuffer(), size);
        std::memcpy(buffer.get(), std::as_const(*this).GetBuffer(), kept);
        buffer[kept] = '\0';
        m_pBuffer = std::move(buffer);
    }
    m_nLockSize = size;
    return m_pBuffer.get();
}

bool CString::ReleaseBuffer() {
    if (IsEmpty()) {
        // Does nothing while locked, so that an empty text keeps the large buffer.
        Empty();
    } else {
        ReplaceBuffer(m_pBuffer.get(), GetLength());
    }
    BufferRelease();
    m_nLockSize = 0;
    return true;
}

char* CString::Get() {
    return GetBuffer();
}

const char* CString::Get() const {
    return GetBuffer();
}

char* CString::Get(unsigned size) {
    return GetBuffer(size);
}

char* CString::c_str() {
    return GetBuffer();
}

char* CString::c_str(unsigned size) {
    return GetBuffer(size);
}

bool CString::Release() {
    return ReleaseBuffer();
}

bool CString::rc_str() {
    return ReleaseBuffer();
}

char* CString::GetCharString() const {
    return CopyOf(m_pBuffer.get());
}

bool CString::CopyString(char* dst, const char* src) {
    delete[] dst;
    // The copy stays with this call's own pointer: callers of this overload get none.
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
    static_cast<void>(CopyOf(src));
    return true;
    // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
}

bool CString::CopyString(char* dst, CString src) {
    return CopyString(dst, src.GetBuffer());
}

bool CString::CopyString(char** pdst, const char* src) {
    StoreThroughDeletedArray(pdst, src);
    return true;
}

bool CString::CopyString(char** pdst, CString src) {
    StoreThroughDeletedArray(pdst, src.GetBuffer());
    return true;
}
