// A folder of files for tests in which storing fails, and what lies in it afterwards.
// Makes no fault by itself.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

#include "support/InMachine.h"
#include "support/TemporaryFolder.h"
#include "util/CString.h"

class FaultFolder {
  public:
    const std::filesystem::path& Folder() const { return m_folder.path(); }

    CString Path(const std::string& name) const { return (Folder() / name).c_str(); }

    CString Written(const std::string& name, const std::string& text) const {
        std::ofstream(Folder() / name, std::ios::binary) << text;
        return Path(name);
    }

    std::string Contents(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(Folder() / name, std::ios::binary).rdbuf();
        return text.str();
    }

    bool Holds(const std::string& name) const { return std::filesystem::exists(Folder() / name); }

  private:
    support::TemporaryFolder m_folder;
};
