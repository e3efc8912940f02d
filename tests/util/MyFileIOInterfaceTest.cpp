// Every operation of CMyFileIO with its argument and result types.
// The test is the compilation: what is missing here does not compile.
#include <cstddef>
#include <type_traits>

#include "util/MyFileIO.h"
#include "util/Operation.h"

namespace {

// --- Construction and destruction ---------------------------------------------------------------

static_assert(HasConstructor<CMyFileIO>);
static_assert(HasConstructor<CMyFileIO, CDir>);
static_assert(HasConstructor<CMyFileIO, CString>);
static_assert(std::has_virtual_destructor_v<CMyFileIO>);
static_assert(!std::is_copy_constructible_v<CMyFileIO>);
static_assert(!std::is_copy_assignable_v<CMyFileIO>);

// --- Opening ------------------------------------------------------------------------------------

static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::Open>);
static_assert(Has<bool (CMyFileIO::*)(CString), &CMyFileIO::Open>);
static_assert(Has<bool (CMyFileIO::*)(CString), &CMyFileIO::OpenFile>);
static_assert(Has<bool (CMyFileIO::*)(CDir), &CMyFileIO::OpenFile>);
static_assert(Has<bool (CMyFileIO::*)(CString, CString), &CMyFileIO::OpenFile>);
static_assert(Has<bool (CMyFileIO::*)(CDir, CString), &CMyFileIO::OpenFile>);
static_assert(Has<bool (CMyFileIO::*)(CString), &CMyFileIO::OpenTempFile>);
static_assert(Has<bool (CMyFileIO::*)(CDir), &CMyFileIO::OpenTempFile>);

// --- The open file ------------------------------------------------------------------------------

static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::Close>);
static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::CloseFile>);
static_assert(Has<bool (CMyFileIO::*)(CString&), &CMyFileIO::ReadString>);
static_assert(Has<bool (CMyFileIO::*)() const, &CMyFileIO::IsEOF>);
static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::Rewind>);
static_assert(Has<bool (CMyFileIO::*)(CString), &CMyFileIO::WriteString>);
static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::WriteStringNL>);
static_assert(Has<bool (CMyFileIO::*)(CString), &CMyFileIO::WriteStringNL>);
static_assert(Has<CString (CMyFileIO::*)() const, &CMyFileIO::GetFileName>);
static_assert(Has<bool (*)(CString), &CMyFileIO::IsComment>);

// --- Files given by name: called through the class ----------------------------------------------

static_assert(Has<bool (CMyFileIO::*)() const, &CMyFileIO::Exists>);
static_assert(Has<bool (*)(CString), &CMyFileIO::Exists>);
static_assert(Has<bool (CMyFileIO::*)(), &CMyFileIO::DeleteFile>);
static_assert(Has<bool (*)(CString), &CMyFileIO::DeleteFile>);
static_assert(Has<bool (*)(CDir), &CMyFileIO::DeleteFile>);
static_assert(Has<bool (*)(CString, CString), &CMyFileIO::CopyFile>);
static_assert(Has<bool (*)(CDir, CDir), &CMyFileIO::CopyFile>);
static_assert(Has<bool (*)(CString, bool), &CMyFileIO::SetReadOnly>);
static_assert(Has<bool (*)(CDir, bool), &CMyFileIO::SetReadOnly>);

// --- Versions -----------------------------------------------------------------------------------

static_assert(Has<bool (CMyFileIO::*)(FileInfo&) const, &CMyFileIO::GetFileInfo>);
static_assert(Has<bool (*)(CString, FileInfo&), &CMyFileIO::GetFileInfo>);
static_assert(Has<bool (*)(CDir, FileInfo&), &CMyFileIO::GetFileInfo>);
static_assert(Has<int (*)(CString, CString), &CMyFileIO::CompareFileVersion>);

static_assert(Has<CString FileInfo::*, &FileInfo::CompanyName>);
static_assert(Has<CString FileInfo::*, &FileInfo::FileDescription>);
static_assert(Has<CString FileInfo::*, &FileInfo::FileVersion>);
static_assert(Has<CString FileInfo::*, &FileInfo::InternalName>);
static_assert(Has<CString FileInfo::*, &FileInfo::LegalCopyright>);
static_assert(Has<CString FileInfo::*, &FileInfo::OriginalFilename>);
static_assert(Has<CString FileInfo::*, &FileInfo::ProductName>);
static_assert(Has<CString FileInfo::*, &FileInfo::ProductVersion>);
static_assert(Has<CString FileInfo::*, &FileInfo::VarFileInfo>);
static_assert(Has<CString FileInfo::*, &FileInfo::Translation>);

// In this order, and nothing else.
static_assert(offsetof(FileInfo, CompanyName) == 0 * sizeof(CString));
static_assert(offsetof(FileInfo, FileDescription) == 1 * sizeof(CString));
static_assert(offsetof(FileInfo, FileVersion) == 2 * sizeof(CString));
static_assert(offsetof(FileInfo, InternalName) == 3 * sizeof(CString));
static_assert(offsetof(FileInfo, LegalCopyright) == 4 * sizeof(CString));
static_assert(offsetof(FileInfo, OriginalFilename) == 5 * sizeof(CString));
static_assert(offsetof(FileInfo, ProductName) == 6 * sizeof(CString));
static_assert(offsetof(FileInfo, ProductVersion) == 7 * sizeof(CString));
static_assert(offsetof(FileInfo, VarFileInfo) == 8 * sizeof(CString));
static_assert(offsetof(FileInfo, Translation) == 9 * sizeof(CString));
static_assert(sizeof(FileInfo) == 10 * sizeof(CString));

}  // namespace
