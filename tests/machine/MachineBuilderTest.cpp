// Machine folders, read by other programs than our own.
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <sstream>

#include "machine/MachineBuilder.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::Bytes;
using machine::MachineBuilder;
using machine::PciFunction;
using machine::Structure;

Bytes BytesAt(const fs::path& file, std::streamoff offset, size_t size) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(offset);
    std::string text(size, '?');
    stream.read(text.data(), static_cast<std::streamsize>(size));
    text.resize(static_cast<size_t>(stream.gcount()));
    return {text.begin(), text.end()};
}

int Sum(const Bytes& bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), 0) % 256;
}

/// What dmidecode says of the sample server.
std::string Dmidecode(const std::string& option, const std::string& value) {
    const support::Result result = support::Run(
        {"dmidecode", "--no-sysfs", "-d", support::Arlo2Folder() / "mem", option, value});
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

TEST(Structure, EncodesFieldsStringsAndClosingNuls) {
    EXPECT_EQ(Structure(9, 8).Byte(4, 0xAB).Word(5, 0x1234).Encode(0x0102),
              (Bytes{9, 8, 2, 1, 0xAB, 0x34, 0x12, 0, 0, 0}));
    EXPECT_EQ(Structure(11, 5).String(4, "a").Text("bc").Encode(0),
              (Bytes{11, 5, 0, 0, 1, 'a', 0, 'b', 'c', 0, 0}));
    EXPECT_EQ(Structure(1, 8).Dword(4, 0x12345678).Encode(0),
              (Bytes{1, 8, 0, 0, 0x78, 0x56, 0x34, 0x12, 0, 0}));
}

TEST(MachineBuilder, EntryPointHasBothChecksums) {
    const support::TemporaryFolder folder;
    MachineBuilder().EntryPointAt(0xF0010).WriteTo(folder.path() / "m");
    const Bytes entry = BytesAt(folder.path() / "m/mem", 0xF0010, 0x1F);
    EXPECT_EQ(Sum(entry), 0);
    EXPECT_EQ(Sum(Bytes(entry.begin() + 0x10, entry.end())), 0);
    EXPECT_EQ(std::string(entry.begin(), entry.begin() + 4), "_SM_");
}

TEST(MachineBuilder, LegacyEntryPointHasItsChecksum) {
    const support::TemporaryFolder folder;
    MachineBuilder().EntryPointAt(0xF0010).LegacyEntryPoint().WriteTo(folder.path() / "m");
    const Bytes entry = BytesAt(folder.path() / "m/mem", 0xF0010, 0x0F);
    EXPECT_EQ(Sum(entry), 0);
    EXPECT_EQ(std::string(entry.begin(), entry.begin() + 5), "_DMI_");
}

TEST(MachineBuilder, TableLiesAtItsAddressAndTakesLittleRoom) {
    const support::TemporaryFolder folder;
    const fs::path memory = folder.path() / "m/mem";
    MachineBuilder().Add(Structure(1, 4)).TableAt(0xF0001234).WriteTo(memory.parent_path());
    EXPECT_EQ(BytesAt(memory, 0xF0001234, 12), (Bytes{1, 4, 0, 0, 0, 0, 127, 4, 1, 0, 0, 0}));
    EXPECT_EQ(fs::file_size(memory), 0xF0003000U);
    const support::Result size = support::Run({"du", "-k", memory});
    EXPECT_LT(std::stoi(size.output), 100);
}

TEST(MachineBuilder, PciFilesAreNamedAndSizedLikeTheKernels) {
    const support::TemporaryFolder folder;
    const fs::path tree = folder.path() / "m/pci";
    MachineBuilder()
        .Add(PciFunction{.bus = 0xA, .device = 0x1F, .function = 3, .vendorId = 0x8086})
        .Add(PciFunction{.bus = 0, .device = 2, .configurationSize = 4096})
        .WriteTo(tree.parent_path());
    EXPECT_EQ(fs::file_size(tree / "0a" / "1f.3"), 256U);
    EXPECT_EQ(fs::file_size(tree / "00" / "02.0"), 4096U);
    EXPECT_TRUE(fs::exists(tree / "devices"));
    EXPECT_EQ(BytesAt(tree / "0a" / "1f.3", 0, 2), (Bytes{0x86, 0x80}));
}

TEST(MachineBuilder, RefusesAFolderThatHoldsAMachine) {
    const support::TemporaryFolder folder;
    MachineBuilder().WriteTo(folder.path());
    EXPECT_THROW(MachineBuilder().WriteTo(folder.path()), std::system_error);
}

TEST(Arlo2, DmidecodeReadsItsIdentity) {
    EXPECT_EQ(Dmidecode("-s", "bios-version"), "-[AB1234CUS-1.07]-\n");
    EXPECT_EQ(Dmidecode("-s", "bios-release-date"), "03/18/2010\n");
    EXPECT_EQ(Dmidecode("-s", "system-manufacturer"), "QEV\n");
    EXPECT_EQ(Dmidecode("-s", "system-product-name"), "Arlo 2 -[771200X]-\n");
    EXPECT_EQ(Dmidecode("-s", "system-serial-number"), "QS0012345\n");
    // The standard swaps the bytes of the first three fields.
    EXPECT_EQ(Dmidecode("-s", "system-uuid"), "912c0e5a-1277-0b40-8e31-001a64c37d02\n");
}

TEST(Arlo2, DmidecodeFindsNoFaultInTheTable) {
    const support::Result result =
        support::Run({"dmidecode", "--no-sysfs", "-q", "-d", support::Arlo2Folder() / "mem"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output.find("TRUNCATED"), std::string::npos);
    EXPECT_EQ(result.output.find("Wrong"), std::string::npos);
    EXPECT_NE(result.output.find("Location In Chassis: Bay 14\n"), std::string::npos);
}

}  // namespace
