// Reports as texts, to be read from files of a test's own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/TemporaryFolder.h"

namespace reports {

/// The smallest report that systally prints: firmware that says nothing, no PCI functions.
inline constexpr char kBare[] =
    "[System]\n"
    "Machine_Type = XXXX\n"
    "Model_Number = \n"
    "Serial_Number = \n"
    "Product_Name = \n"
    "BIOS_Version = \n"
    "BIOS_Build_Level = \n"
    "BIOS_Date = \n"
    "System_Manufacturer = \n"
    "BIOS_Language = \n"
    "Number_Of_Enclosures = 0\n"
    "Processor_X64 = FALSE\n"
    "Processor_Slots = 0\n"
    "Active_Processors = 0\n"
    "Total_Enabled_Memory_Mb = 0\n"
    "ROM_Diagnostics_Build_Level = \n"
    "System_UUID = \n"
    "Blade_Slot = \n"
    "Blade_Chassis_UUID = \n"
    "\n"
    "[PCI]\n"
    "Total_Number_Of_Devices = 0\n";

inline std::string Contents(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// The sample server's report, as the program's own tests hold it.
inline std::string Arlo2(const std::string& layout = "ini") {
    std::string text = Contents(std::string(SYSTALLY_GOLDEN) + "/arlo2." + layout);
    EXPECT_NE(text, "");
    return text;
}

/// `text` with the first `from` in it replaced. The test fails when it holds none.
inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t start = text.find(from);
    EXPECT_NE(start, std::string::npos) << "no " << from;
    return start == std::string::npos ? text : text.replace(start, from.size(), to);
}

/// A file that holds `text` as long as the object lives.
class File {
  public:
    explicit File(const std::string& text, const std::string& name = "web1.ini")
        : m_path(m_folder.path() / name) {
        std::ofstream(m_path, std::ios::binary) << text;
    }
    std::string path() const { return m_path.string(); }

  private:
    support::TemporaryFolder m_folder;
    std::filesystem::path m_path;
};

}  // namespace reports
