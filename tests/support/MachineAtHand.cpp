// Lays a machine over the host in the child, piece by piece.
#include "support/MachineAtHand.h"

#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <numeric>

#include "machine/Overlay.h"

namespace support {

namespace {

namespace fs = std::filesystem;

constexpr char kFirmware[] = "/sys/firmware";

void WriteFile(const fs::path& file, const machine::Bytes& bytes) {
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

MachineAtHand::MachineAtHand(const machine::MachineBuilder& machine) {
    machine.WriteTo(Folder());
}

MachineAtHand& MachineAtHand::WithoutMemory() {
    m_hasMemory = false;
    return *this;
}

MachineAtHand& MachineAtHand::WithoutPciTree() {
    m_hasPciTree = false;
    return *this;
}

MachineAtHand& MachineAtHand::WithoutSysfs() {
    m_hasSysfs = false;
    return *this;
}

MachineAtHand& MachineAtHand::WithKernelsCopy(const machine::Bytes& entryPoint,
                                              const machine::Bytes& table) {
    m_entryPoint = entryPoint;
    m_table = table;
    return *this;
}

MachineAtHand& MachineAtHand::WithUnreadableMemory() {
    m_isMemoryReadable = false;
    return *this;
}

MachineAtHand& MachineAtHand::With(const Preparation& more) {
    m_more.push_back(more);
    return *this;
}

Result MachineAtHand::Run(const Arguments& command) const {
    return support::Run(m_isMemoryReadable ? command : WithoutRights(command),
                        [this] { return Prepare(); });
}

std::string MachineAtHand::Prepare() const {
    std::string failure = machine::EnterMachine(Folder());
    if (failure.empty() && !m_isMemoryReadable) {
        // Over the file, so that its own mode stays.
        failure = ForbidMemory();
    }
    if (failure.empty()) {
        failure = m_hasSysfs ? ShowSysfs() : Cover("/sys");
    }
    if (failure.empty() && !m_hasMemory) {
        failure = Cover("/dev");
    }
    if (failure.empty() && !m_hasPciTree) {
        failure = Cover("/proc/bus");
    }
    for (const Preparation& more : m_more) {
        failure = failure.empty() ? more() : failure;
    }
    return failure;
}

std::string MachineAtHand::ShowSysfs() const {
    std::string failure = Cover(kFirmware);
    if (failure.empty() && m_entryPoint) {
        const fs::path tables = fs::path(kFirmware) / "dmi/tables";
        fs::create_directories(tables);
        WriteFile(tables / "smbios_entry_point", *m_entryPoint);
        WriteFile(tables / "DMI", m_table);
    }
    return failure;
}

/// Covers the memory device by a file that nobody may open.
std::string MachineAtHand::ForbidMemory() const {
    const fs::path closed = m_folder.path() / "closed";
    WriteFile(closed, {});
    fs::permissions(closed, fs::perms::none);
    const int result = mount(closed.c_str(), "/dev/mem", nullptr, MS_BIND, nullptr);
    return result == 0 ? "" : std::string("cannot forbid /dev/mem: ") + std::strerror(errno);
}

machine::Bytes EntryPoint64(uint64_t tableAddress, uint32_t largestLength) {
    // DSP0134 5.2.2.
    machine::Bytes bytes = {'_', 'S', 'M', '3', '_', 0, 0x18, 3, 2, 0, 1, 0};
    for (int i = 0; i < 4; ++i) {
        bytes.push_back(static_cast<uint8_t>(largestLength >> (8 * i)));
    }
    for (int i = 0; i < 8; ++i) {
        bytes.push_back(static_cast<uint8_t>(tableAddress >> (8 * i)));
    }
    bytes[5] = static_cast<uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
    return bytes;
}

std::string MakeMemoryADirectory() {
    std::error_code ignored;
    return fs::create_directory("/dev/mem", ignored) ? "" : "cannot make a directory of /dev/mem";
}

std::string Cover(const fs::path& directory, const std::string& options) {
    if (mount("none", directory.c_str(), "tmpfs", 0, options.c_str()) == 0) {
        return "";
    }
    return "cannot cover " + directory.string() + ": " + std::strerror(errno);
}

}  // namespace support
