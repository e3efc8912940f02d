// Making and copying directory trees.
// Reports by result and, where the verbose level allows it, by messages; undoes nothing.
#include "util/DirectoryTree.h"

#include <sys/stat.h>

#include "util/MyFileIO.h"

namespace directory_tree {

namespace {

// The levels of the messages.
constexpr int kFailure = 1;
constexpr int kFileCopied = 3;
constexpr int kDirectoryProgress = 5;

// Hexadecimal, so 03567 as POSIX writes modes: what this library has always given to mkdir.
constexpr mode_t kDirectoryMode = 0x777;

constexpr int kNetworkServerStart = 4;

CDir Joined(CDir directory, const CString& name) {
    directory.AddPath(name);
    return directory;
}

/// A root, a bare drive or a bare network server: nothing that could be made.
bool IsNoDirectoryToMake(const CString& path) {
    return path.EndsWith("/") || path.EndsWith(":") ||
           (path.StartsWith("\\\\") && path.Mid(kNetworkServerStart, 0).Find("\\") < 0);
}

}  // namespace

bool CopyFiles(const CDir& source, const CDir& target, const Steps& steps) {
    const CString list = steps.files(source);
    const int count = list.GetNumberTokens(",");
    for (int i = 0; i < count; ++i) {
        const CString name = list.GetToken(static_cast<unsigned>(i), ",");
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
    const CString list = steps.subdirectories(source);
    const int count = list.GetNumberTokens(",");
    for (int i = 0; i < count; ++i) {
        const CString name = list.GetToken(static_cast<unsigned>(i), ",");
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
    CDir level;
    bool created = false;
    const int count = path.GetNumberTokens("/");
    for (int i = 0; i < count; ++i) {
        const CString name = path.GetToken(static_cast<unsigned>(i), "/");
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
