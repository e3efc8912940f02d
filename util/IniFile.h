// An INI file in memory: reads entries, edits in place, writes back what has changed.
// Knows no quoting and no inline comments; keeps comments, order and blank lines.
#pragma once

#include "util/CDir.h"
#include "util/CString.h"

/// The lines of one file, each without the blanks, tabs and newline at its ends. Section names and
/// keys are compared without regard to case. An empty section name addresses the lines before the
/// first header. The destructor writes the file when it counts as changed.
///
/// Reading an entry passes over lines that begin with ";"; writing and removing take them as they
/// take any other line.
///
/// Mind the results of the two WriteIniFile: one tells what is still unsaved, the other what was
/// saved.
class CIniFile {
  public:
    /// One line.
    struct IniLineDef {
        IniLineDef* m_pPrev = nullptr;  ///< in the first line the last one
        IniLineDef* m_pNext = nullptr;  ///< null in the last line
        CString m_sLine;
    };

    // Loads the file; one that cannot be read gives an empty list. With `spaced`, entries are
    // written with blanks around "=".
    CIniFile(CString name, bool spaced);
    CIniFile(CDir name, bool spaced);
    CIniFile(const CIniFile&) = delete;
    CIniFile& operator=(const CIniFile&) = delete;
    ~CIniFile();

    /// What the constructors do. Drops the lines held so far, unsaved changes included.
    void Initialize(CString name, bool spaced);
    /// Always true; nothing is looked at.
    bool Exists() const;

    /// The value of the first such entry in the first such section; `def` when there is none.
    CString ReadString(CString section, CString key);
    CString ReadString(CString section, CString key, CString def);
    int ReadInteger(CString section, CString key);
    int ReadInteger(CString section, CString key, int def);

    /// Replaces the entry or adds it at the end of its section, which is made when it is missing.
    /// Without a key the value is a line of its own; one that is already there makes the result
    /// false unless `allowDuplicate`. With `flush`, writes the file; Flush() alone tells whether
    /// that worked.
    bool WriteString(CString section, CString key, CString value, bool allowDuplicate, bool flush);
    bool WriteInteger(CString section, CString key, int n);
    bool WriteInteger(CString section, CString key, int n, bool allowDuplicate);
    /// Removes the entry of that key; without a key the lines equal to `value` (with `firstOnly`
    /// the first one; else the line after each removed one is not examined); without both the
    /// section. Always true, and always a change of the file, even when nothing was removed.
    bool RemoveString(CString section, CString key, CString value, bool firstOnly, bool flush);

    /// WriteIniFile().
    bool Flush();
    /// Writes the file when something has changed. Returns whether changes are still unsaved.
    bool WriteIniFile();
    /// Writes the lines to a file; false when that fails.
    bool WriteIniFile(CString name);
    /// Appends a file's lines. True when the last of them has no newline at its end; false when it
    /// has one, though the lines are there, and when the file cannot be read.
    bool ReadIniFile(CString name);

    /// Finds an entry; `line` receives its line, or the last one looked at.
    bool FindItem(CString section, CString key, CString& line) const;
    /// What WriteString does.
    bool WriteIt(CString section, CString key, CString value, bool allowDuplicate, bool flush);
    /// What RemoveString does.
    bool RemoveIt(CString section, CString key, CString value, bool firstOnly, bool flush);

    // --- The list of lines --------------------------------------------------------------------
    // These do not count as changes: Flush() and the destructor write nothing for them.

    /// A line that belongs to no list yet; the caller owns it. Null when memory cannot be had.
    IniLineDef* MakeNewLine(CString text) const;
    /// Appends a line; false, with a message on standard error, when memory cannot be had.
    bool AddLine(CString text);
    /// Inserts a line before `before`, or appends it when that is null.
    bool InsertLine(IniLineDef* before, CString text);
    /// Destroys a line; returns the one that followed it. Requires: `line` is null or in the list.
    IniLineDef* RemoveLine(IniLineDef* line);
    /// The first of the empty lines directly before `line`; `line` itself when there are none.
    IniLineDef* RewindBlanks(IniLineDef* line) const;
    void DeleteLines();

  private:
    bool IsFirst(const IniLineDef* line) const { return line == m_pLines; }
    CString EntryLine(const CString& key, const CString& value) const;
    IniLineDef* EndOfLines() const;
    bool InsertEntryBefore(IniLineDef* header, const CString& entry);
    bool AppendEntry(const CString& section, bool inSection, const CString& entry);
    bool MarkChanged(bool flush);
    IniLineDef* RemoveHeader(IniLineDef* header);

    bool m_bModified = false;
    bool m_bSpaced = false;
    CString m_sFileName;
    CString m_sValue;
    IniLineDef* m_pLines = nullptr;
};
