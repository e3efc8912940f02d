// Lays a machine over the host in the child, piece by piece.
#include "support/MachineAtHand.h"

#include <sys/mount.h>
#include <unistd.h>

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

MachineAtHand& MachineAtHand::WithoutRights() {
    m_hasRights = false;
    return *this;
}

MachineAtHand& MachineAtHand::With(const Preparation& more) {
    m_more.push_back(more);
    return *this;
}

Result MachineAtHand::Run(const Arguments& command) const {
    Arguments whole = command;
    // Where the tests are run by an ordinary user, the program has no rights to begin with.
    if (!m_hasRights && geteuid() == 0) {
        whole = {"setpriv", "--inh-caps=-all", "--bounding-set=-all"};
        whole.insert(whole.end(), command.begin(), command.end());
    }
    return support::Run(whole, [this] { return Prepare(); });
}

std::string MachineAtHand::Prepare() const {
    std::string failure = machine::EnterMachine(Folder());
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

std::string Cover(const fs::path& directory, const std::string& options) {
    if (mount("none", directory.c_str(), "tmpfs", 0, options.c_str()) == 0) {
        return "";
    }
    return "cannot cover " + directory.string() + ": " + std::strerror(errno);
}

}  // namespace support
