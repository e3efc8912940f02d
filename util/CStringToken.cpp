// CString: the text as a list of tokens, and the running tokenizer.
// The list operations keep no state but the mark of a single empty token.
#include <algorithm>
#include <cstring>

#include "util/CStringInternals.h"

namespace {

using string_internals::g_sBuffer;
using string_internals::Trimmed;

/// Hands out the tokens of a text in order, each as GetToken gives it, in one pass.
class TokenCursor {
  public:
    TokenCursor(const CString& text, const CString& delimiter)
        : m_text(Trimmed(text)), m_delimiter(delimiter) {
        m_token = m_delimiter.IsEmpty() ? nullptr : m_text.GetBuffer();
        m_searchFrom = m_token;
    }

    bool IsInside() const { return m_token != nullptr; }

    /// The current token, empty behind the last one; the next one becomes current.
    CString Take() {
        if (m_token == nullptr) {
            return {};
        }
        const char* end = std::strstr(m_token, m_delimiter.GetBuffer());
        const CString token =
            end == nullptr ? CString(m_token) : string_internals::TextBetween(m_token, end);
        Advance();
        return token;
    }

  private:
    /// Occurrences of the delimiter may overlap: the next one is looked for one character behind
    /// the start of the last.
    void Advance() {
        const char* occurrence = std::strstr(m_searchFrom, m_delimiter.GetBuffer());
        if (occurrence == nullptr) {
            m_token = nullptr;
            return;
        }
        m_token = occurrence + m_delimiter.GetLength();
        m_searchFrom = occurrence + 1;
    }

    CString m_text;
    CString m_delimiter;
    const char* m_token;       // null behind the last token
    const char* m_searchFrom;  // where the delimiter behind the current token may begin
};

/// Joins tokens as a run of AddToken on an empty list does, in linear time.
class TokenJoiner {
  public:
    explicit TokenJoiner(const CString& delimiter) : m_delimiter(delimiter) {}

    void Add(const CString& token) {
        if (m_count++ > 0) {
            m_text.Append(m_delimiter.GetBuffer());
        }
        m_text.Append(token.GetBuffer());
    }
    const char* Text() const { return m_text.Text(); }

  private:
    CString m_delimiter;
    string_internals::TextBuilder m_text;
    int m_count = 0;
};

}  // namespace

int CString::GetNumberTokens(CString delimiter) const {
    if (m_bEmptyToken) {
        return 1;
    }
    return IsEmpty() || delimiter.IsEmpty() ? 0 : GetNumberOccurances(delimiter) + 1;
}

CString CString::GetToken(unsigned index, CString delimiter) const {
    TokenCursor tokens(*this, delimiter);
    for (unsigned i = 0; i < index && tokens.IsInside(); ++i) {
        tokens.Take();
    }
    g_sBuffer = tokens.Take();
    return g_sBuffer;
}

int CString::FindToken(CString token, CString delimiter) const {
    if (m_bEmptyToken) {
        return token.IsEmpty() ? 0 : -1;
    }
    const CString trimmed = Trimmed(*this);
    if (delimiter.IsEmpty() || trimmed.IsEmpty()) {
        return -1;
    }
    const char* const text = trimmed.GetBuffer();
    const size_t length = token.GetLength();
    for (const char* start = text; start != nullptr;) {
        const char* end = std::strstr(start, delimiter.GetBuffer());
        const size_t found = end == nullptr ? std::strlen(start) : static_cast<size_t>(end - start);
        if (found == length && std::memcmp(start, token.GetBuffer(), length) == 0) {
            return static_cast<int>(start - text);
        }
        start = end == nullptr ? nullptr : end + delimiter.GetLength();
    }
    return -1;
}

bool CString::IsToken(CString token, CString delimiter) const {
    return FindToken(token, delimiter) >= 0;
}

int CString::GetTokenNumber(CString token, CString delimiter) const {
    const int count = GetNumberTokens(delimiter);
    TokenCursor tokens(*this, delimiter);
    int number = 0;
    while (number < count && tokens.Take() != token) {
        ++number;
    }
    return number;
}

void CString::AddToken(CString token, CString delimiter) {
    if (m_bEmptyToken || !IsEmpty()) {
        operator+=(delimiter);
    }
    m_bEmptyToken = !m_bEmptyToken && IsEmpty() && token.IsEmpty();
    operator+=(token);
}

