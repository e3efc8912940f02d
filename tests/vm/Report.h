// The program's report, read back from either of its layouts.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vm {

class Report {
  public:
    /// Keys of a "[Name]" section are read as "Name_Key", so that both layouts give the same.
    /// Throws std::runtime_error on a line of any other shape.
    explicit Report(const std::string& text);

    bool Has(const std::string& key) const;
    /// Throws std::out_of_range when the key is absent.
    const std::string& Value(const std::string& key) const;
    /// The value of a decimal key. Throws as above, and when it is no number.
    int Number(const std::string& key) const { return std::stoi(Value(key)); }
    /// Key and value of every line, in their order.
    const std::vector<std::pair<std::string, std::string>>& Lines() const { return lines_; }

  private:
    std::vector<std::pair<std::string, std::string>> lines_;
};

/// "Key.index", as the report names the facts of one of several things.
inline std::string Indexed(const std::string& key, size_t index) {
    return key + "." + std::to_string(index);
}

}  // namespace vm
