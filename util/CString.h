// The library's text type: an owned, NUL-terminated buffer that fits its text exactly.
// Keeps no length and no spare room. Not for use from two threads at once, not even on two texts:
// all of them build their results in one place.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>

/// Text as a sequence of bytes ended by NUL. Positions count from 0; a failed search yields -1.
///
/// A string is locked while a caller holds the buffer of GetBuffer(unsigned): assignment,
/// appending, Empty, RepeatChar, SetAt, ToInt, TrimLeft, ToUpper, ToLower and RemoveSubstring
/// then change nothing. TrimRight alone does not look at the lock.
///
/// Memory that cannot be had ends the process with status 1 and a message on standard error.
class CString {
  public:
    // --- Construction -----------------------------------------------------------------------

    CString();
    /// Copies the text alone: neither the lock nor the tokenizer state.
    CString(const CString& other);
    /// Null and "" both give an empty string.
    CString(const char* text);
    /// `count` times the character `c`.
    CString(char c, unsigned count);
    // Numbers as text, in the form that ToString gives them.
    CString(short value);
    CString(unsigned short value);
    CString(int value);
    CString(unsigned value);
    CString(long value);
    CString(unsigned long value);
    CString(float value);
    CString(double value);
    ~CString();

    /// Puts a raw, newly created object into the state without buffers. Frees nothing: on a
    /// string that is in use it abandons what the string holds.
    void Initialize();
    /// Creates the tokenizer strings, unless they exist.
    void BufferInit();
    /// Drops the tokenizer state.
    void BufferRelease();

    // --- Numbers ----------------------------------------------------------------------------

    // Replaces the text by the number: integers in plain decimal, floating-point numbers in
    // general notation with six significant digits ("%g").
    void ToString(short value);
    void ToString(unsigned short value);
    void ToString(int value);
    void ToString(unsigned value);
    void ToString(long value);
    void ToString(unsigned long value);
    void ToString(float value);
    void ToString(double value);
    /// Assigns the first `count` bytes of `text` and frees `text` with array delete.
    /// With a `count` of 0 or less the string becomes empty and nothing is freed.
    void Converter(char* text, int count);
    /// The number at the start of the text as atoi reads it; 0 while locked.
    int ToInt();

    // --- Assignment and appending -----------------------------------------------------------

    // Nothing is returned.
    void operator=(const char* text);
    void operator=(char c);
    void operator=(const CString& other);

    void operator+=(const char* text);
    void operator+=(char c);
    void operator+=(const CString& other);

    /// Removes the first occurrence; true when there was one.
    bool operator-=(const CString& sub);
    bool operator-=(const char* sub);

    // --- Comparison -------------------------------------------------------------------------

    /// Below, equal to or above 0 as this text sorts before, with or after `other`, by bytes.
    int Compare(CString other) const;
    /// The same without regard to the case of ASCII letters.
    int CompareNoCase(CString other) const;
    bool Equals(CString other) const;
    bool EqualsNoCase(CString other) const;

    // --- Elements ---------------------------------------------------------------------------

    unsigned GetLength() const;
    bool IsEmpty() const;
    /// The character at `index`, NUL at and past the end.
    char GetAt(unsigned index) const;
    char operator[](unsigned index) const;
    /// The last character, NUL for an empty text.
    char GetLastChar() const;
    /// Replaces one character; NUL cuts the text there. False while locked or past the end.
    bool SetAt(unsigned index, char c);
    void Empty();
    /// Replaces the text by `count` times `c`. Returns the buffer.
    char* RepeatChar(char c, unsigned count);

    // --- The raw buffer ---------------------------------------------------------------------

    char* GetBuffer();
    const char* GetBuffer() const;
    /// A buffer for up to `size` characters and the NUL, holding the text cut to that size.
    /// Locks the string until ReleaseBuffer(). A `size` of 0 empties a string that is not locked,
    /// and unlocks one that is, which keeps its text.
    char* GetBuffer(unsigned size);
    /// Ends the lock and shrinks the buffer to the text that it now holds; always true.
    /// An empty text keeps the large buffer.
    bool ReleaseBuffer();

    // The same under other names.
    char* Get();
    const char* Get() const;
    char* Get(unsigned size);
    char* c_str();
    char* c_str(unsigned size);
    bool Release();
    bool rc_str();

    /// `length` + 1 bytes that begin with NUL. The caller frees them with array delete.
    static char* CreateCharString(unsigned length);
    /// A copy of the text. The caller frees it with array delete.
    char* GetCharString() const;
    /// Frees `dst` with array delete, makes a copy of `src` and loses it: `dst` is a copy of the
    /// caller's pointer. Always true.
    bool CopyString(char* dst, const char* src);
    bool CopyString(char* dst, CString src);
    /// Deletes the array of pointers at `pdst` and then stores through it.
    [[deprecated("writes through the array that it has just deleted")]] bool CopyString(
        char** pdst, const char* src);
    [[deprecated("writes through the array that it has just deleted")]] bool CopyString(
        char** pdst, CString src);

    // --- Searching --------------------------------------------------------------------------

    /// Where `sub` first occurs; -1 when it does not, or when either text is empty.
    int Find(CString sub) const;
    /// Where the nth occurrence starts, counted from 1 and overlapping ones included.
    /// An `nth` of 0 asks for the last one.
    int Find(CString sub, unsigned nth) const;
    /// Where the last occurrence starts.
    int ReverseFind(CString sub) const;
    bool IsSubstring(CString sub) const;
    /// False for an empty prefix.
    bool StartsWith(CString prefix) const;
    /// False for an empty suffix.
    bool EndsWith(CString suffix) const;
    /// The number of occurrences that do not overlap, unlike those that Find counts.
    int GetNumberOccurances(CString sub) const;

