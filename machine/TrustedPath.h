// Opens a directory along a path whose links only trusted users may have made.
// Follows no link of another user: in a shared directory he may have planted it.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "machine/Files.h"
#include "machine/Outcome.h"

namespace machine {

/// A handle on the directory at `path`. Links count as planted unless root or `user` owns them.
Outcome<FileDescriptor> OpenTrustedDirectory(const std::filesystem::path& path, uid_t user);

}  // namespace machine
