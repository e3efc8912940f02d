// One INI file on disk, and an object that edits it, for the tests of CIniFile.
// Looks at the file alone, never into the object.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "support/TemporaryFolder.h"
#include "util/IniFile.h"

class Ini : public testing::Test {
  protected:
    CIniFile& Load(const std::string& text, bool spaced = false) {
        std::ofstream(m_file, std::ios::binary) << text;
        m_ini = std::make_unique<CIniFile>(CString(m_file.c_str()), spaced);
        return *m_ini;
    }
    static std::string Contents(const std::filesystem::path& file) {
        std::ostringstream text;
        text << std::ifstream(file, std::ios::binary).rdbuf();
        return text.str();
    }
    /// The file as it is.
    std::string OnDisk() const { return Contents(m_file); }
    /// The file once everything is written.
    std::string Saved() {
        m_ini->Flush();
        return OnDisk();
    }
    std::string Read(const char* section, const char* key, const char* def = "default") {
        return m_ini->ReadString(section, key, def).GetBuffer();
    }
    const std::filesystem::path& File() const { return m_file; }
    const std::filesystem::path& Folder() const { return m_folder.path(); }

  private:
    support::TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder.path() / "file.ini";
    std::unique_ptr<CIniFile> m_ini;
};
