// The image file of the BIOS area: reading it into a buffer and writing the buffer to it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "smbios/srvinfo.h"
#include "support/InMachine.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using machine::MachineBuilder;
using support::CoverWithEmptyDirectory;

constexpr char kReadFailed[] = "File read failed -2 \nGet Memory From File";
constexpr char kWriteFailed[] = "File write failed -2 \nCopy Memory to File";
constexpr char kWrittenFile[] = "Y:\\SM_BIOS.BIN";

/// A story that plays in an empty folder of its own.
std::string InEmptyFolder(const MachineBuilder& machine, const support::Story& story) {
    const support::TemporaryFolder folder;
    return support::OnMachine(machine, [&] {
        fs::current_path(folder.path());
        story();
    });
}

void WriteFile(const char* name, const std::string& contents) {
    std::ofstream(name, std::ios::binary) << contents;
}

std::string ReadFile(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Contents in which every byte depends on its place.
std::string Pattern(size_t size) {
    std::string text(size, '\0');
    for (size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(i * 7 + i / 256);
    }
    return text;
}

// --- GetMemoryFromFile --------------------------------------------------------------------------

/// What the buffer holds after reading; filled with '?' before.
std::string Read() {
    std::vector<unsigned char> buffer(65535 + 1, '?');
    SERVER_INFORMATION().GetMemoryFromFile(buffer.data());
    EXPECT_EQ(buffer.back(), '?') << "wrote behind the buffer";
    return {buffer.begin(), buffer.end() - 1};
}

TEST(GetMemoryFromFile, ReadsTheFileOfTheCurrentDirectory) {
    const std::string output = InEmptyFolder(MachineBuilder(), [] {
        WriteFile("SM_BIOS.BIN", Pattern(65535));
        EXPECT_EQ(Read(), Pattern(65535));
    });
    EXPECT_EQ(output, "");
}

TEST(GetMemoryFromFile, LongerFileIsReadAsFarAsTheBufferGoes) {
    const std::string output = InEmptyFolder(MachineBuilder(), [] {
        WriteFile("SM_BIOS.BIN", Pattern(65536));
        EXPECT_EQ(Read(), Pattern(65535));
    });
    EXPECT_EQ(output, "");
}

TEST(GetMemoryFromFile, MissingFileGivesAMessage) {
    EXPECT_EQ(InEmptyFolder(MachineBuilder(), [] { Read(); }), kReadFailed);
}

TEST(GetMemoryFromFile, MissingFileLeavesZeros) {
    InEmptyFolder(MachineBuilder(), [] { EXPECT_EQ(Read(), std::string(65535, '\0')); });
}

TEST(GetMemoryFromFile, WhatAShortFileDoesNotHaveIsZero) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{65534}}) {
        InEmptyFolder(MachineBuilder(), [size] {
            WriteFile("SM_BIOS.BIN", Pattern(size));
            EXPECT_EQ(Read(), Pattern(size) + std::string(65535 - size, '\0'));
        });
    }
}

TEST(GetMemoryFromFile, ShortFileGivesAMessage) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{65534}}) {
        const std::string output = InEmptyFolder(MachineBuilder(), [size] {
            WriteFile("SM_BIOS.BIN", Pattern(size));
            Read();
        });
        EXPECT_EQ(output, kReadFailed) << size;
    }
}

TEST(GetMemoryFromFile, DirectoryInPlaceOfTheFileGivesAMessage) {
    const std::string output = InEmptyFolder(MachineBuilder(), [] {
        fs::create_directory("SM_BIOS.BIN");
        Read();
    });
    EXPECT_EQ(output, kReadFailed);
}

TEST(GetMemoryFromFile, WrittenNameIsNotTheReadOne) {
    const std::string output = InEmptyFolder(MachineBuilder(), [] {
        WriteFile(kWrittenFile, Pattern(65535));
        Read();
    });
    EXPECT_EQ(output, kReadFailed);
}

// --- CopyMemoryToFile ---------------------------------------------------------------------------

