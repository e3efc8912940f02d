// Where the result goes: standard output, or a file that appears whole or not at all.
// Leaves nothing behind when the work fails or a signal ends it.
#pragma once

#include <string>
#include <string_view>

namespace report {

/// Fills what is missing of the three standard descriptors, so that no file becomes one of them and
/// gets what was meant for a reader. Reading and writing there still fail.
void ReserveStandardDescriptors();

class Output {
  public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Takes an uncommitted file away again.
    ~Output();

    // Each returns an empty text, or what went wrong.

    /// An empty path, or "-", is standard output. A device, a pipe or what is open already, such as
    /// /dev/stdout, is written as it stands; any other file is replaced at the end, and what it
    /// held stays until then.
    [[nodiscard]] std::string Open(const std::string& path);
    [[nodiscard]] std::string Write(std::string_view text);
    [[nodiscard]] std::string Commit();

  private:
    std::string OpenTemporary();
    std::string Failed(const char* what) const;

    std::string m_name = "standard output";
    std::string m_target;     ///< the file to replace; empty when there is none
    std::string m_temporary;  ///< empty when there is none
    int m_file = -1;
};

}  // namespace report
