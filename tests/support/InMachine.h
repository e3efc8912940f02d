// Runs a part of a test in a child process that sees a machine of the test's own, has mounts of its
// own or lacks root's privileges. Leaves the test's own process and its mounts as they are.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "machine/MachineBuilder.h"

namespace support {

/// What the child does. EXPECT and ASSERT work in it as in any test.
using Story = std::function<void()>;

struct Ending {
    int status = -1;     ///< the exit status, or -1 when a signal ended the child
    std::string output;  ///< what it wrote to standard output
};

/// Runs `story` on a machine and returns what it wrote to standard output. The test fails unless
/// the story comes to its end.
std::string OnMachine(const machine::MachineBuilder& machine, const Story& story);
std::string OnMachine(const std::filesystem::path& folder, const Story& story);

/// The same for a story that ends its process: one that comes to its end has the status 0.
Ending EndingOnMachine(const machine::MachineBuilder& machine, const Story& story);
Ending EndingOnMachine(const std::filesystem::path& folder, const Story& story);

/// Runs `story` where its mounts are seen by nobody else. Returns what it wrote to standard output;
/// the test fails unless the story comes to its end.
std::string InPrivateNamespace(const Story& story);

/// The same without privileges: permissions hold for root too.
std::string WithoutPrivileges(const Story& story);

/// Covers `directory` with an empty one, for the rest of the story.
/// Throws std::system_error when that fails. Requires: a story calls it.
void CoverWithEmptyDirectory(const std::filesystem::path& directory,
                             const std::string& options = "mode=755");

}  // namespace support
