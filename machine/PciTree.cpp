// Reads each file to its end, whatever size it announces.
#include "machine/PciTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

#include "machine/Files.h"
#include "machine/HeldSignals.h"

namespace machine {

namespace {

// PCI Express: a function's configuration space. Only the list of devices is longer.
constexpr size_t kConfigurationSize = 4096;
constexpr size_t kLongestList = 16 << 20;

/// What a directory holds; the error ended the list early.
struct Listing {
    std::vector<std::string> names;
    int error = 0;
};

Listing List(const FileDescriptor& directory) {
    Listing listing;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        directory.IsOpen() ? fdopendir(dup(directory.Get())) : nullptr, closedir);
    if (entries == nullptr) {
        listing.error = errno;
        return listing;
    }
    errno = 0;
    while (const dirent* entry = readdir(entries.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            listing.names.push_back(name);
        }
        errno = 0;
    }
    listing.error = errno;
    return listing;
}

/// The kind of a file, links followed; 0 when that cannot be told.
mode_t KindOf(int directory, const std::string& name) {
    struct stat status = {};
    return fstatat(directory, name.c_str(), &status, 0) == 0 ? status.st_mode & S_IFMT : 0;
}

size_t AnnouncedSize(const FileDescriptor& file) {
    struct stat status = {};
    return fstat(file.Get(), &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
}

class Copy {
  public:
    Copy(std::string source, const ConfigurationFilter& filter)
        : m_source(std::move(source)), m_filter(filter) {}

    std::optional<Failure> Tree(int target) {
        const FileDescriptor root(open(m_source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const Listing listing = List(root);
        if (!root.IsOpen()) {
            return Failure{WithReason("cannot read " + m_source, listing.error)};
        }
        NoteEnd(listing, m_source);
        for (const std::string& name : listing.names) {
            std::optional<Failure> failure = KindOf(root.Get(), name) == S_IFDIR
                                                 ? Bus(root.Get(), target, name)
                                                 : DeviceList(root.Get(), target, name);
            if (failure) {
                return failure;
            }
        }
        return std::nullopt;
    }

    PciTreeSummary Summary() const {
        PciTreeSummary summary = m_summary;
        if (m_shortFiles > 0) {
            summary.losses.push_back(
                "files below " + m_source +
                " that give fewer bytes than they announce: " + std::to_string(m_shortFiles));
        }
        return summary;
    }

  private:
    void Note(const std::string& path, int error) {
        m_summary.losses.push_back(WithReason("cannot read " + path, error));
    }

    void NoteEnd(const Listing& listing, const std::string& path) {
        if (listing.error != 0) {
            Note(path, listing.error);
        }
    }

    /// What can be read of a file; nothing when it is none or has vanished. A function whose file
    /// cannot be opened is one all the same.
    std::optional<Bytes> Contents(int directory, const std::string& name, const std::string& path,
                                  size_t limit) {
        const mode_t kind = KindOf(directory, name);
        if (kind != 0 && kind != S_IFREG) {
            m_summary.losses.push_back(path + " is no regular file");
            return std::nullopt;
        }
        const FileDescriptor file = OpenForReading(directory, name);
        if (!file.IsOpen() && errno == ENOENT) {
            return std::nullopt;  // unplugged in the meantime
        }
        if (!file.IsOpen()) {
            Note(path, errno);
            return Bytes();
        }
        ReadBytes read = ReadToEnd(file.Get(), limit);
        if (read.error != 0) {
            Note(path + " from byte " + std::to_string(read.bytes.size()) + " on", read.error);
        } else if (read.bytes.size() < std::min(AnnouncedSize(file), limit)) {
            ++m_shortFiles;
        }
        return std::move(read.bytes);
    }

    /// The file beside the bus directories.
    std::optional<Failure> DeviceList(int root, int target, const std::string& name) {
        const std::optional<Bytes> contents =
            Contents(root, name, m_source + "/" + name, kLongestList);
        return contents ? Write(target, name, *contents, "pci/" + name) : std::nullopt;
    }

    /// A bus that cannot be read is one without functions.
    std::optional<Failure> Bus(int root, int target, const std::string& bus) {
        const FileDescriptor from = OpenDirectory(root, bus);
        const Listing listing = List(from);
        if (!from.IsOpen() && listing.error == ENOENT) {
            return std::nullopt;
        }
        NoteEnd(listing, m_source + "/" + bus);
        if (mkdirat(target, bus.c_str(), 0755) != 0) {
            return Failure{WithReason("cannot create pci/" + bus)};
        }
        const FileDescriptor to = OpenDirectory(target, bus);
        for (const std::string& name : listing.names) {
            if (auto failure = Function(from.Get(), to.Get(), bus, name)) {
                return failure;
            }
        }
        return std::nullopt;
    }

    std::optional<Failure> Function(int from, int to, const std::string& bus,
                                    const std::string& name) {
        const std::string path = bus + "/" + name;
        std::optional<Bytes> bytes =
            Contents(from, name, m_source + "/" + path, kConfigurationSize);
        if (HeldSignals::AskToEnd()) {
            return Failure{"interrupted"};
        }
        if (!bytes) {
            return std::nullopt;
        }
        m_filter(*bytes);
        ++m_summary.functions;
        m_summary.bytes += bytes->size();
        return Write(to, name, *bytes, "pci/" + path);
    }

    static std::optional<Failure> Write(int directory, const std::string& name,
                                        const Bytes& contents, const std::string& path) {
        return CreateFileWith(directory, name, contents)
                   ? std::nullopt
                   : std::optional(Failure{WithReason("cannot write " + path)});
    }

    std::string m_source;
    const ConfigurationFilter& m_filter;
    PciTreeSummary m_summary;
    size_t m_shortFiles = 0;
};

}  // namespace

Outcome<PciTreeSummary> CopyPciTree(const std::string& source, int target,
                                    const ConfigurationFilter& filter) {
    Copy copy(source, filter);
    if (std::optional<Failure> failure = copy.Tree(target)) {
        return *failure;
    }
    return copy.Summary();
}

}  // namespace machine
