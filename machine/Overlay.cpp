// Private mounts: a machine folder over /dev/mem and /proc/bus/pci.
// Leaves nothing behind: the kernel drops the mounts with the last process that sees them.
#include "machine/Overlay.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "machine/Files.h"

namespace machine {

namespace {

namespace fs = std::filesystem;

constexpr char kDevices[] = "/dev";
constexpr char kMemory[] = "/dev/mem";
constexpr char kBuses[] = "/proc/bus";
constexpr char kPciTree[] = "/proc/bus/pci";

std::string Failed(const std::string& what) {
    return WithReason("cannot " + what);
}

/// Mounts the file or directory `source` over `target`. Requires: both are of the same kind.
bool Bind(const fs::path& source, const fs::path& target) {
    return mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
}

bool MountEmptyDirectory(const char* target) {
    return mount("none", target, "tmpfs", MS_NOSUID | MS_NOEXEC, "mode=755,size=1m") == 0;
}

bool WriteTextFile(const char* path, const std::string& text) {
    const int fd = open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const bool written = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(fd) == 0 && written;
}

/// Keeps the mounts to come from spreading to other namespaces. A changed root directory is no
/// mount, whose spreading could be switched off: so the process steps out to the namespace's own
/// root for that, and back.
bool KeepMountsPrivate() {
    const FileDescriptor root = OpenHandle("/");
    const FileDescriptor current = OpenHandle(".");
    const int ownNamespace = open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
    if (root.Get() < 0 || current.Get() < 0 || ownNamespace < 0) {
        return false;
    }
    const bool isPrivate = setns(ownNamespace, CLONE_NEWNS) == 0 &&
                           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    close(ownNamespace);
    return isPrivate && fchdir(root.Get()) == 0 && chroot(".") == 0 && fchdir(current.Get()) == 0;
}

/// Something of the host's /dev, to be shown again in the new one.
struct DeviceEntry {
    fs::path name;
    fs::file_status status;
    FileDescriptor handle;
};

std::vector<DeviceEntry> OpenDeviceEntries() {
    std::vector<DeviceEntry> entries;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(kDevices, ignored)) {
        entries.push_back(
            {entry.path().filename(), entry.symlink_status(ignored), OpenHandle(entry.path())});
    }
    return entries;
}

bool CreateEmptyFile(const fs::path& path) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    return fd >= 0 && close(fd) == 0;
}

/// Shows one entry of the host's /dev in the new one, as far as it can be shown.
void Keep(const DeviceEntry& entry) {
    const fs::path path = kDevices / entry.name;
    std::error_code ignored;
    if (fs::is_symlink(entry.status)) {
        char target[4096] = {};
        if (readlinkat(entry.handle.Get(), "", target, sizeof target - 1) > 0) {
            fs::create_symlink(target, path, ignored);
        }
    } else if (fs::is_directory(entry.status)) {
        fs::create_directory(path, ignored);
        Bind(entry.handle.Path(), path);
    } else if (CreateEmptyFile(path)) {
        Bind(entry.handle.Path(), path);
    }
}

/// A /dev with everything that was there and room for a memory device.
std::string AddMemoryDevice() {
    const std::vector<DeviceEntry> entries = OpenDeviceEntries();
    if (!MountEmptyDirectory(kDevices)) {
        return Failed("mount a directory over /dev");
    }
    for (const DeviceEntry& entry : entries) {
        if (kDevices / entry.name != kMemory) {
            Keep(entry);
        }
    }
    return CreateEmptyFile(kMemory) ? "" : Failed("create /dev/mem");
}

std::string AddPciDirectory() {
    if (!MountEmptyDirectory(kBuses) || mkdir(kPciTree, 0755) != 0) {
        return Failed("make room for /proc/bus/pci");
    }
    return "";
}

bool Exists(const char* path) {
    return access(path, F_OK) == 0;
}

