// Every operation of CIniFile with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <type_traits>

#include "util/IniFile.h"
#include "util/Operation.h"

namespace {

using Line = CIniFile::IniLineDef;

static_assert(HasConstructor<CIniFile, CString, bool>);
static_assert(HasConstructor<CIniFile, CDir, bool>);
static_assert(Has<void (CIniFile::*)(CString, bool), &CIniFile::Initialize>);
static_assert(std::is_destructible_v<CIniFile>);
static_assert(!std::is_polymorphic_v<CIniFile>);
static_assert(!std::is_copy_constructible_v<CIniFile>);
static_assert(!std::is_copy_assignable_v<CIniFile>);

static_assert(Has<bool (CIniFile::*)() const, &CIniFile::Exists>);

// --- Entries ------------------------------------------------------------------------------------

static_assert(Has<CString (CIniFile::*)(CString, CString), &CIniFile::ReadString>);
static_assert(Has<CString (CIniFile::*)(CString, CString, CString), &CIniFile::ReadString>);
static_assert(Has<int (CIniFile::*)(CString, CString), &CIniFile::ReadInteger>);
static_assert(Has<int (CIniFile::*)(CString, CString, int), &CIniFile::ReadInteger>);
static_assert(
    Has<bool (CIniFile::*)(CString, CString, CString, bool, bool), &CIniFile::WriteString>);
static_assert(Has<bool (CIniFile::*)(CString, CString, int), &CIniFile::WriteInteger>);
static_assert(Has<bool (CIniFile::*)(CString, CString, int, bool), &CIniFile::WriteInteger>);
static_assert(
    Has<bool (CIniFile::*)(CString, CString, CString, bool, bool), &CIniFile::RemoveString>);

// --- The file -----------------------------------------------------------------------------------

static_assert(Has<bool (CIniFile::*)(), &CIniFile::Flush>);
static_assert(Has<bool (CIniFile::*)(), &CIniFile::WriteIniFile>);
static_assert(Has<bool (CIniFile::*)(CString), &CIniFile::WriteIniFile>);
static_assert(Has<bool (CIniFile::*)(CString), &CIniFile::ReadIniFile>);

// --- The steps ----------------------------------------------------------------------------------

static_assert(Has<bool (CIniFile::*)(CString, CString, CString&) const, &CIniFile::FindItem>);
static_assert(Has<bool (CIniFile::*)(CString, CString, CString, bool, bool), &CIniFile::WriteIt>);
static_assert(Has<bool (CIniFile::*)(CString, CString, CString, bool, bool), &CIniFile::RemoveIt>);

// --- The lines ----------------------------------------------------------------------------------

static_assert(Has<Line* (CIniFile::*)(CString) const, &CIniFile::MakeNewLine>);
static_assert(Has<bool (CIniFile::*)(CString), &CIniFile::AddLine>);
static_assert(Has<bool (CIniFile::*)(Line*, CString), &CIniFile::InsertLine>);
static_assert(Has<Line* (CIniFile::*)(Line*), &CIniFile::RemoveLine>);
static_assert(Has<Line* (CIniFile::*)(Line*) const, &CIniFile::RewindBlanks>);
static_assert(Has<void (CIniFile::*)(), &CIniFile::DeleteLines>);

static_assert(Has<Line * Line::*, &Line::m_pPrev>);
static_assert(Has<Line * Line::*, &Line::m_pNext>);
static_assert(Has<CString Line::*, &Line::m_sLine>);

}  // namespace
