// The way from a memory image to the record, in normal and in dump mode, on any table.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "fuzz/Input.h"
#include "fuzz/TableInput.h"
#include "machine/Overlay.h"
#include "smbios/srvinfo.h"
#include "support/TemporaryFolder.h"

namespace {

using fuzz::kEndOfArea;
using fuzz::kLegacyAnchor;
using fuzz::kRawArea;

constexpr size_t kBIOSArea = 0xF0000;
constexpr size_t kEndOfBIOSArea = 0x100000;
constexpr size_t kTable = 0x200000;
constexpr size_t kLongestTable = 0x11000;
constexpr size_t kWindow = kTable + kLongestTable + 0x1000;  // what an input can write to
constexpr size_t kParagraph = 16;
constexpr size_t kMostDumped = 256;

/// Physical memory: 4 GiB and a little, so that any table address can be mapped; nearly all holes.
class Memory {
  public:
    Memory() {
        std::filesystem::create_directory(m_folder.path() / "pci");
        const std::filesystem::path file = m_folder.path() / "mem";
        std::ofstream(file).close();
        std::filesystem::resize_file(file, 0x100100000);
        const int fd = open(file.c_str(), O_RDWR | O_CLOEXEC);
        void* window = mmap(nullptr, kWindow, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        fuzz::Require(window != MAP_FAILED, "the memory image");
        m_window = static_cast<char*>(window);
        close(fd);
        fuzz::RequireEqual(machine::EnterMachine(m_folder.path()), "", "the machine");
    }

    void Put(size_t address, const std::string& bytes) {
        fuzz::Require(address + bytes.size() <= kWindow, "the window holds the input");
        std::memcpy(m_window + address, bytes.data(), bytes.size());
    }
    void Clear(size_t address, size_t size) { std::memset(m_window + address, 0, size); }

  private:
    support::TemporaryFolder m_folder;
    char* m_window = nullptr;
};

Memory* g_memory = nullptr;

std::string LittleEndian(size_t number, size_t bytes) {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) {
        text += static_cast<char>(number >> (8 * i));
    }
    return text;
}

/// The fields that both kinds of entry point hold at the same offsets from "_DMI_".
std::string EntryPoint(uint8_t flags, size_t length, size_t address, size_t count) {
    const std::string fields = "_DMI_" + std::string(1, '\0') + LittleEndian(length, 2) +
                               LittleEndian(address, 4) + LittleEndian(count, 2);
    const bool legacy = (flags & kLegacyAnchor) != 0;
    return (legacy ? std::string(kParagraph, '\0') : "_SM_" + std::string(12, '\0')) + fields;
}

void RequireText(const char* text, size_t room, const char* what) {
    fuzz::Require(strnlen(text, room) < room, what);
}

/// All that the record says, as one text; its parts are within their bounds.
std::string Facts(const SERVER_INFORMATION& record) {
    RequireText(record.GetMachineBIOSName(), 128, "the BIOS name fits");
    RequireText(record.GetManufacturer(), 128, "the manufacturer fits");
    RequireText(record.GetProductName(), 128, "the product name fits");
    RequireText(record.GetMachineSerialNumber(), 128, "the serial number fits");
    RequireText(record.GetMachineType(), 5, "the machine type has four characters at most");
    RequireText(record.GetModelNumber(), 4, "the model has three characters at most");
    RequireText(record.GetMachineBIOSBuildID(), 8, "the build has seven characters at most");
    RequireText(record.GetMachineBIOSLanguage(), 3, "the language has two characters at most");
    RequireText(record.GetBuses(), 256, "the buses fit");
    fuzz::Require(record.GetActiveProcessors() <= record.GetProcessorSlots() ||
                      record.GetProcessorSlots() < 0,
                  "no more processors than slots");
    std::string facts;
    for (const char* text :
         {record.GetMachineBIOSName(), record.GetMachineBIOSBuildID(),
          record.GetMachineBIOSLanguage(), record.GetMachineBIOSVersion(),
          record.GetMachineBIOSDate(), record.GetManufacturer(), record.GetProductName(),
          record.GetMachineType(), record.GetModelNumber(), record.GetMachineSerialNumber(),
          record.GetBuses(), record.GetROMDiagnosticsBuild(), record.GetTESKBuild(),
          record.GetKORUBuild()}) {
        facts += text;
        facts += '\n';
    }
    if (record.GetUUID() != nullptr) {
        fuzz::RequireEqual(static_cast<long>(std::strlen(record.GetUUID())), 32, "UUID digits");
        facts += record.GetUUID();
    }
    if (record.GetChassisUUID() != nullptr) {
        RequireText(record.GetChassisUUID(), 33, "the chassis UUID fits");
        facts += record.GetChassisUUID();
    }
    for (int i = -1; i <= record.GetNumSystemEnclosures(); ++i) {
        facts += std::to_string(record.GetSystemEnclosureType(i)) + ' ';
    }
    for (int i = -1; i <= record.GetActiveProcessors(); ++i) {
        facts += std::to_string(record.GetProcessorFamily(i)) + ' ' +
                 std::to_string(record.GetProcessorSpeed(i)) + ' ';
    }
    return facts + std::to_string(record.GetMemorySizeInMB()) + ' ' +
           std::to_string(record.GetBladeSlot());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    static Memory memory;
    g_memory = &memory;
    // Messages and dumps go where nobody reads them.
    return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    const size_t length = input.Word();
    const size_t count = input.Word();
    const size_t address = kTable + input.Word() % 0x1000;
    const uint8_t flags = input.Byte();
    const size_t paragraph = input.Byte() * kParagraph;
    const std::string table = input.Take(kLongestTable);

    const bool isRaw = (flags & kRawArea) != 0;
    const std::string entry = EntryPoint(flags, length, address, count);
    const size_t room = kParagraph * (isRaw ? 64 : 3);
    const size_t place = (flags & kEndOfArea) != 0 ? kEndOfBIOSArea - room + paragraph % room
                                                   : kBIOSArea + paragraph;
    const std::string bytes = isRaw ? table : entry;
    g_memory->Put(place, bytes.substr(0, kEndOfBIOSArea - place));
    g_memory->Put(address, table);

    SERVER_INFORMATION plain;
    const int result = plain.Run();
    fuzz::Require(result == 0 || result == -3, "the walk ends, or there is no table");
    const std::string facts = Facts(plain);
    // A dump takes its time for each structure.
    if (count > 0 && count <= kMostDumped) {
        SERVER_INFORMATION dumped;
        fuzz::RequireEqual(dumped.dump(), 0, "the dump's result");
        fuzz::RequireEqual(Facts(dumped), facts, "a dump decodes what a plain run decodes");
    }

    g_memory->Clear(kBIOSArea, kEndOfBIOSArea - kBIOSArea);
    g_memory->Clear(address, table.size());
    return 0;
}
