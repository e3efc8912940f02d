// Makes the calling process see the machine of a folder in place of the one it runs on.
// Changes nothing outside the process: the mounts live in a private namespace and end with it.
#pragma once

#include <filesystem>
#include <string>

namespace machine {

/// Lays `folder`/mem over /dev/mem and `folder`/pci over /proc/bus/pci for this process and
/// those that it starts. Works for root and, where user namespaces are allowed, for any user.
/// Returns an empty text, or what went wrong.
/// Requires: the process has one thread.
std::string EnterMachine(const std::filesystem::path& folder);

}  // namespace machine
