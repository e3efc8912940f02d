// The reader built to search an image file: the file takes the place of the BIOS area alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "smbios/srvinfo.h"
#include "support/InMachine.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::MachineBuilder;
using machine::Structure;
using support::CoverWithEmptyDirectory;

constexpr char kReadFailed[] = "File read failed -2 \nGet Memory From File";
constexpr char kNoTable[] =
    "Catastrophic ParseTables() failure -3 \n"
    "SERVER_INFORMATION::ParseTables()\n";

MachineBuilder MachineOf(uint8_t enclosureType) {
    return MachineBuilder().Add(Structure(3, 0x0D).String(0x04, "QEV").Byte(0x05, enclosureType));
}

/// The BIOS area of a machine, as an image file holds it.
std::string ImageOf(const MachineBuilder& machine) {
    const support::TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    std::ifstream memory(folder.path() / "machine/mem", std::ios::binary);
    memory.seekg(0xF0000);
    std::string image(65535, '\0');
    memory.read(image.data(), 65535);
    EXPECT_EQ(memory.gcount(), 65535);
    return image;
}

/// A story on a machine, in a folder that holds this image file, unless it is empty.
std::string WithImage(const std::string& image, const MachineBuilder& machine,
                      const support::Story& story) {
    const support::TemporaryFolder folder;
    if (!image.empty()) {
        std::ofstream(folder.path() / "SM_BIOS.BIN", std::ios::binary) << image;
    }
    return support::OnMachine(machine, [&] {
        fs::current_path(folder.path());
        story();
    });
}

TEST(ImageBuild, EntryPointComesFromTheFile) {
    const std::string output =
        WithImage(ImageOf(MachineOf(0x17)), MachineOf(0x17).NoEntryPoint(), [] {
            SERVER_INFORMATION record;
            EXPECT_EQ(record.Run(), 0);
            EXPECT_EQ(record.GetNumSystemEnclosures(), 1);
        });
    EXPECT_EQ(output, "");
}

TEST(ImageBuild, TableComesFromPhysicalMemory) {
    // The image tells where; what lies there is the machine's.
    const std::string output =
        WithImage(ImageOf(MachineOf(0x17)), MachineOf(0x0A).NoEntryPoint(), [] {
            SERVER_INFORMATION record;
            EXPECT_EQ(record.Run(), 0);
            EXPECT_EQ(record.GetSystemEnclosureType(0), 0x0A);
        });
    EXPECT_EQ(output, "");
}

TEST(ImageBuild, EntryPointInMemoryIsNotLookedFor) {
    const std::string output = WithImage(std::string(65535, ' '), MachineOf(0x17),
                                         [] { EXPECT_EQ(SERVER_INFORMATION().Run(), -3); });
    EXPECT_EQ(output, kNoTable);
}

TEST(ImageBuild, LoadingSucceedsWithoutTheDevice) {
    const std::string output = WithImage(ImageOf(MachineOf(0x17)), MachineOf(0x17), [] {
        CoverWithEmptyDirectory("/dev");
        SERVER_INFORMATION record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        EXPECT_EQ(record.FindHeader(), nullptr);
    });
    EXPECT_EQ(output, "");
}

TEST(ImageBuild, RefusedMappingGivesNoTable) {
    const std::string output = WithImage(ImageOf(MachineOf(0x17)), MachineOf(0x17), [] {
        CoverWithEmptyDirectory("/dev");
        fs::create_directory("/dev/mem");
        EXPECT_EQ(SERVER_INFORMATION().Run(), -3);
    });
    EXPECT_EQ(output, kNoTable);
}

TEST(ImageBuild, LoadingSucceedsEvenWhenTheFileIsMissing) {
    const std::string output = WithImage("", MachineOf(0x17), [] {
        SERVER_INFORMATION record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        EXPECT_EQ(record.FindHeader(), nullptr);
    });
    EXPECT_EQ(output, kReadFailed);
}

TEST(ImageBuild, ShortFileIsReportedOnTheWay) {
    const std::string output =
        WithImage("short", MachineOf(0x17), [] { EXPECT_EQ(SERVER_INFORMATION().Run(), -3); });
    EXPECT_EQ(output, std::string(kReadFailed) + kNoTable);
}

}  // namespace
