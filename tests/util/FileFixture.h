// A folder of files for the tests of CMyFileIO.
// Holds no file open; what a test writes goes with the test.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/TemporaryFolder.h"
#include "util/MyFileIO.h"

class Files : public testing::Test {
  protected:
    /// The path of a file in the test's folder.
    CString Path(const char* name) const { return (m_folder.path() / name).c_str(); }

    CString Written(const char* name, const std::string& text) const {
        std::ofstream(m_folder.path() / name, std::ios::binary) << text;
        return Path(name);
    }

    std::string Contents(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder.path() / name, std::ios::binary).rdbuf();
        return text.str();
    }

    const std::filesystem::path& Folder() const { return m_folder.path(); }

  private:
    support::TemporaryFolder m_folder;
};

/// The next line, with "!" behind it when ReadString says true and "$" when the end was met.
inline std::string Next(CMyFileIO& file) {
    CString line("old");
    const bool read = file.ReadString(line);
    return std::string(line.GetBuffer()) + (read ? "!" : "") + (file.IsEOF() ? "$" : "");
}

/// The number that the next descriptor will get.
inline int NextDescriptor() {
    const int next = dup(STDIN_FILENO);
    close(next);
    return next;
}
