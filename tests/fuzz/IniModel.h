// CIniFile as its documentation tells it, on a vector of lines: simple, slow and easy to believe.
// Reads and writes no file.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

struct IniModel {
    bool spaced = false;
    std::vector<std::string> lines;

    /// Appends the lines of a file; the result is that of CIniFile::ReadIniFile.
    bool Load(const std::string& file);
    std::string File() const;

    /// `line` receives the line found, or the last one looked at.
    bool Find(const std::string& section, const std::string& key, std::string& line) const;
    std::string Read(const std::string& section, const std::string& key,
                     const std::string& def) const;
    bool Write(const std::string& section, const std::string& key, const std::string& value,
               bool allowDuplicate);
    void Remove(const std::string& section, const std::string& key, const std::string& value,
                bool firstOnly);

  private:
    size_t RewindBlanks(size_t line) const;
    size_t EndOfLines() const;
    void Insert(size_t before, const std::string& text);
    size_t RemoveHeader(size_t line);
};

}  // namespace fuzz
