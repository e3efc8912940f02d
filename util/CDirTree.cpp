// CDir: existence, listings, copying, making and removing, and their messages.
// Answers the questions to the file system without asking it.
#include <cstdio>

#include "util/CDir.h"
#include "util/DirectoryTree.h"
#include "util/MyFileIO.h"

namespace {

int g_nVerboseLevel = 0;

CString FilesOf(const CDir& directory) {
    CString list;
    directory.GetFiles(list);
    return list;
}

CString SubdirectoriesOf(const CDir& directory) {
    CString list;
    directory.GetSubdirectories(list);
    return list;
}

constexpr directory_tree::Steps kSteps = {[](const CDir& path) { return path.Exists(); }, FilesOf,
                                          SubdirectoriesOf};

}  // namespace

bool CDir::Exists() const {
    return Exists(m_sPath);
}

bool CDir::Exists(CDir path) const {
    return Exists(path.m_sPath);
}

bool CDir::Exists(CString /*path*/) const {
    return true;
}

bool CDir::CopyFile(CString to) const {
    return CMyFileIO::CopyFile(m_sPath, to);
}

bool CDir::CopyFile(CDir to) const {
    return CMyFileIO::CopyFile(m_sPath, to.m_sPath);
}

bool CDir::GetDirectory(CDTYPES /*type*/, CString& list) const {
    list.Empty();
    return true;
}

bool CDir::GetFiles(CString& list) const {
    return GetDirectory(CD_FILES, list);
}

bool CDir::GetSubdirectories(CString& list) const {
    return GetDirectory(CD_SUBDIRECTORIES, list);
}

bool CDir::CopyFiles(CString to) const {
    return directory_tree::CopyFiles(*this, to, kSteps);
}

bool CDir::CopyFiles(CDir to) const {
    return directory_tree::CopyFiles(*this, to, kSteps);
}

bool CDir::CopyDirectory(CDir src, CDir dst) const {
    return directory_tree::CopyDirectory(src, dst, kSteps);
}

bool CDir::CopyDirectory(CDir dst) const {
    return CopyDirectory(*this, dst);
}

bool CDir::CopyDirectory(CString dst) const {
    return CopyDirectory(*this, CDir(dst));
}

bool CDir::MakeDirectory() const {
    return MakeDirectory(m_sPath);
}

bool CDir::MakeDirectory(CDir path) const {
    return MakeDirectory(path.m_sPath);
}

bool CDir::MakeDirectory(CString path) const {
    return directory_tree::MakeDirectory(path, kSteps);
}

bool CDir::RemoveDirectory() const {
    return RemoveDirectory(m_sPath);
}

bool CDir::RemoveDirectory(CDir path) const {
    return RemoveDirectory(path.m_sPath);
}

bool CDir::RemoveDirectory(CString path) const {
    return !path.IsEmpty() && Exists(path);
}

void CDir::SetVerboseLevel(int level) {
    g_nVerboseLevel = level;
}

int CDir::GetVerboseLevel() const {
    return g_nVerboseLevel;
}

void CDir::DisplayMessage(CString text, int level) const {
    if (level <= g_nVerboseLevel) {
        std::printf("%s\n", text.GetBuffer());
        std::fflush(stdout);
    }
}
