// CDir: the path as text, its parts, and the working directory.
// Splits by fixed rules; asks the file system nothing but where the process stands.
#include "util/CDir.h"

#include <unistd.h>

#include "util/CStringInternals.h"

namespace {

// Not the scratch string of CString, which bears the same name; first to be constructed, as
// other static objects may use it.
[[gnu::init_priority(102)]] CString g_sBuffer;

constexpr int kLongestExtension = 4;    // the dot included
constexpr int kNetworkServerStart = 4;  // a network drive ends at the first backslash from here on

/// Where the drive ends: its last character, or -1 when the path names none.
int EndOfDrive(const CString& path) {
    const int colon = path.Find(":");
    if (colon >= 0 || !path.StartsWith("\\\\")) {
        return colon;
    }
    const int backslash = path.Mid(kNetworkServerStart, 0).Find("\\");
    return backslash < 0 ? -1 : backslash + kNetworkServerStart;
}

struct PathParts {
    CString drive;
    CString dir;
    CString name;
    CString ext;
};

PathParts Split(const CDir& path) {
    PathParts parts;
    path.SplitPath(parts.drive, parts.dir, parts.name, parts.ext);
    return parts;
}

/// What the text joined with another gives, built in the scratch string.
CString Concatenate(const CString& left, const CString& right) {
    g_sBuffer = left;
    g_sBuffer += right;
    return g_sBuffer;
}

}  // namespace

CDir::CDir() {
    m_sPath.Empty();
}

CDir::CDir(const CDir& other) = default;

CDir::CDir(CDir& other) : m_sPath(other.ToString()) {}

CDir::CDir(CString path) : m_sPath(path) {}

CDir::~CDir() = default;

CDir& CDir::operator=(CDir other) {
    m_sPath = other.m_sPath;
    return *this;
}

CDir& CDir::operator=(CString path) {
    m_sPath = path;
    return *this;
}

CDir& CDir::operator+=(CDir other) {
    m_sPath += other.m_sPath;
    return *this;
}

CDir& CDir::operator+=(CString text) {
    m_sPath += text;
    return *this;
}

CString operator+(CDir left, CDir right) {
    return Concatenate(left.ToString(), right.ToString());
}

CString operator+(CDir left, CString right) {
    return Concatenate(left.ToString(), right);
}

CString operator+(CString left, CDir right) {
    return Concatenate(left, right.ToString());
}

bool operator==(CDir left, CDir right) {
    return left.ToString() == right.ToString();
}

bool operator==(CDir left, CString right) {
    return left.ToString() == right;
}

bool operator==(CString left, CDir right) {
    return left == right.ToString();
}

bool operator!=(CDir left, CDir right) {
    return left.ToString() != right.ToString();
}

bool operator!=(CDir left, CString right) {
    return left.ToString() != right;
}

bool operator!=(CString left, CDir right) {
    return left != right.ToString();
}

void CDir::Empty() {
    m_sPath.Empty();
}

bool CDir::IsEmpty() const {
    return m_sPath.IsEmpty();
}

unsigned CDir::GetLength() const {
    return m_sPath.GetLength();
}

CString CDir::ToString() const {
    return m_sPath;
}

// --- Parts --------------------------------------------------------------------------------------

bool CDir::SplitPath(CString& drive, CString& dir, CString& name, CString& ext) const {
    CString rest = string_internals::Trimmed(m_sPath);

    const int driveLength = EndOfDrive(rest) + 1;
    drive = rest.Left(driveLength);
    rest = rest.Mid(driveLength, 0);

    const int dirLength = rest.ReverseFind("/") + 1;
    dir = rest.Left(dirLength);
    rest = rest.Mid(dirLength, 0);

    const int dot = rest.ReverseFind(".");
    const auto length = static_cast<int>(rest.GetLength());
    const int nameLength = dot >= 0 && dot >= length - kLongestExtension ? dot : length;
    name = rest.Left(nameLength);
    ext = rest.Mid(nameLength, 0);
    return true;
}

CString CDir::MakePath(CString /*drive*/, CString dir, CString name, CString ext) {
    CDir path(dir);
    path.AddPath(name);
    path += ext;
    *this = path;
    return m_sPath;
}

CString CDir::GetDrive() const {
    return Split(*this).drive;
}

CString CDir::GetDirectory() const {
    return Split(*this).dir;
}

CString CDir::GetFileName() const {
    g_sBuffer = Split(*this).name;
    return g_sBuffer;
}

CString CDir::GetFileName(CString path) const {
    return CDir(path).GetFileName();
}

CString CDir::GetExtension() const {
    return Split(*this).ext;
}

CString CDir::GetPath() const {
    const int slash = m_sPath.ReverseFind("/");
    const int end = slash >= 0 ? slash : m_sPath.Find(":");
    return end < 0 ? CString() : m_sPath.Left(end);
}

CString CDir::GetName() const {
    const int slash = m_sPath.ReverseFind("/");
    const int end = slash >= 0 ? slash : m_sPath.Find(":");
    return m_sPath.Mid(end + 1, 0);
}

unsigned CDir::GetDepth() const {
    // A directory part without "/" does not occur: it ends with one.
    const int slashes = GetDirectory().GetNumberOccurances("/");
    return slashes == 0 ? 0 : static_cast<unsigned>(slashes) + 1;
}

CString CDir::GetAbsolutePath() const {
    return m_sPath;
}

CString CDir::ToAbsolutePath() {
    m_sPath = GetAbsolutePath();
    return m_sPath;
}

CString CDir::AddPath(CString part) {
    if (!IsEmpty() && !part.IsEmpty()) {
        const bool ends = m_sPath.GetLastChar() == '/';
        const bool begins = part.GetAt(0) == '/';
        if (ends && begins) {
            m_sPath = m_sPath.Left(static_cast<int>(GetLength()) - 1);
        } else if (!ends && !begins) {
            m_sPath += "/";
        }
    }
    m_sPath += part;
    return m_sPath;
}

CString CDir::AddPath(CDir part) {
    return AddPath(part.m_sPath);
}

// --- The working directory ----------------------------------------------------------------------

CString CDir::GetCwd() const {
    constexpr size_t kLongestPath = 1024;
    char path[kLongestPath];
    g_sBuffer = getcwd(path, sizeof path);
    return g_sBuffer;
}

CString CDir::ToCwd() {
    m_sPath = GetCwd();
    return m_sPath;
}

bool CDir::ChDir() const {
    return chdir(m_sPath.GetBuffer()) == 0;
}
