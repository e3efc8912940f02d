// Makes the calling process see the machine of a folder in place of the one it runs on.
// Changes nothing outside the process: the mounts live in a private namespace and end with it.
#pragma once

#include <filesystem>
#include <string>

#include "machine/MemoryImage.h"

namespace machine {

/// Gives this process a mount namespace of its own, as root or, where user namespaces are allowed,
/// as any user; what it mounts from then on is seen by itself and by those that it starts.
/// Returns an empty text, or what went wrong.
/// Requires: the process has one thread.
std::string EnterPrivateNamespace();

/// An empty text when the folder holds a machine that may be read, or what it lacks.
std::string WhyNoMachine(const std::filesystem::path& folder);

/// Lays `folder`/mem over /dev/mem and `folder`/pci over /proc/bus/pci for this process and
/// those that it starts, in a private namespace. Returns an empty text, or what went wrong.
/// Requires: the process has one thread.
std::string EnterMachine(const std::filesystem::path& folder);

/// Lays an image of physical memory over /dev/mem in the same way and leaves the PCI tree as it is.
/// The image lives in memory and ends with the namespace.
/// Requires: the process has one thread.
std::string EnterMemory(const MemoryImage& image);

}  // namespace machine
