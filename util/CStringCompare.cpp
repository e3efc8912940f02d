// CString: comparison and order.
// Compares bytes; a null pointer sorts before every string.
#include <cstring>

#include "util/CStringInternals.h"

namespace {

/// Below, equal to or above 0 as `left` sorts before, with or after `right`.
/// Requires: at most one of the two is null.
int Order(const char* left, const char* right) {
    if (left == nullptr) {
        return -1;
    }
    if (right == nullptr) {
        return 1;
    }
    return std::strcmp(left, right);
}

/// strcasecmp in the "C" locale: letters sort as small ones.
int OrderNoCase(const char* left, const char* right) {
    using string_internals::LowerCase;
    while (*left != '\0' && LowerCase(*left) == LowerCase(*right)) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(LowerCase(*left)) -
           static_cast<unsigned char>(LowerCase(*right));
}

}  // namespace

int CString::Compare(CString other) const {
    return m_pBuffer == nullptr ? 0 : std::strcmp(m_pBuffer.get(), other.GetBuffer());
}

int CString::CompareNoCase(CString other) const {
    return m_pBuffer == nullptr ? 0 : OrderNoCase(m_pBuffer.get(), other.GetBuffer());
}

bool CString::Equals(CString other) const {
    return Compare(other) == 0;
}

bool CString::EqualsNoCase(CString other) const {
    return CompareNoCase(other) == 0;
}

bool operator==(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) == 0;
}

bool operator==(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) == 0;
}

bool operator==(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) == 0;
}

bool operator!=(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) != 0;
}

bool operator!=(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) != 0;
}

bool operator!=(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) != 0;
}

bool operator<(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) < 0;
}

bool operator<(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) < 0;
}

bool operator<(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) < 0;
}

bool operator>(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) > 0;
}

bool operator>(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) > 0;
}

bool operator>(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) > 0;
}

bool operator<=(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) <= 0;
}

bool operator<=(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) <= 0;
}

bool operator<=(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) <= 0;
}

bool operator>=(const CString& left, const CString& right) {
    return Order(left.GetBuffer(), right.GetBuffer()) >= 0;
}

bool operator>=(const CString& left, const char* right) {
    return Order(left.GetBuffer(), right) >= 0;
}

bool operator>=(const char* left, const CString& right) {
    return Order(left, right.GetBuffer()) >= 0;
}
