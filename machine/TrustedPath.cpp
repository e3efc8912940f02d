// Walks a path name by name, so that each link is seen before it is followed.
#include "machine/TrustedPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <list>
#include <optional>
#include <string>

namespace machine {

namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;  // as many as the kernel follows
constexpr size_t kLongestTarget = 4096;

std::list<std::string> NamesOf(const fs::path& path) {
    std::list<std::string> names;
    for (const fs::path& name : path.relative_path()) {
        names.push_back(name.empty() ? "." : name.string());
    }
    return names;
}

FileDescriptor OpenStart(const fs::path& path) {
    return FileDescriptor(open(path.is_absolute() ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
}

/// Where the opened link leads. It is read through its descriptor: nobody can exchange it
/// between the question for its owner and this one.
fs::path TargetOf(const FileDescriptor& link) {
    std::string target(kLongestTarget, '\0');
    const ssize_t length = readlinkat(link.Get(), "", target.data(), target.size());
    target.resize(length < 0 ? 0 : static_cast<size_t>(length));
    return target;
}

/// The steps still to be taken, and the directory reached so far.
struct Walk {
    fs::path path;
    uid_t user;
    FileDescriptor place;
    std::list<std::string> names;
    int links = 0;

    std::optional<Failure> Step() {
        FileDescriptor next(
            openat(place.Get(), names.front().c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status = {};
        if (!next.IsOpen() || fstat(next.Get(), &status) != 0) {
            return Failure{WithReason(path)};
        }
        const std::string name = names.front();
        names.pop_front();
        if (S_ISLNK(status.st_mode)) {
            return Follow(name, next, status.st_uid);
        }
        place = std::move(next);
        return S_ISDIR(status.st_mode) ? std::nullopt
                                       : std::optional(Failure{WithReason(path, ENOTDIR)});
    }

    std::optional<Failure> Follow(const std::string& name, const FileDescriptor& link,
                                  uid_t owner) {
        if (owner != 0 && owner != user) {
            return Failure{path.string() + ": " + name + " is a link of another user"};
        }
        if (++links > kMostLinks) {
            return Failure{WithReason(path, ELOOP)};
        }
        const fs::path target = TargetOf(link);
        names.splice(names.begin(), NamesOf(target));
        if (target.is_absolute()) {
            place = OpenStart(target);
        }
        return std::nullopt;
    }
};

}  // namespace

Outcome<FileDescriptor> OpenTrustedDirectory(const fs::path& path, uid_t user) {
    Walk walk{path, user, OpenStart(path), NamesOf(path)};
    while (!walk.names.empty()) {
        if (std::optional<Failure> failure = walk.Step()) {
            return *failure;
        }
    }
    return std::move(walk.place);
}

}  // namespace machine
