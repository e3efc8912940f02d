// Every operation of CDir with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <iosfwd>
#include <type_traits>

#include "util/CDir.h"
#include "util/Operation.h"

namespace {

// --- Construction and assignment ----------------------------------------------------------------

static_assert(HasConstructor<CDir>);
static_assert(HasConstructor<CDir, const CDir&>);
static_assert(HasConstructor<CDir, CDir&>);  // which only Clang tells from the one above
static_assert(HasConstructor<CDir, CString>);
static_assert(std::is_destructible_v<CDir>);
static_assert(!std::is_polymorphic_v<CDir>);

static_assert(Has<CDir& (CDir::*)(CDir), (&CDir::operator=)>);
static_assert(Has<CDir& (CDir::*)(CString), (&CDir::operator=)>);
static_assert(Has<CDir& (CDir::*)(CDir), (&CDir::operator+=)>);
static_assert(Has<CDir& (CDir::*)(CString), (&CDir::operator+=)>);

// --- Free operators -----------------------------------------------------------------------------

static_assert(Has<CString (*)(CDir, CDir), (&operator+)>);
static_assert(Has<CString (*)(CDir, CString), (&operator+)>);
static_assert(Has<CString (*)(CString, CDir), (&operator+)>);
static_assert(Has<bool (*)(CDir, CDir), (&operator==)>);
static_assert(Has<bool (*)(CDir, CString), (&operator==)>);
static_assert(Has<bool (*)(CString, CDir), (&operator==)>);
static_assert(Has<bool (*)(CDir, CDir), (&operator!=)>);
static_assert(Has<bool (*)(CDir, CString), (&operator!=)>);
static_assert(Has<bool (*)(CString, CDir), (&operator!=)>);
static_assert(Has<std::ostream& (*)(std::ostream&, CDir), (&operator<<)>);

// --- The text -----------------------------------------------------------------------------------

static_assert(Has<void (CDir::*)(), &CDir::Empty>);
static_assert(Has<bool (CDir::*)() const, &CDir::IsEmpty>);
static_assert(Has<unsigned (CDir::*)() const, &CDir::GetLength>);
static_assert(Has<CString (CDir::*)() const, &CDir::ToString>);

static_assert(CDir::CD_FILES == 0 && CDir::CD_SUBDIRECTORIES == 1);

// --- Parts --------------------------------------------------------------------------------------

static_assert(Has<bool (CDir::*)(CString&, CString&, CString&, CString&) const, &CDir::SplitPath>);
static_assert(Has<CString (CDir::*)(CString, CString, CString, CString), &CDir::MakePath>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetDrive>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetDirectory>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetFileName>);
static_assert(Has<CString (CDir::*)(CString) const, &CDir::GetFileName>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetExtension>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetPath>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetName>);
static_assert(Has<unsigned (CDir::*)() const, &CDir::GetDepth>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetAbsolutePath>);
static_assert(Has<CString (CDir::*)(), &CDir::ToAbsolutePath>);
static_assert(Has<CString (CDir::*)(CString), &CDir::AddPath>);
static_assert(Has<CString (CDir::*)(CDir), &CDir::AddPath>);

// --- The file system ----------------------------------------------------------------------------

static_assert(Has<bool (CDir::*)() const, &CDir::Exists>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::Exists>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::Exists>);
static_assert(Has<CString (CDir::*)() const, &CDir::GetCwd>);
static_assert(Has<CString (CDir::*)(), &CDir::ToCwd>);
static_assert(Has<bool (CDir::*)() const, &CDir::ChDir>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::CopyFile>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::CopyFile>);

static_assert(std::is_enum_v<CDir::CDTYPES>);
static_assert(Has<bool (CDir::*)(CDir::CDTYPES, CString&) const, &CDir::GetDirectory>);
static_assert(Has<bool (CDir::*)(CString&) const, &CDir::GetFiles>);
static_assert(Has<bool (CDir::*)(CString&) const, &CDir::GetSubdirectories>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::CopyFiles>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::CopyFiles>);
static_assert(Has<bool (CDir::*)(CDir, CDir) const, &CDir::CopyDirectory>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::CopyDirectory>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::CopyDirectory>);
static_assert(Has<bool (CDir::*)() const, &CDir::MakeDirectory>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::MakeDirectory>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::MakeDirectory>);
static_assert(Has<bool (CDir::*)() const, &CDir::RemoveDirectory>);
static_assert(Has<bool (CDir::*)(CDir) const, &CDir::RemoveDirectory>);
static_assert(Has<bool (CDir::*)(CString) const, &CDir::RemoveDirectory>);

// --- Messages -----------------------------------------------------------------------------------

static_assert(Has<void (CDir::*)(int), &CDir::SetVerboseLevel>);
static_assert(Has<int (CDir::*)() const, &CDir::GetVerboseLevel>);
static_assert(Has<void (CDir::*)(CString, int) const, &CDir::DisplayMessage>);

}  // namespace
