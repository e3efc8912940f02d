// A text file that is read and written by lines, and operations on files given by name.
// Prints nothing and throws nothing: every failure is a result.
#pragma once

#include <cstdio>
#include <memory>

#include "util/CDir.h"
#include "util/CString.h"

/// The version strings of a Windows executable. CMyFileIO::GetFileInfo never fills the last two.
struct FileInfo {
    CString CompanyName;
    CString FileDescription;
    CString FileVersion;
    CString InternalName;
    CString LegalCopyright;
    CString OriginalFilename;
    CString ProductName;
    CString ProductVersion;
    CString VarFileInfo;
    CString Translation;
};

/// Names one file and owns the stream that is open on it. A temporary file is removed when it is
/// closed; the destructor closes.
class CMyFileIO {
  public:
    CMyFileIO();
    // Names a file and opens nothing.
    CMyFileIO(CDir name);
    CMyFileIO(CString name);
    CMyFileIO(const CMyFileIO&) = delete;
    CMyFileIO& operator=(const CMyFileIO&) = delete;
    virtual ~CMyFileIO();

    // --- Opening: true when a stream is open afterwards. Modes are those of fopen, "r" for "". ---

    bool Open();
    bool Open(CString mode);
    bool OpenFile(CString name);
    bool OpenFile(CDir name);
    bool OpenFile(CString name, CString mode);
    bool OpenFile(CDir name, CString mode);
    /// Makes a temporary file in `dir`, named after the number of a descriptor, and opens it for
    /// reading and writing. A second, unused file with a unique name appears in the working
    /// directory and stays there, its descriptor open.
    bool OpenTempFile(CString dir);
    bool OpenTempFile(CDir dir);

    // --- The open file ------------------------------------------------------------------------

    bool Close();
    /// False when nothing is open or when what was written could not be stored.
    bool CloseFile();
    /// Reads a line with its newline and without any carriage return or NUL. False when nothing is
    /// open or nothing is left.
    bool ReadString(CString& line);
    /// Whether a read has met the end; true when nothing is open.
    bool IsEOF() const;
    bool Rewind();
    /// Writes the text as it is.
    bool WriteString(CString text);
    /// Writes a newline.
    bool WriteStringNL();
    /// Writes the text and a newline.
    bool WriteStringNL(CString text);
    CString GetFileName() const;
    /// Whether a line begins, blanks aside, with ";", "#" or "//".
    static bool IsComment(CString line);

    // --- Files given by name ------------------------------------------------------------------

    // Always true; nothing is looked at.
    bool Exists() const;
    static bool Exists(CString name);
    /// Closes the stream and removes the file; false when closing has removed it already.
    bool DeleteFile();
    static bool DeleteFile(CString name);
    static bool DeleteFile(CDir name);
    /// Copies bytes and times. A file that ends where the copying buffer ends (0xFF00 bytes, or
    /// none at all) is copied whole, but the result is false.
    static bool CopyFile(CString from, CString to);
    static bool CopyFile(CDir from, CDir to);
    /// Sets the permission bits to 0400 or, with false, to 0200.
    static bool SetReadOnly(CString name, bool readOnly);
    static bool SetReadOnly(CDir name, bool readOnly);

    // --- Version information --------------------------------------------------------------------

    /// Reads the version strings of a Windows executable, in the order of FileInfo's fields: one
    /// that stands in the file before an earlier one is not found and keeps its old value. True
    /// when ProductVersion was found.
    bool GetFileInfo(FileInfo& info) const;
    static bool GetFileInfo(CString name, FileInfo& info);
    static bool GetFileInfo(CDir name, FileInfo& info);
    /// 1 when `a` is the later version, -1 when `b` is, 0 when they compare equal. The first
    /// number is not compared; what follows a blank is ignored.
    static int CompareFileVersion(CString a, CString b);

  private:
    struct StreamCloser {
        void operator()(FILE* stream) const { std::fclose(stream); }
    };

    bool m_bOpen = false;
    bool m_bEOF = true;
    bool m_bTemporary = false;
    std::unique_ptr<FILE, StreamCloser> m_pFile;
    CString m_sFileName;
};
