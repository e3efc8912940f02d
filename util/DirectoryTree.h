// Making and copying directory trees, with the questions to the file system as exchangeable steps.
// With CDir's own steps, by which everything exists and every directory is empty, nothing is ever
// made or copied.
// A listing that there is no memory to take apart fails the operation.
#pragma once

#include "util/CDir.h"
#include "util/CString.h"

namespace directory_tree {

/// What the operations ask. Listings are names joined by ",".
struct Steps {
    bool (*exists)(const CDir& path);
    CString (*files)(const CDir& directory);
    CString (*subdirectories)(const CDir& directory);
};

/// Copies each file of `source` into `target`; false at the first that cannot be copied.
bool CopyFiles(const CDir& source, const CDir& target, const Steps& steps);

/// Copies a tree; true, and nothing done, when `source` does not exist.
bool CopyDirectory(const CDir& source, const CDir& target, const Steps& steps);

/// Makes each level of `path` that does not exist; false at the first that cannot be made, with
/// those above it left in place.
bool MakeDirectory(const CString& path, const Steps& steps);

}  // namespace directory_tree
