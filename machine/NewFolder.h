// A folder that appears under its name all at once, complete, or not at all.
// Replaces nothing that exists and follows no link that someone planted.
#pragma once

#include <filesystem>
#include <string>

#include "machine/Files.h"
#include "machine/Outcome.h"

namespace machine {

/// Being built under a name of its own beside the one it is to get, and gone without a trace
/// when it never gets it.
class NewFolder {
  public:
    /// Makes the empty folder, which its owner alone may enter. Refuses a path that exists.
    static Outcome<NewFolder> Begin(const std::filesystem::path& path);

    NewFolder(NewFolder&& other) noexcept = default;
    NewFolder& operator=(NewFolder&&) = delete;
    ~NewFolder();

    int Get() const { return m_folder.Get(); }
    /// Gives the folder its name. Returns an empty text, or what went wrong.
    std::string Finish();

  private:
    NewFolder(FileDescriptor parent, std::filesystem::path path);
    std::string Create();
    std::string Enter();

    std::filesystem::path m_path;
    FileDescriptor m_parent;
    std::string m_temporaryName;
    FileDescriptor m_folder;
};

}  // namespace machine
