// Every operation of CString with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <iosfwd>
#include <type_traits>

#include "util/CString.h"
#include "util/Operation.h"

namespace {

// --- Construction and destruction ---------------------------------------------------------------

static_assert(HasConstructor<CString>);
static_assert(HasConstructor<CString, const CString&>);
static_assert(HasConstructor<CString, const char*>);
static_assert(HasConstructor<CString, char, unsigned>);
static_assert(HasConstructor<CString, short>);
static_assert(HasConstructor<CString, unsigned short>);
static_assert(HasConstructor<CString, int>);
static_assert(HasConstructor<CString, unsigned>);
static_assert(HasConstructor<CString, long>);
static_assert(HasConstructor<CString, unsigned long>);
static_assert(HasConstructor<CString, float>);
static_assert(HasConstructor<CString, double>);
static_assert(std::is_destructible_v<CString>);
static_assert(!std::is_polymorphic_v<CString>);

static_assert(Has<void (CString::*)(), &CString::Initialize>);
static_assert(Has<void (CString::*)(), &CString::BufferInit>);
static_assert(Has<void (CString::*)(), &CString::BufferRelease>);

// --- Numbers ------------------------------------------------------------------------------------

static_assert(Has<void (CString::*)(short), &CString::ToString>);
static_assert(Has<void (CString::*)(unsigned short), &CString::ToString>);
static_assert(Has<void (CString::*)(int), &CString::ToString>);
static_assert(Has<void (CString::*)(unsigned), &CString::ToString>);
static_assert(Has<void (CString::*)(long), &CString::ToString>);
static_assert(Has<void (CString::*)(unsigned long), &CString::ToString>);
static_assert(Has<void (CString::*)(float), &CString::ToString>);
static_assert(Has<void (CString::*)(double), &CString::ToString>);
static_assert(Has<void (CString::*)(char*, int), &CString::Converter>);
static_assert(Has<int (CString::*)(), &CString::ToInt>);

// --- Assigning, appending, removing -------------------------------------------------------------

static_assert(Has<void (CString::*)(const char*), (&CString::operator=)>);
static_assert(Has<void (CString::*)(char), (&CString::operator=)>);
static_assert(Has<void (CString::*)(const CString&), (&CString::operator=)>);
static_assert(Has<void (CString::*)(const char*), (&CString::operator+=)>);
static_assert(Has<void (CString::*)(char), (&CString::operator+=)>);
static_assert(Has<void (CString::*)(const CString&), (&CString::operator+=)>);
static_assert(Has<bool (CString::*)(const CString&), (&CString::operator-=)>);
static_assert(Has<bool (CString::*)(const char*), (&CString::operator-=)>);

// --- Concatenation ------------------------------------------------------------------------------

static_assert(Has<CString (*)(const CString&, const CString&), (&operator+)>);
static_assert(Has<CString (*)(const CString&, const char*), (&operator+)>);
static_assert(Has<CString (*)(const CString&, char), (&operator+)>);
static_assert(Has<CString (*)(const char*, const CString&), (&operator+)>);
static_assert(Has<CString (*)(char, const CString&), (&operator+)>);

// --- Comparison ---------------------------------------------------------------------------------

using CompareStrings = bool (*)(const CString&, const CString&);
using CompareWithText = bool (*)(const CString&, const char*);
using CompareTextWith = bool (*)(const char*, const CString&);

static_assert(Has<CompareStrings, (&operator==)>);
static_assert(Has<CompareWithText, (&operator==)>);
static_assert(Has<CompareTextWith, (&operator==)>);
static_assert(Has<CompareStrings, (&operator!=)>);
static_assert(Has<CompareWithText, (&operator!=)>);
static_assert(Has<CompareTextWith, (&operator!=)>);
static_assert(Has<CompareStrings, (&operator<)>);
static_assert(Has<CompareWithText, (&operator<)>);
static_assert(Has<CompareTextWith, (&operator<)>);
static_assert(Has<CompareStrings, (&operator>)>);
static_assert(Has<CompareWithText, (&operator>)>);
static_assert(Has<CompareTextWith, (&operator>)>);
static_assert(Has<CompareStrings, (&operator<=)>);
static_assert(Has<CompareWithText, (&operator<=)>);
static_assert(Has<CompareTextWith, (&operator<=)>);
static_assert(Has<CompareStrings, (&operator>=)>);
static_assert(Has<CompareWithText, (&operator>=)>);
static_assert(Has<CompareTextWith, (&operator>=)>);

static_assert(Has<int (CString::*)(CString) const, &CString::Compare>);
static_assert(Has<int (CString::*)(CString) const, &CString::CompareNoCase>);
static_assert(Has<bool (CString::*)(CString) const, &CString::Equals>);
static_assert(Has<bool (CString::*)(CString) const, &CString::EqualsNoCase>);

static_assert(Has<std::ostream& (*)(std::ostream&, const CString&), (&operator<<)>);

// --- Elements -----------------------------------------------------------------------------------

static_assert(Has<unsigned (CString::*)() const, &CString::GetLength>);
static_assert(Has<bool (CString::*)() const, &CString::IsEmpty>);
static_assert(Has<char (CString::*)(unsigned) const, &CString::GetAt>);
static_assert(Has<char (CString::*)(unsigned) const, (&CString::operator[])>);
static_assert(Has<char (CString::*)() const, &CString::GetLastChar>);
static_assert(Has<bool (CString::*)(unsigned, char), &CString::SetAt>);
static_assert(Has<void (CString::*)(), &CString::Empty>);
static_assert(Has<char* (CString::*)(char, unsigned), &CString::RepeatChar>);

// --- The raw buffer -----------------------------------------------------------------------------

static_assert(Has<char* (CString::*)(), &CString::GetBuffer>);
static_assert(Has<const char* (CString::*)() const, &CString::GetBuffer>);
static_assert(Has<char* (CString::*)(unsigned), &CString::GetBuffer>);
static_assert(Has<bool (CString::*)(), &CString::ReleaseBuffer>);
static_assert(Has<char* (CString::*)(), &CString::Get>);
static_assert(Has<const char* (CString::*)() const, &CString::Get>);
static_assert(Has<char* (CString::*)(unsigned), &CString::Get>);
static_assert(Has<char* (CString::*)(), &CString::c_str>);
static_assert(Has<char* (CString::*)(unsigned), &CString::c_str>);
static_assert(Has<bool (CString::*)(), &CString::Release>);
static_assert(Has<bool (CString::*)(), &CString::rc_str>);

static_assert(Has<char* (*)(unsigned), &CString::CreateCharString>);
static_assert(Has<char* (CString::*)() const, &CString::GetCharString>);
static_assert(Has<bool (CString::*)(char*, const char*), &CString::CopyString>);
static_assert(Has<bool (CString::*)(char*, CString), &CString::CopyString>);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
static_assert(Has<bool (CString::*)(char**, const char*), &CString::CopyString>);
static_assert(Has<bool (CString::*)(char**, CString), &CString::CopyString>);
#pragma GCC diagnostic pop

// --- Searching ----------------------------------------------------------------------------------

static_assert(Has<int (CString::*)(CString) const, &CString::Find>);
static_assert(Has<int (CString::*)(CString, unsigned) const, &CString::Find>);
static_assert(Has<int (CString::*)(CString) const, &CString::ReverseFind>);
static_assert(Has<bool (CString::*)(CString) const, &CString::IsSubstring>);
static_assert(Has<bool (CString::*)(CString) const, &CString::StartsWith>);
static_assert(Has<bool (CString::*)(CString) const, &CString::EndsWith>);
static_assert(Has<int (CString::*)(CString) const, &CString::GetNumberOccurances>);

// --- Trimming and case --------------------------------------------------------------------------

static_assert(Has<const char* (CString::*)(CString), &CString::TrimLeft>);
static_assert(Has<const char* (CString::*)(CString), &CString::TrimRight>);
static_assert(Has<const char* (CString::*)(CString), &CString::Trim>);
static_assert(Has<CString (CString::*)(), &CString::ToUpper>);
static_assert(Has<CString (CString::*)(unsigned), &CString::ToUpper>);
static_assert(Has<CString (CString::*)(), &CString::ToLower>);
static_assert(Has<CString (CString::*)(unsigned), &CString::ToLower>);
static_assert(Has<CString (CString::*)() const, &CString::Upper>);
static_assert(Has<CString (CString::*)() const, &CString::Lower>);

// --- Parts of the text --------------------------------------------------------------------------

static_assert(Has<CString (CString::*)(int) const, &CString::Left>);
static_assert(Has<CString (CString::*)(int, unsigned) const, &CString::Mid>);
static_assert(Has<CString (CString::*)(unsigned, unsigned) const, &CString::Substring>);
static_assert(Has<CString (CString::*)(unsigned) const, &CString::Right>);
static_assert(Has<bool (CString::*)(CString), &CString::RemoveSubstring>);

// --- Tokens -------------------------------------------------------------------------------------

static_assert(Has<int (CString::*)(CString) const, &CString::GetNumberTokens>);
static_assert(Has<CString (CString::*)(unsigned, CString) const, &CString::GetToken>);
static_assert(Has<int (CString::*)(CString, CString) const, &CString::FindToken>);
static_assert(Has<bool (CString::*)(CString, CString) const, &CString::IsToken>);
static_assert(Has<int (CString::*)(CString, CString) const, &CString::GetTokenNumber>);
static_assert(Has<void (CString::*)(CString, CString), &CString::AddToken>);
static_assert(Has<int (CString::*)(CString, CString, CString), &CString::InsertToken>);
static_assert(Has<void (CString::*)(CString, unsigned, CString), &CString::InsertToken>);
static_assert(Has<void (CString::*)(CString), &CString::SortTokens>);
static_assert(Has<unsigned (CString::*)(CString*, unsigned, CString) const, &CString::ParseTokens>);

static_assert(Has<CString (CString::*)(CString), &CString::StrTok>);
static_assert(Has<CString (CString::*)(), &CString::StrTok>);
static_assert(Has<CString (CString::*)(), &CString::StrTokIt>);
static_assert(Has<CString (CString::*)(CString), &CString::StrBreak>);
static_assert(Has<CString (CString::*)(), &CString::StrBreak>);

}  // namespace