/// Whether there is something that a file can be laid over. A container may have a directory there.
bool HasMemoryDevice() {
    std::error_code ignored;
    return Exists(kMemory) && !fs::is_directory(kMemory, ignored);
}

/// Writes an image into a directory of its own that covers /dev meanwhile, and shows it in place
/// of the memory device below.
std::string LayOverMemory(const MemoryImage& image) {
    const FileDescriptor device(open(kMemory, O_PATH | O_CLOEXEC));
    if (!device.IsOpen() || !MountEmptyDirectory(kDevices)) {
        return Failed("make room for the memory image");
    }
    const FileDescriptor file = CreateFile(AT_FDCWD, kMemory);
    std::string failure;
    if (!file.IsOpen() || !image.WriteTo(file.Get())) {
        failure = Failed("write the memory image");
    } else if (!Bind(file.Path(), device.Path())) {
        failure = Failed("lay the memory image over /dev/mem");
    }
    // The file lives on where it is shown.
    umount2(kDevices, MNT_DETACH);
    return failure;
}

std::string ProvideMemoryDevice() {
    return HasMemoryDevice() ? "" : AddMemoryDevice();
}

std::string ProvidePciDirectory() {
    return Exists(kPciTree) ? "" : AddPciDirectory();
}

std::string Forbidden(const std::string& what) {
    return Failed(what) + "; this system forbids it to this user";
}

}  // namespace

std::string EnterPrivateNamespace() {
    if (unshare(CLONE_NEWNS) == 0) {
        return KeepMountsPrivate() ? "" : Failed("keep the mounts private");
    }
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return Forbidden("enter a user namespace");
    }
    // Everyone stays who he is. The mounts of a new user namespace do not spread.
    if (!WriteTextFile("/proc/self/setgroups", "deny") ||
        !WriteTextFile("/proc/self/uid_map", user + " " + user + " 1") ||
        !WriteTextFile("/proc/self/gid_map", group + " " + group + " 1")) {
        return Forbidden("set up the user namespace");
    }
    return "";
}

std::string WhyNoMachine(const fs::path& folder) {
    std::error_code error;
    const bool hasMemory = fs::is_regular_file(folder / "mem", error);
    if (error == std::errc::permission_denied) {
        return folder.string() + ": " + error.message();
    }
    if (!hasMemory || !fs::is_directory(folder / "pci", error)) {
        return folder.string() + " is no machine: it lacks the file mem or the directory pci";
    }
    for (const char* part : {"mem", "pci"}) {
        if (!OpenForReading(folder / part).IsOpen()) {
            return Failed("read " + (folder / part).string());
        }
    }
    return "";
}

std::string EnterMachine(const fs::path& folder) {
    std::string failure = WhyNoMachine(folder);
    if (!failure.empty()) {
        return failure;
    }
    std::error_code ignored;
    const fs::path memoryPath = fs::canonical(folder / "mem", ignored);
    const fs::path pciPath = fs::canonical(folder / "pci", ignored);
    failure = EnterPrivateNamespace();
    // From here on by descriptor: the folder may itself lie below /dev.
    const FileDescriptor memory = OpenHandle(memoryPath);
    const FileDescriptor pciTree = OpenHandle(pciPath);
    if (failure.empty()) {
        failure = ProvideMemoryDevice();
    }
    if (failure.empty()) {
        failure = ProvidePciDirectory();
    }
    if (failure.empty() && !Bind(memory.Path(), kMemory)) {
        failure = Failed("lay the memory image over /dev/mem");
    }
    if (failure.empty() && !Bind(pciTree.Path(), kPciTree)) {
        failure = Failed("lay the PCI tree over /proc/bus/pci");
    }
    return failure;
}

std::string EnterMemory(const MemoryImage& image) {
    std::string failure = EnterPrivateNamespace();
    if (failure.empty()) {
        failure = ProvideMemoryDevice();
    }
    return failure.empty() ? LayOverMemory(image) : failure;
}

}  // namespace machine
