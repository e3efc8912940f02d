// Making and copying directory trees.
// Reports by result and, where the verbose level allows it, by messages; undoes nothing.
#include "util/DirectoryTree.h"

#include <sys/stat.h>

#include <memory>
#include <new>

#include "util/CStringInternals.h"
#include "util/MyFileIO.h"

namespace directory_tree {

namespace {

// The levels of the messages.
constexpr int kFailure = 1;
constexpr int kFileCopied = 3;
constexpr int kDirectoryProgress = 5;

// Hexadecimal, so 03567 as POSIX writes modes: what this library has always given to mkdir.
constexpr mode_t kDirectoryMode = 0x777;

/// The tokens of a list, taken out of it in one pass. It holds none when there is no memory for
/// them.
class Tokens {
  public:
    Tokens(const CString& list, const char* delimiter)
        : m_count(static_cast<unsigned>(list.GetNumberTokens(delimiter))),
          m_tokens(new (std::nothrow) CString[m_count]) {
        if (m_tokens != nullptr) {
            list.ParseTokens(m_tokens.get(), m_count, delimiter);
        }
    }

    bool HaveMemory() const { return m_tokens != nullptr; }
    const CString* begin() const { return m_tokens.get(); }
    const CString* end() const { return m_tokens.get() + m_count; }

  private:
    unsigned m_count;
    std::unique_ptr<CString[]> m_tokens;
};

CDir Joined(CDir directory, const CString& name) {
    directory.AddPath(name);
    return directory;
}

/// A root, a bare drive or a bare network server: nothing that could be made.
bool IsNoDirectoryToMake(const CString& path) {
    return path.EndsWith("/") || path.EndsWith(":") ||
           (path.StartsWith("\\\\") &&
            path.Mid(string_internals::kNetworkServerStart, 0).Find("\\") < 0);
}

}  // namespace

bool CopyFiles(const CDir& source, const CDir& target, const Steps& steps) {
    const Tokens names(steps.files(source), ",");
    if (!names.HaveMemory()) {
        return false;
    }
    for (const CString& name : names) {
        const CString from = Joined(source, name).ToString();
        const CString to = Joined(target, name).ToString();
        source.DisplayMessage("copy " + from + " -> " + to, kFileCopied);
        if (!CMyFileIO::CopyFile(from, to)) {
            source.DisplayMessage("Unable to copy file " + from + " to " + to, kFailure);
            return false;
        }
    }
    return true;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the tree
bool CopyDirectory(const CDir& source, const CDir& target, const Steps& steps) {
    if (source.IsEmpty() || target.IsEmpty()) {
        return false;
    }
    if (!steps.exists(source)) {
        return true;
    }
    if (!MakeDirectory(target.ToString(), steps) || !CopyFiles(source, target, steps)) {
        return false;
    }
    const Tokens names(steps.subdirectories(source), ",");
    if (!names.HaveMemory()) {
        return false;
    }
    for (const CString& name : names) {
        const CDir from = Joined(source, name);
        const CDir to = Joined(target, name);
        source.DisplayMessage("", kDirectoryProgress);
        if (!CopyDirectory(from, to, steps)) {
            source.DisplayMessage("\nCopyPath(" + from + ", " + to + ") failed.", kFailure);
            return false;
        }
    }
    return true;
}

bool MakeDirectory(const CString& path, const Steps& steps) {
    if (steps.exists(path)) {
        return true;
    }
    const Tokens names(path, "/");
    if (!names.HaveMemory()) {
        return false;
    }
    CDir level;
    bool created = false;
    for (const CString& name : names) {
        if (name.IsEmpty()) {
            level = CString("/");
        } else {
            level.AddPath(name);
        }
        if (IsNoDirectoryToMake(level.ToString()) || steps.exists(level)) {
            continue;
        }
        created = true;
        level.DisplayMessage("mkdir " + level, kDirectoryProgress);
        if (mkdir(level.ToString().GetBuffer(), kDirectoryMode) != 0) {
            return false;
        }
    }
    if (created) {
        level.DisplayMessage("", kDirectoryProgress);
    }
    return true;
}

}  // namespace directory_tree
