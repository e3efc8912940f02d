// Reads each file to its end, whatever size it announces.
#include "machine/PciTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>

#include "machine/Files.h"

namespace machine {

namespace {

// PCI Express: a function's configuration space. Only the list of devices is longer.
constexpr size_t kConfigurationSize = 4096;
constexpr size_t kLongestList = 16 << 20;

using Names = std::vector<std::string>;

Outcome<Names> NamesIn(const FileDescriptor& directory, const std::string& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(
        directory.IsOpen() ? fdopendir(dup(directory.Get())) : nullptr, closedir);
    if (entries == nullptr) {
        return Failure{WithReason("cannot read " + path)};
    }
    Names names;
    while (const dirent* entry = readdir(entries.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    return names;
}

bool IsDirectory(int directory, const std::string& name) {
    struct stat status = {};
    return fstatat(directory, name.c_str(), &status, 0) == 0 && S_ISDIR(status.st_mode);
}

class Copy {
  public:
    Copy(std::string source, const ConfigurationFilter& filter)
        : m_source(std::move(source)), m_filter(filter) {}

    std::optional<Failure> Tree(int target) {
        const FileDescriptor root(open(m_source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const Outcome<Names> names = NamesIn(root, m_source);
        if (!names) {
            return Failure{names.Reason()};
        }
        for (const std::string& name : *names) {
            std::optional<Failure> failure = IsDirectory(root.Get(), name)
                                                 ? Bus(root.Get(), target, name)
                                                 : List(root.Get(), target, name);
            if (failure) {
                return failure;
            }
        }
        return std::nullopt;
    }

    PciTreeSummary Summary() const { return m_summary; }

  private:
    /// The file beside the bus directories.
    std::optional<Failure> List(int root, int target, const std::string& name) {
        const FileDescriptor file = OpenForReading(root, name);
        const Bytes contents = file.IsOpen() ? ReadToEnd(file.Get(), kLongestList).bytes : Bytes();
        return Write(target, name, contents, "pci/" + name);
    }

    std::optional<Failure> Bus(int root, int target, const std::string& bus) {
        const FileDescriptor from = OpenDirectory(root, bus);
        const Outcome<Names> names = NamesIn(from, m_source + "/" + bus);
        if (!names) {
            return Failure{names.Reason()};
        }
        if (mkdirat(target, bus.c_str(), 0755) != 0) {
            return Failure{WithReason("cannot create pci/" + bus)};
        }
        const FileDescriptor to = OpenDirectory(target, bus);
        for (const std::string& name : *names) {
            if (auto failure = Function(from.Get(), to.Get(), bus, name)) {
                return failure;
            }
        }
        return std::nullopt;
    }

    std::optional<Failure> Function(int from, int to, const std::string& bus,
                                    const std::string& name) {
        const std::string path = bus + "/" + name;
        const FileDescriptor file = OpenForReading(from, name);
        if (!file.IsOpen() && errno == ENOENT) {
            return std::nullopt;  // unplugged in the meantime
        }
        if (!file.IsOpen()) {
            m_summary.losses.push_back(WithReason("cannot read " + m_source + "/" + path));
        }
        Bytes bytes = file.IsOpen() ? ReadToEnd(file.Get(), kConfigurationSize).bytes : Bytes();
        m_filter(bytes);
        ++m_summary.functions;
        m_summary.bytes += bytes.size();
        return Write(to, name, bytes, "pci/" + path);
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
