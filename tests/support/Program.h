// Runs a program as a shell would and keeps all that it said.
// Interprets nothing: a test compares whole outputs.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "machine/MachineBuilder.h"

namespace support {

using Arguments = std::vector<std::string>;

struct Result {
    int status = -1;  ///< the exit status, or -1 when a signal ended the program
    std::string output;
    std::string errors;
};

/// Runs `command`, whose first element is found along PATH, with an empty standard input.
Result Run(const Arguments& command);

/// The same in `folder` as the current directory.
Result RunIn(const std::filesystem::path& folder, const Arguments& command);

/// What the child does before the program starts. A text of its own keeps the program from it.
using Preparation = std::function<std::string()>;

/// The same after a preparation.
Result Run(const Arguments& command, const Preparation& prepare);

/// The same on the machine of a folder.
Result RunOnMachine(const std::filesystem::path& folder, const Arguments& command);

/// The same where an empty directory hides `directory`.
Result RunWithHidden(const std::string& directory, const Arguments& command);

/// The command without the right to read a file against its mode, which root has elsewhere.
Arguments WithoutRights(const Arguments& command);

/// The command as a user other than root: the caller, or nobody when root calls.
Arguments AsOrdinaryUser(const Arguments& command);

/// systally with these arguments, through systally-on, on the machine of a folder.
Result SystallyOn(const std::filesystem::path& folder, const Arguments& arguments);

/// The same on a machine that exists for this call alone.
Result SystallyOn(const machine::MachineBuilder& machine, const Arguments& arguments);

/// The program `name` of this build.
std::string ProgramPath(const std::string& name);

/// The folder of the sample server.
std::filesystem::path Arlo2Folder();

}  // namespace support
