// A file-system path held as text, its parts, and operations on the file or directory it names.
// Works by rules on the text alone: nothing is resolved, and "." and ".." are not folded.
#pragma once

#include <iosfwd>

#include "util/CString.h"

/// A path. The separator is "/" alone, a ":" anywhere ends a drive, two leading backslashes mark a
/// network drive, and an extension has three characters at most.
///
/// Existence tests answer true, listings are empty and removing removes nothing: this library does
/// not look into directories. Not for use from two threads at once.
class CDir {
  public:
    /// What a listing returns.
    enum CDTYPES { CD_FILES = 0, CD_SUBDIRECTORIES = 1 };

    CDir();
    CDir(const CDir& other);
    CDir(CDir& other);
    CDir(CString path);
    ~CDir();

    CDir& operator=(CDir other);
    CDir& operator=(CString path);
    // Plain appending, without a separator.
    CDir& operator+=(CDir other);
    CDir& operator+=(CString text);

    void Empty();
    bool IsEmpty() const;
    unsigned GetLength() const;
    CString ToString() const;

    // --- Parts ------------------------------------------------------------------------------

    /// Splits the path, without blanks, tabs and newlines at its ends, into drive (with ":"),
    /// directory (with its last "/"), name and extension (with its "."). Always true.
    bool SplitPath(CString& drive, CString& dir, CString& name, CString& ext) const;
    /// Sets the path to dir, name and ext and returns it. The drive is not used.
    CString MakePath(CString drive, CString dir, CString name, CString ext);
    CString GetDrive() const;
    CString GetDirectory() const;
    /// The last component without its extension.
    CString GetFileName() const;
    CString GetFileName(CString path) const;
    CString GetExtension() const;
    /// Everything before the last "/", or else before the first ":".
    CString GetPath() const;
    /// Everything behind the last "/", or else behind the first ":".
    CString GetName() const;
    /// The number of "/" in the directory part and one more; 0 without any "/".
    unsigned GetDepth() const;
    /// The path as it is.
    CString GetAbsolutePath() const;
    CString ToAbsolutePath();
    /// Joins a component on with exactly one "/" at the joint; returns the new path.
    CString AddPath(CString part);
    CString AddPath(CDir part);

    // --- The file system --------------------------------------------------------------------

    // Always true; nothing is looked at.
    bool Exists() const;
    bool Exists(CDir path) const;
    bool Exists(CString path) const;
    /// The working directory; empty when it cannot be told.
    CString GetCwd() const;
    /// Sets the path to the working directory; returns it.
    CString ToCwd();
    /// Makes this path the working directory.
    bool ChDir() const;
    /// Copies this file; see CMyFileIO::CopyFile.
    bool CopyFile(CString to) const;
    bool CopyFile(CDir to) const;
    // Listings as names joined by ",". They are empty; always true.
    bool GetDirectory(CDTYPES type, CString& list) const;
    bool GetFiles(CString& list) const;
    bool GetSubdirectories(CString& list) const;
    /// Copies each file that the listing of this directory names; stops at the first failure.
    bool CopyFiles(CString to) const;
    bool CopyFiles(CDir to) const;
    /// Copies a tree. False when a path is empty or when something could not be copied.
    bool CopyDirectory(CDir src, CDir dst) const;
    bool CopyDirectory(CDir dst) const;
    bool CopyDirectory(CString dst) const;
    /// Makes each level of a path that does not exist: none, as the existence test answers.
    bool MakeDirectory() const;
    bool MakeDirectory(CDir path) const;
    bool MakeDirectory(CString path) const;
    // False for an empty path. Nothing is removed.
    bool RemoveDirectory() const;
    bool RemoveDirectory(CDir path) const;
    bool RemoveDirectory(CString path) const;

    // --- Messages of the copying and making operations ----------------------------------------

    /// The level up to which messages are printed, for all paths; 0 at first.
    void SetVerboseLevel(int level);
    int GetVerboseLevel() const;
    /// Prints the text and a line end to standard output unless its level is too high.
    void DisplayMessage(CString text, int level) const;

  private:
    CString m_sPath;
};

// Plain concatenation, without a separator.
CString operator+(CDir left, CDir right);
CString operator+(CDir left, CString right);
CString operator+(CString left, CDir right);

// By bytes: "/tmp" differs from "/tmp/".
bool operator==(CDir left, CDir right);
bool operator==(CDir left, CString right);
bool operator==(CString left, CDir right);
bool operator!=(CDir left, CDir right);
bool operator!=(CDir left, CString right);
bool operator!=(CString left, CDir right);

std::ostream& operator<<(std::ostream& stream, CDir path);
