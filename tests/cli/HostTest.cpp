// This machine's own PCI functions against what lspci says of them.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "machine/Arlo2.h"
#include "support/Program.h"
#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

using support::Result;

/// The sample server's memory beside this machine's own PCI tree.
class Host : public testing::Test {
  protected:
    Host() {
        machine::Arlo2().WriteTo(m_machine);
        fs::remove_all(m_machine / "pci");
        fs::create_symlink("/proc/bus/pci", m_machine / "pci");
    }

  private:
    support::TemporaryFolder m_folder;

  protected:
    fs::path m_machine = m_folder.path() / "machine";
};

unsigned ByteAt(const std::vector<unsigned>& bytes, size_t offset) {
    return offset < bytes.size() ? bytes[offset] : 0;
}

unsigned WordAt(const std::vector<unsigned>& bytes, size_t offset) {
    return ByteAt(bytes, offset) | ByteAt(bytes, offset + 1) << 8;
}

/// The report's lines for one function, made from lspci's address and bytes.
std::string ReportLines(int index, const std::string& address, const std::vector<unsigned>& bytes) {
    unsigned domain = 0;
    unsigned bus = 0;
    unsigned device = 0;
    unsigned function = 0;
    std::sscanf(address.c_str(), "%x:%x:%x.%x", &domain, &bus, &device, &function);
    char text[512];
    std::snprintf(text, sizeof text,
                  "Bus_Number.%d = %u\nDevice_Number.%d = %u\nFunction_Number.%d = %u\n"
                  "Class_Code.%d = %06X\nRevision.%d = %02X\nHeader_Type.%d = %02X\n"
                  "Vendor_ID.%d = %04X\nDevice_ID.%d = %04X\n"
                  "Subvendor_ID.%d = %04X\nSubdevice_ID.%d = %04X\n",
                  index, bus, index, device, index, function, index,
                  WordAt(bytes, 0x0A) << 8 | ByteAt(bytes, 0x09), index, ByteAt(bytes, 0x08), index,
                  ByteAt(bytes, 0x0E), index, WordAt(bytes, 0x00), index, WordAt(bytes, 0x02),
                  index, WordAt(bytes, 0x2C), index, WordAt(bytes, 0x2E));
    return text;
}

/// The PCI section that lspci's hex dump of every function amounts to.
std::string SectionFrom(const std::string& lspci) {
    std::string functions;
    int count = 0;
    std::istringstream lines(lspci);
    std::string line;
    std::string address;
    std::vector<unsigned> bytes;
    const auto finish = [&] {
        if (!address.empty()) {
            functions += ReportLines(count++, address, bytes);
        }
        bytes.clear();
    };
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string first;
        words >> first;
        if (first.size() == 12) {  // 0000:00:1f.3
            finish();
            address = first;
        } else {
            for (unsigned byte = 0; words >> std::hex >> byte;) {
                bytes.push_back(byte);
            }
        }
    }
    finish();
    return "\n[PCI]\nTotal_Number_Of_Devices = " + std::to_string(count) + "\n" + functions;
}

TEST_F(Host, PciSectionEqualsWhatLspciSays) {
    const Result lspci = support::Run({"lspci", "-A", "linux-proc", "-D", "-n", "-x"});
    ASSERT_EQ(lspci.status, 0) << lspci.errors;
    const Result report = support::SystallyOn(m_machine, {"/i"});
    ASSERT_EQ(report.status, 0);
    const size_t section = report.output.find("\n[PCI]\n");
    ASSERT_NE(section, std::string::npos);
    EXPECT_EQ(report.output.substr(section), SectionFrom(lspci.output));
}

}  // namespace
