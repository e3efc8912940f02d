// Text files by lines; copying, removing and protecting files by name.
// Reads lines of any length in linear time.
#include "util/MyFileIO.h"

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "util/CStringInternals.h"

namespace {

using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

Stream OpenStream(const CString& name, const char* mode) {
    return {std::fopen(name.GetBuffer(), mode), std::fclose};
}

struct CopyBuffer {
    std::unique_ptr<char[]> bytes;
    size_t size = 0;
};

/// As large a buffer as there is memory for: 0xFF00 bytes, halved after each failure, and one byte
/// for the last attempt. Null when even that cannot be had.
CopyBuffer AllocateCopyBuffer() {
    for (const unsigned size :
         {65280U, 32640U, 16320U, 8160U, 4080U, 2040U, 1020U, 510U, 255U, 1U}) {
        if (char* bytes = new (std::nothrow) char[size]; bytes != nullptr) {
            return {std::unique_ptr<char[]>(bytes), size};
        }
    }
    return {};
}

/// Copies until the end of the source is met. The end is asked for before each read: a source that
/// ends with the buffer meets it by a read of nothing, which counts as a failure.
bool CopyStream(FILE* from, FILE* to) {
    const CopyBuffer buffer = AllocateCopyBuffer();
    if (buffer.bytes == nullptr) {
        return false;
    }
    while (std::feof(from) == 0) {
        const size_t count = std::fread(buffer.bytes.get(), 1, buffer.size, from);
        if (count == 0 || std::fwrite(buffer.bytes.get(), 1, count, to) != count) {
            return false;
        }
    }
    return true;
}

bool CopyContents(const CString& from, const CString& to) {
    const Stream source = OpenStream(from, "rb");
    if (source == nullptr) {
        return false;
    }
    Stream target = OpenStream(to, "wb");
    if (target == nullptr) {
        return false;
    }
    const bool copied = CopyStream(source.get(), target.get());
    return std::fclose(target.release()) == 0 && copied;
}

void CopyTimes(const CString& from, const CString& to) {
    struct stat status = {};
    if (stat(from.GetBuffer(), &status) == 0) {
        const utimbuf times = {status.st_atime, status.st_mtime};
        utime(to.GetBuffer(), &times);
    }
}

bool IsKept(char c) {
    return c != '\r' && c != '\0';
}

// Both take a line with its newline, and tell whether it has one.

bool TakeLineBytewise(FILE* stream, CString& line) {
    string_internals::TextBuilder text;
    int c = EOF;
    while (c != '\n' && (c = getc_unlocked(stream)) != EOF) {
        if (IsKept(static_cast<char>(c))) {
            text.Append(static_cast<char>(c));
        }
    }
    line = text.Text();
    return c == '\n';
}

bool TakeLine(FILE* stream, CString& line) {
    char* bytes = nullptr;
    size_t room = 0;
    const ssize_t count = getline(&bytes, &room, stream);
    const std::unique_ptr<char, decltype(&std::free)> owner(bytes, std::free);
    if (count < 0) {
        if (std::feof(stream) == 0 && std::ferror(stream) == 0) {
            string_internals::EndWithoutMemory();
        }
        return false;
    }
    const auto length = static_cast<size_t>(count);
    const bool isWhole = bytes[length - 1] == '\n';
    // Nearly no line holds a byte to drop, and looking for one takes less than passing over all.
    if (std::memchr(bytes, '\r', length) != nullptr || std::strlen(bytes) < length) {
        *std::remove_if(bytes, bytes + length, [](char c) { return !IsKept(c); }) = '\0';
    }
    line = bytes;
    return isWhole;
}

}  // namespace

CMyFileIO::CMyFileIO() = default;

CMyFileIO::CMyFileIO(CDir name) : m_sFileName(name.ToString()) {}

CMyFileIO::CMyFileIO(CString name) : m_sFileName(name) {}

CMyFileIO::~CMyFileIO() {
    CloseFile();
}

// --- Opening ------------------------------------------------------------------------------------

bool CMyFileIO::Open() {
    return Open("");
}

bool CMyFileIO::Open(CString mode) {
    if (m_sFileName.IsEmpty()) {
        return false;
    }
    CloseFile();
    m_pFile.reset(std::fopen(m_sFileName.GetBuffer(), mode.IsEmpty() ? "r" : mode.GetBuffer()));
    m_bOpen = m_pFile != nullptr;
    m_bEOF = false;
    return m_bOpen;
}

