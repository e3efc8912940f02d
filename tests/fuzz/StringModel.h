// CString as its documentation tells it, on std::string: simple, slow and easy to believe.
// Holds what a string's later answers depend on: text, lock, token mark and tokenizer.
#pragma once

#include <string>

namespace fuzz {

struct StringModel {
    std::string text;
    unsigned lock = 0;
    bool emptyToken = false;
    std::string token;
    std::string remainder;
    std::string delimiter;

    // --- Changes ----------------------------------------------------------------------------

    void Empty();
    void Assign(const std::string& other);
    void Append(const std::string& other);
    void Repeat(char c, unsigned count);
    bool SetAt(unsigned index, char c);
    bool Remove(const std::string& sub);
    /// Null, as an empty text is returned, while locked.
    bool TrimLeft(const std::string& set);
    void TrimRight(const std::string& set);
    bool Convert(unsigned first, unsigned last, int (*convert)(int));
    void Lock(unsigned size);
    void Release();

    // --- Questions --------------------------------------------------------------------------

    int Find(const std::string& sub, unsigned nth) const;
    int CountOccurrences(const std::string& sub) const;
    std::string Left(int count) const;
    std::string Mid(int start, unsigned count) const;
    std::string Right(unsigned count) const;

    // --- Tokens -----------------------------------------------------------------------------

    int CountTokens(const std::string& delim) const;
    std::string GetToken(unsigned index, const std::string& delim) const;
    int FindToken(const std::string& wanted, const std::string& delim) const;
    int NumberOfToken(const std::string& wanted, const std::string& delim) const;
    void AddToken(const std::string& added, const std::string& delim);
    int InsertBefore(const std::string& added, const std::string& before, const std::string& delim);
    void InsertAt(const std::string& added, unsigned index, const std::string& delim);
    void Sort(const std::string& delim);
    std::string StartTokens(const std::string& delim);
    std::string NextToken();
    std::string CutToken();
    std::string Break(const std::string& delim);
};

}  // namespace fuzz