TEST(CopyMemoryToFile, WhatMemoryDoesNotHaveIsZero) {
    const support::TemporaryFolder folder;
    const fs::path machine = folder.path() / "machine";
    MachineBuilder().Poke(0xF0000, Pattern(1000)).WriteTo(machine);
    fs::resize_file(machine / "mem", 0xF0000 + 1000);
    const std::string output = support::OnMachine(machine, [&folder] {
        fs::current_path(folder.path());
        // The buffer lies where something else was.
        std::vector<char>(65535, '?').clear();
        SERVER_INFORMATION record;
        EXPECT_TRUE(record.LoadBIOSBuffer());
        record.CopyMemoryToFile();
        EXPECT_EQ(ReadFile(kWrittenFile), Pattern(1000) + std::string(65535 - 1000, '\0'));
    });
    EXPECT_EQ(output, "");
}

MachineBuilder MachineWithMarks() {
    return MachineBuilder()
        .Poke(0xEFFFF, "(")
        .Poke(0xF0000, "first")
        .Poke(0xF8000, "middle")
        .Poke(0xFFFFA, "last")
        .Poke(0xFFFFE, "[]");
}

void Write() {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.LoadBIOSBuffer());
    record.CopyMemoryToFile();
}

TEST(CopyMemoryToFile, WritesTheAreaUnderItsLiteralName) {
    const std::string output = InEmptyFolder(MachineWithMarks(), [] {
        Write();
        const std::string image = ReadFile(kWrittenFile);
        ASSERT_EQ(image.size(), 65535u);
        EXPECT_EQ(image.substr(0, 5), "first");
        EXPECT_EQ(image.substr(0x8000, 6), "middle");
        EXPECT_EQ(image.substr(0x59F0, 4), "_SM_");
    });
    EXPECT_EQ(output, "");
}

TEST(CopyMemoryToFile, LastByteOfTheSegmentIsNotPartOfTheArea) {
    InEmptyFolder(MachineWithMarks(), [] {
        Write();
        const std::string image = ReadFile(kWrittenFile);
        ASSERT_EQ(image.size(), 65535u);
        EXPECT_EQ(image.substr(65530), "last[");
    });
}

TEST(CopyMemoryToFile, ReplacesALongerFile) {
    InEmptyFolder(MachineWithMarks(), [] {
        WriteFile(kWrittenFile, Pattern(100000));
        Write();
        EXPECT_EQ(fs::file_size(kWrittenFile), 65535u);
    });
}

TEST(CopyMemoryToFile, WrittenImageCanBeReadBack) {
    const std::string output = InEmptyFolder(MachineWithMarks(), [] {
        Write();
        fs::rename(kWrittenFile, "SM_BIOS.BIN");
        const std::string image = Read();
        EXPECT_EQ(image.substr(0, 5), "first");
        EXPECT_EQ(image.substr(65530), "last[");
    });
    EXPECT_EQ(output, "");
}

TEST(CopyMemoryToFile, FileThatCannotBeOpenedGivesAMessage) {
    const std::string output = InEmptyFolder(MachineWithMarks(), [] {
        fs::create_directory(kWrittenFile);
        Write();
    });
    EXPECT_EQ(output, kWriteFailed);
}

TEST(CopyMemoryToFile, DeviceWithoutRoomGivesAMessage) {
    const std::string output = InEmptyFolder(MachineWithMarks(), [] {
        fs::create_symlink("/dev/full", kWrittenFile);
        Write();
    });
    EXPECT_EQ(output, kWriteFailed);
}

TEST(CopyMemoryToFile, FullFileSystemGivesAMessage) {
    for (const char* room : {"size=4k", "size=32k", "size=60k"}) {
        const std::string output = InEmptyFolder(MachineWithMarks(), [room] {
            fs::create_directory("small");
            CoverWithEmptyDirectory("small", room);
            fs::current_path("small");
            Write();
        });
        EXPECT_EQ(output, kWriteFailed) << room;
    }
}

TEST(CopyMemoryToFile, FileSystemWithJustEnoughRoomHoldsTheImage) {
    const std::string output = InEmptyFolder(MachineWithMarks(), [] {
        fs::create_directory("small");
        CoverWithEmptyDirectory("small", "size=64k");
        fs::current_path("small");
        Write();
        EXPECT_EQ(fs::file_size(kWrittenFile), 65535u);
    });
    EXPECT_EQ(output, "");
}

}  // namespace
