// CIniFile as its documentation tells it, step by step.
// Takes the long way wherever the class takes a short one.
#include "fuzz/IniModel.h"

#include <algorithm>
#include <cctype>

namespace fuzz {

namespace {

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\n");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

std::string Folded(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

bool IsHeader(const std::string& line) {
    return line.starts_with('[');
}

bool IsHeaderOf(const std::string& line, const std::string& section) {
    return IsHeader(line) && Folded(Trimmed(line.substr(1, line.find(']') - 1))) == Folded(section);
}

bool IsEntryOf(const std::string& line, const std::string& key) {
    const size_t equals = line.find('=');
    return equals != std::string::npos && Folded(Trimmed(line.substr(0, equals))) == Folded(key);
}

}  // namespace

bool IniModel::Load(const std::string& file) {
    size_t start = 0;
    while (start < file.size()) {
        const size_t newline = file.find('\n', start);
        const size_t end = newline == std::string::npos ? file.size() : newline + 1;
        std::string line = file.substr(start, end - start);
        std::erase(line, '\r');
        std::erase(line, '\0');
        if (line.empty()) {
            return false;
        }
        lines.push_back(Trimmed(line));
        if (newline == std::string::npos) {
            return true;
        }
        start = end;
    }
    return false;
}

std::string IniModel::File() const {
    std::string file;
    for (const std::string& line : lines) {
        file += line + "\n";
    }
    return file;
}

bool IniModel::Find(const std::string& section, const std::string& key, std::string& line) const {
    bool inSection = section.empty();
    for (const std::string& text : lines) {
        line = text;
        if (text.empty() || text.starts_with(';')) {
            continue;
        }
        if (!inSection) {
            inSection = IsHeaderOf(text, section);
        } else if (IsHeader(text)) {
            return false;
        } else if (IsEntryOf(text, key)) {
            return true;
        }
    }
    return false;
}

std::string IniModel::Read(const std::string& section, const std::string& key,
                           const std::string& def) const {
    std::string line;
    return Find(section, key, line) ? Trimmed(line.substr(line.find('=') + 1)) : def;
}

size_t IniModel::RewindBlanks(size_t line) const {
    while (line > 0 && lines[line - 1].empty()) {
        --line;
    }
    return line;
}

size_t IniModel::EndOfLines() const {
    return !lines.empty() && lines.back().empty() ? RewindBlanks(lines.size() - 1) : lines.size();
}

void IniModel::Insert(size_t before, const std::string& text) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(before), Trimmed(text));
}

bool IniModel::Write(const std::string& section, const std::string& key, const std::string& value,
                     bool allowDuplicate) {
    const std::string entry = key.empty() ? value : key + (spaced ? " = " : "=") + value;
    bool inSection = section.empty();
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].empty()) {
            continue;
        }
        if (!inSection) {
            inSection = IsHeaderOf(lines[i], section);
        } else if (IsHeader(lines[i])) {
            const size_t place = RewindBlanks(i);
            if (!entry.empty() && place == i) {
                Insert(i, "");
            }
            if (!entry.empty()) {
                Insert(place, entry);
            }
            return true;
        } else if (!key.empty() && IsEntryOf(lines[i], key)) {
            lines[i] = Trimmed(entry);
            return true;
        } else if (key.empty() && !allowDuplicate && lines[i] == value) {
            return false;
        }
    }
    size_t end = EndOfLines();
    if (!inSection) {
        if (!lines.empty() && end != 0) {
            Insert(end++, "");
        }
        Insert(end++, "[" + section + "]");
    }
    if (!entry.empty()) {
        Insert(end, entry);
    }
    return true;
}

/// Before the first line stands the last one.
size_t IniModel::RemoveHeader(size_t line) {
    const size_t before = line == 0 ? lines.size() - 1 : line - 1;
    if (lines[before].empty()) {
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(before));
        line -= before < line ? 1 : 0;
    }
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line));
    return line;
}

void IniModel::Remove(const std::string& section, const std::string& key, const std::string& value,
                      bool firstOnly) {
    const bool removesSection = key.empty() && value.empty();
    bool inSection = section.empty();
    for (size_t i = 0; i < lines.size();) {
        if (lines[i].empty()) {
            ++i;
            continue;
        }
        if (!inSection) {
            inSection = IsHeaderOf(lines[i], section);
            i = inSection && removesSection ? RemoveHeader(i) : i + 1;
            continue;
        }
        if (IsHeader(lines[i])) {
            return;
        }
        const bool removes =
            removesSection || (key.empty() ? lines[i] == value : IsEntryOf(lines[i], key));
        if (!removes) {
            ++i;
            continue;
        }
        lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
        if (!removesSection) {
            if (!key.empty() || firstOnly) {
                return;
            }
            ++i;
        }
    }
}

}  // namespace fuzz
