// CDir: the path as text, its parts, and the working directory.
// Splits by fixed rules; asks the file system nothing but where the process stands.
#include "util/CDir.h"

#include <unistd.h>

#include <string_view>

#include "util/CStringInternals.h"

namespace {

// Not the scratch string of CString, which bears the same name; first to be constructed, as
// other static objects may use it.
[[gnu::init_priority(102)]] CString g_sBuffer;

constexpr size_t kLongestExtension = 4;  // the dot included

/// Takes the first `length` characters off a text and returns them.
std::string_view Take(std::string_view& text, size_t length) {
    const std::string_view taken(text.data(), length);
    text.remove_prefix(length);
    return taken;
}

/// The length of the text up to the character at `position`, which may be npos for none.
size_t LengthUpTo(size_t position) {
    return position == std::string_view::npos ? 0 : position + 1;
}

size_t LengthOfDrive(std::string_view path) {
    const size_t colon = path.find(':');
    const bool isNetworkPath = path.size() >= 2 && path[0] == '\\' && path[1] == '\\';
    return LengthUpTo(colon != std::string_view::npos || !isNetworkPath
                          ? colon
                          : path.find('\\', string_internals::kNetworkServerStart));
}

size_t LengthOfName(std::string_view nameAndExtension) {
    const size_t length = nameAndExtension.size();
    const size_t dot = nameAndExtension.rfind('.');
    return dot != std::string_view::npos && length - dot <= kLongestExtension ? dot : length;
}

struct PathParts {
    std::string_view drive;
    std::string_view dir;
    std::string_view name;
    std::string_view ext;
};

/// The parts lie in the text.
PathParts Split(const CString& path) {
    std::string_view rest = string_internals::WithoutBlanks(path.GetBuffer());
    PathParts parts;
    parts.drive = Take(rest, LengthOfDrive(rest));
    parts.dir = Take(rest, LengthUpTo(rest.rfind('/')));
    parts.name = Take(rest, LengthOfName(rest));
    parts.ext = rest;
    return parts;
}

CString Text(std::string_view part) {
    return string_internals::TextBetween(part.data(), part.data() + part.size());
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
    const PathParts parts = Split(m_sPath);
    for (CString* result : {&drive, &dir, &name, &ext}) {
        result->Empty();
    }
    // One string may stand for several results: but for the name, which every path has, what the
    // path does not have leaves it alone.
    if (!parts.drive.empty()) {
        drive = Text(parts.drive);
    }
    if (!parts.dir.empty()) {
        dir = Text(parts.dir);
    }
    name = Text(parts.name);
    if (!parts.ext.empty()) {
        ext = Text(parts.ext);
    }
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
    return Text(Split(m_sPath).drive);
}

CString CDir::GetDirectory() const {
    return Text(Split(m_sPath).dir);
}

CString CDir::GetFileName() const {
    g_sBuffer = Text(Split(m_sPath).name);
    return g_sBuffer;
}

CString CDir::GetFileName(CString path) const {
    return CDir(path).GetFileName();
}

CString CDir::GetExtension() const {
    return Text(Split(m_sPath).ext);
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
