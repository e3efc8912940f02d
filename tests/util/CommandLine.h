// A command line for the tests of the parameter table.
// Knows no switches: each test registers its own.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "util/CLParams.h"

namespace support {

/// A command line whose argv lives as long as it does, and ends with null as main's does.
class CommandLine {
  public:
    CommandLine(std::initializer_list<std::string> arguments) : m_texts(arguments) {
        m_texts.insert(m_texts.begin(), "program");
        for (std::string& text : m_texts) {
            m_argv.push_back(text.data());
        }
        m_argv.push_back(nullptr);
    }
    int Argc() const { return static_cast<int>(m_texts.size()); }
    char** Argv() { return m_argv.data(); }

  private:
    std::vector<std::string> m_texts;
    std::vector<char*> m_argv;
};

inline int Parse(CCLParams& table, std::initializer_list<std::string> arguments,
                 bool caseSensitive = true) {
    CommandLine line(arguments);
    return table.Parse(line.Argc(), line.Argv(), caseSensitive);
}

inline std::string ValueOf(CCLParams& table, const char* name) {
    CString value("untouched");
    table.GetValue(name, value);
    return value.GetBuffer();
}

}  // namespace support