    // --- Trimming: `set` is a set of characters ---------------------------------------------

    /// Returns the new text. While locked, changes nothing and returns an empty text.
    const char* TrimLeft(CString set);
    /// Returns the new text. Trims a locked string too.
    const char* TrimRight(CString set);
    const char* Trim(CString set);

    // --- Case -------------------------------------------------------------------------------

    /// Converts this string and returns a copy of it; an empty string while locked.
    CString ToUpper();
    CString ToLower();
    /// Converts the character at `index`; an empty string, and no change, past the end.
    CString ToUpper(unsigned index);
    CString ToLower(unsigned index);
    /// A converted copy; this string stays as it is, locked or not.
    CString Upper() const;
    CString Lower() const;

    // --- Parts of the text ------------------------------------------------------------------

    /// The first `count` characters; a negative `count` gives the whole text.
    CString Left(int count) const;
    /// `count` characters from `start` on; a `count` of 0 means up to the end.
    /// A negative `start` is read as 0.
    CString Mid(int start, unsigned count) const;
    /// Mid with an unsigned start: `count` is a length here too.
    CString Substring(unsigned start, unsigned count) const;
    /// The last `count` characters.
    CString Right(unsigned count) const;
    /// Removes the first occurrence of `sub`; true when there was one.
    bool RemoveSubstring(CString sub);

    // --- The text as a list of tokens, numbered from 0, joined by a delimiter text -----------

    /// 0 for an empty text, unless it holds one empty token.
    int GetNumberTokens(CString delimiter) const;
    /// The token without the blanks, tabs and newlines at the ends of the whole text; empty when
    /// there is no such token. Occurrences of the delimiter count as Find counts them.
    CString GetToken(unsigned index, CString delimiter) const;
    /// The character position, in the text trimmed of blanks, tabs and newlines, at which the
    /// first token equal to `token` starts: no token number. -1 when there is none.
    int FindToken(CString token, CString delimiter) const;
    bool IsToken(CString token, CString delimiter) const;
    /// The number of the first token equal to `token`; the number of tokens when there is none.
    int GetTokenNumber(CString token, CString delimiter) const;
    /// Appends a token. A list of one empty token differs from an empty list, though both have
    /// an empty text.
    void AddToken(CString token, CString delimiter);
    /// Inserts a token before the first one equal to `before`, at the end when there is none and
    /// in front when `before` is empty. Returns the new token's number.
    int InsertToken(CString token, CString before, CString delimiter);
    /// Inserts a token before the one of that number, or at the end.
    void InsertToken(CString token, unsigned index, CString delimiter);
    /// Sorts the tokens by bytes, keeping the order of equal ones. Takes quadratic time.
    void SortTokens(CString delimiter);
    /// Stores the first tokens, `max` at most, and returns how many there are in the array.
    unsigned ParseTokens(CString* array, unsigned max, CString delimiter) const;

    // --- The running tokenizer, which leaves the text alone and trims nothing -----------------

    /// Starts a run over this text and returns its first token.
    CString StrTok(CString delimiter);
    /// The next token of the run; empty behind the last one.
    CString StrTok();
    /// Cuts the current token at the delimiter of the run, if it holds it, and returns the head.
    CString StrTokIt();
    /// The text up to the first delimiter and with it; the whole text when it has none.
    CString StrBreak(CString delimiter);
    /// What follows the delimiter of the last break.
    CString StrBreak();

  private:
    void AbandonTokenizer();
    void ReplaceBuffer(const char* text, size_t length);
    const char* RemainderText() const;
    void SetRemainder(const char* text);
    void TakeFromRemainder();
    CString ConvertAll(char (*convert)(char));
    CString ConvertAt(unsigned index, char (*convert)(char));

    std::unique_ptr<char[]> m_pBuffer;  // null only after Initialize()
    unsigned m_nLockSize = 0;
    bool m_bBuffersInit = false;  // whether the three strings of the tokenizer exist; all or none
    bool m_bEmptyToken = false;
    std::unique_ptr<CString> m_psToken;
    std::unique_ptr<CString> m_psRemainder;  // done with up to m_nRemainderStart
    size_t m_nRemainderStart = 0;
    std::unique_ptr<CString> m_psDelimiter;
};

CString operator+(const CString& left, const CString& right);
CString operator+(const CString& left, const char* right);
CString operator+(const CString& left, char right);
CString operator+(const char* left, const CString& right);
CString operator+(char left, const CString& right);

// By bytes. A null pointer counts as less than every string, and is equal to none.
bool operator==(const CString& left, const CString& right);
bool operator==(const CString& left, const char* right);
bool operator==(const char* left, const CString& right);
bool operator!=(const CString& left, const CString& right);
bool operator!=(const CString& left, const char* right);
bool operator!=(const char* left, const CString& right);
bool operator<(const CString& left, const CString& right);
bool operator<(const CString& left, const char* right);
bool operator<(const char* left, const CString& right);
bool operator>(const CString& left, const CString& right);
bool operator>(const CString& left, const char* right);
bool operator>(const char* left, const CString& right);
bool operator<=(const CString& left, const CString& right);
bool operator<=(const CString& left, const char* right);
bool operator<=(const char* left, const CString& right);
bool operator>=(const CString& left, const CString& right);
bool operator>=(const CString& left, const char* right);
bool operator>=(const char* left, const CString& right);

/// Defined in a file of its own, so that a program without streams links none.
std::ostream& operator<<(std::ostream& stream, const CString& text);