bool CMyFileIO::OpenFile(CString name) {
    return OpenFile(name, "");
}

bool CMyFileIO::OpenFile(CDir name) {
    return OpenFile(name.ToString(), "");
}

bool CMyFileIO::OpenFile(CString name, CString mode) {
    m_sFileName = name;
    return Open(mode);
}

bool CMyFileIO::OpenFile(CDir name, CString mode) {
    return OpenFile(name.ToString(), mode);
}

bool CMyFileIO::OpenTempFile(CString dir) {
    return OpenTempFile(CDir(dir));
}

bool CMyFileIO::OpenTempFile(CDir dir) {
    CloseFile();
    // Only the number is used. The file that mkstemp makes stays where it is, and open.
    char unused[] = "XXXXXX";
    m_sFileName = dir.AddPath(CString(mkstemp(unused)));
    m_bTemporary = Open("w+");
    return m_bTemporary;
}

// --- The open file ------------------------------------------------------------------------------

bool CMyFileIO::Close() {
    return CloseFile();
}

bool CMyFileIO::CloseFile() {
    if (!m_bOpen) {
        return false;
    }
    m_bOpen = false;
    m_bEOF = false;
    if (std::fclose(m_pFile.release()) != 0) {
        return false;
    }
    if (m_bTemporary) {
        DeleteFile();
        m_bTemporary = false;
    }
    return true;
}

bool CMyFileIO::ReadString(CString& line) {
    line.Empty();
    if (!m_bOpen) {
        return false;
    }
    FILE* const stream = m_pFile.get();
    // A stream that has met its end stays there. Of one that has met an error getline gives
    // nothing; byte by byte it is asked again.
    const bool isWhole =
        std::feof(stream) == 0 &&
        (std::ferror(stream) != 0 ? TakeLineBytewise(stream, line) : TakeLine(stream, line));
    m_bEOF = m_bEOF || !isWhole;
    return !line.IsEmpty();
}

bool CMyFileIO::IsEOF() const {
    return !m_bOpen || m_bEOF;
}

bool CMyFileIO::Rewind() {
    if (!m_bOpen) {
        return false;
    }
    std::rewind(m_pFile.get());
    m_bEOF = false;
    return true;
}

bool CMyFileIO::WriteString(CString text) {
    if (!m_bOpen) {
        return false;
    }
    std::fputs(text.GetBuffer(), m_pFile.get());
    return std::ferror(m_pFile.get()) == 0;
}

bool CMyFileIO::WriteStringNL() {
    return WriteString("\n");
}

bool CMyFileIO::WriteStringNL(CString text) {
    return WriteString(text) && WriteStringNL();
}

CString CMyFileIO::GetFileName() const {
    return m_sFileName;
}

bool CMyFileIO::IsComment(CString line) {
    line.Trim(string_internals::kBlanks);
    return line.StartsWith(";") || line.StartsWith("#") || line.StartsWith("//");
}

// --- Files given by name ------------------------------------------------------------------------

bool CMyFileIO::Exists() const {
    return Exists(m_sFileName);
}

bool CMyFileIO::Exists(CString name) {
    return CDir().Exists(name);
}

bool CMyFileIO::DeleteFile() {
    CloseFile();
    return DeleteFile(m_sFileName);
}

bool CMyFileIO::DeleteFile(CString name) {
    return unlink(name.GetBuffer()) == 0;
}

bool CMyFileIO::DeleteFile(CDir name) {
    return DeleteFile(name.ToString());
}

bool CMyFileIO::CopyFile(CString from, CString to) {
    const bool copied = CopyContents(from, to);
    CopyTimes(from, to);
    return copied;
}

bool CMyFileIO::CopyFile(CDir from, CDir to) {
    return CopyFile(from.ToString(), to.ToString());
}

bool CMyFileIO::SetReadOnly(CString name, bool readOnly) {
    return chmod(name.GetBuffer(), readOnly ? S_IRUSR : S_IWUSR) == 0;
}

bool CMyFileIO::SetReadOnly(CDir name, bool readOnly) {
    return SetReadOnly(name.ToString(), readOnly);
}