int CString::InsertToken(CString token, CString before, CString delimiter) {
    const int count = GetNumberTokens(delimiter);
    TokenCursor tokens(*this, delimiter);
    TokenJoiner list(delimiter);
    int position = -1;
    for (int i = 0; i < count; ++i) {
        const CString current = tokens.Take();
        if (position < 0 && (before.IsEmpty() || current == before)) {
            position = i;
            list.Add(token);
        }
        list.Add(current);
    }
    if (position < 0) {
        position = count;
        list.Add(token);
    }
    operator=(list.Text());
    return position;
}

void CString::InsertToken(CString token, unsigned index, CString delimiter) {
    const auto count = static_cast<unsigned>(GetNumberTokens(delimiter));
    TokenCursor tokens(*this, delimiter);
    TokenJoiner list(delimiter);
    for (unsigned i = 0; i < count; ++i) {
        if (i == index) {
            list.Add(token);
        }
        list.Add(tokens.Take());
    }
    if (index >= count) {
        list.Add(token);
    }
    operator=(list.Text());
}

void CString::SortTokens(CString delimiter) {
    const int count = GetNumberTokens(delimiter);
    TokenCursor unsorted(*this, delimiter);
    CString sorted;
    for (int i = 0; i < count; ++i) {
        const CString token = unsorted.Take();
        const int sortedCount = sorted.GetNumberTokens(delimiter);
        TokenCursor candidates(sorted, delimiter);
        CString greater;
        int position = 0;
        while (position < sortedCount && (greater = candidates.Take(), greater <= token)) {
            ++position;
        }
        if (position < sortedCount) {
            sorted.InsertToken(token, greater, delimiter);
        } else {
            sorted.AddToken(token, delimiter);
        }
    }
    if (!sorted.IsEmpty()) {
        operator=(sorted);
    }
}

unsigned CString::ParseTokens(CString* array, unsigned max, CString delimiter) const {
    const auto count = std::min(max, static_cast<unsigned>(GetNumberTokens(delimiter)));
    TokenCursor tokens(*this, delimiter);
    for (unsigned i = 0; i < count; ++i) {
        array[i] = tokens.Take();
        if (array + i == this && m_nLockSize == 0) {
            return i + 1;  // the list itself is now this one token
        }
    }
    return count;
}

// --- The running tokenizer ----------------------------------------------------------------------

// What is done with stays in front of the remainder, so that a run over a long list does not copy
// its rest at every token.
const char* CString::RemainderText() const {
    return m_psRemainder->GetBuffer() + m_nRemainderStart;
}

void CString::SetRemainder(const char* text) {
    *m_psRemainder = text;
    m_nRemainderStart = 0;
}

/// Moves the text before the next delimiter, or all of it, from the remainder to the token.
void CString::TakeFromRemainder() {
    const char* text = RemainderText();
    const char* end =
        m_psDelimiter->IsEmpty() ? nullptr : std::strstr(text, m_psDelimiter->GetBuffer());
    if (end == nullptr) {
        *m_psToken = text;
        SetRemainder("");
    } else {
        m_psToken->ReplaceBuffer(text, static_cast<size_t>(end - text));
        m_nRemainderStart += static_cast<size_t>(end - text) + m_psDelimiter->GetLength();
    }
}

CString CString::StrTok(CString delimiter) {
    BufferInit();
    SetRemainder(GetBuffer());
    *m_psDelimiter = delimiter;
    TakeFromRemainder();
    return *m_psToken;
}

CString CString::StrTok() {
    BufferInit();
    TakeFromRemainder();
    return *m_psToken;
}

CString CString::StrTokIt() {
    BufferInit();
    const int position = m_psToken->Find(*m_psDelimiter);
    if (position >= 0) {
        SetRemainder(m_psToken->GetBuffer() + position + m_psDelimiter->GetLength());
        *m_psToken = m_psToken->Left(position);
    }
    return *m_psToken;
}

CString CString::StrBreak(CString delimiter) {
    BufferInit();
    const int position = Find(delimiter);
    const unsigned length =
        position < 0 ? GetLength() : static_cast<unsigned>(position) + delimiter.GetLength();
    SetRemainder(position < 0 ? "" : GetBuffer() + length);
    *m_psToken = Left(static_cast<int>(length));
    return *m_psToken;
}

CString CString::StrBreak() {
    BufferInit();
    return RemainderText();
}
