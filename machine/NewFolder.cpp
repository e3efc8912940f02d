// Makes, fills, renames; and takes away what was not renamed.
#include "machine/NewFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "machine/TrustedPath.h"

namespace machine {

namespace {

namespace fs = std::filesystem;

/// The path without what only says that it is a directory: "out/" is "out".
fs::path WithoutTrailingSlash(const fs::path& path) {
    return path.has_filename() ? path : path.parent_path();
}

bool Exists(int directory, const std::string& name) {
    struct stat status = {};
    return fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

std::string RandomName() {
    uint64_t number = 0;
    (void)!getrandom(&number, sizeof number, 0);
    char name[sizeof ".systally-capture-" + 2 * sizeof number];
    std::snprintf(name, sizeof name, ".systally-capture-%016llx",
                  static_cast<unsigned long long>(number));
    return name;
}

bool IsOurs(int folder) {
    struct stat status = {};
    return fstat(folder, &status) == 0 && status.st_uid == geteuid();
}

/// Removes a directory and all in it; what it holds was made by this process.
void RemoveTree(int parent, const std::string& name) {
    FileDescriptor folder = OpenDirectory(parent, name);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        folder.IsOpen() ? fdopendir(dup(folder.Get())) : nullptr, closedir);
    while (const dirent* entry = entries == nullptr ? nullptr : readdir(entries.get())) {
        const std::string child = entry->d_name;
        if (child != "." && child != ".." && unlinkat(folder.Get(), child.c_str(), 0) != 0) {
            RemoveTree(folder.Get(), child);
        }
    }
    unlinkat(parent, name.c_str(), AT_REMOVEDIR);
}

/// Not every file system knows how to rename without replacing. Where it is unknown, a plain
/// rename can replace an empty directory at the most.
bool RenameWithoutReplacing(int directory, const std::string& from, const std::string& to) {
    if (renameat2(directory, from.c_str(), directory, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    return errno == EINVAL && renameat(directory, from.c_str(), directory, to.c_str()) == 0;
}

}  // namespace

Outcome<NewFolder> NewFolder::Begin(const fs::path& given) {
    const fs::path path = WithoutTrailingSlash(given);
    const fs::path parentPath = path.has_parent_path() ? path.parent_path() : ".";
    Outcome<FileDescriptor> parent = OpenTrustedDirectory(parentPath, geteuid());
    if (!parent) {
        return Failure{"cannot create " + path.string() + ": " + parent.Reason()};
    }
    if (!path.has_filename() || Exists(parent->Get(), path.filename())) {
        return Failure{given.string() + " exists already"};
    }
    NewFolder folder(std::move(*parent), path);
    if (const std::string failure = folder.Create(); !failure.empty()) {
        return Failure{failure};
    }
    return folder;
}

NewFolder::NewFolder(FileDescriptor parent, fs::path path)
    : m_path(std::move(path)), m_parent(std::move(parent)), m_folder(-1) {}

NewFolder::~NewFolder() {
    if (m_folder.IsOpen()) {
        RemoveTree(m_parent.Get(), m_temporaryName);
    }
}

std::string NewFolder::Create() {
    do {
        m_temporaryName = RandomName();
        if (mkdirat(m_parent.Get(), m_temporaryName.c_str(), 0700) == 0) {
            return Enter();
        }
    } while (errno == EEXIST);
    return WithReason("cannot create " + m_path.string());
}

std::string NewFolder::Enter() {
    FileDescriptor folder = OpenDirectory(m_parent.Get(), m_temporaryName);
    if (!folder.IsOpen() || !IsOurs(folder.Get())) {
        std::string failure = WithReason("cannot enter " + m_temporaryName);
        unlinkat(m_parent.Get(), m_temporaryName.c_str(), AT_REMOVEDIR);
        return failure;
    }
    m_folder = std::move(folder);
    return "";
}

std::string NewFolder::Finish() {
    if (!RenameWithoutReplacing(m_parent.Get(), m_temporaryName, m_path.filename())) {
        return errno == EEXIST ? m_path.string() + " exists already"
                               : WithReason("cannot create " + m_path.string());
    }
    m_folder.Close();
    return "";
}

}  // namespace machine
