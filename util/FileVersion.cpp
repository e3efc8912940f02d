// CMyFileIO: the version strings of Windows executables, and the order of versions.
// Scans the raw bytes forward once; believes no header and no length in the file.
#include <string_view>

#include "util/CStringInternals.h"
#include "util/MyFileIO.h"

namespace {

/// A key of the version resource, in the order of the search.
struct Key {
    std::string_view text;
    int zeroBytes;             // between the key and its value: terminator and padding
    CString FileInfo::*field;  // null for the key that only begins the block
};

// The resource's further keys, VarFileInfo and Translation, are not searched.
constexpr Key kKeys[] = {
    {"VS_VERSION_INFO", 4, nullptr},
    {"CompanyName", 4, &FileInfo::CompanyName},
    {"FileDescription", 4, &FileInfo::FileDescription},
    {"FileVersion", 4, &FileInfo::FileVersion},
    {"InternalName", 2, &FileInfo::InternalName},
    {"LegalCopyright", 2, &FileInfo::LegalCopyright},
    {"OriginalFilename", 2, &FileInfo::OriginalFilename},
    {"ProductName", 4, &FileInfo::ProductName},
    {"ProductVersion", 2, &FileInfo::ProductVersion},
};

/// The next byte, or EOF.
int NextByte(FILE* stream) {
    return getc_unlocked(stream);
}

/// Reads on until behind a key, which stands there as UTF-16 little-endian text; false when the
/// stream ends before.
bool SkipKey(FILE* stream, std::string_view key) {
    size_t matched = 0;
    bool expectsZero = false;
    for (int byte = NextByte(stream); byte != EOF; byte = NextByte(stream)) {
        if (expectsZero) {
            expectsZero = false;
            if (byte == 0 && matched == key.size()) {
                return true;
            }
            if (byte != 0) {
                matched = 0;
            }
        } else if (static_cast<char>(byte) == key[matched]) {
            expectsZero = true;
            ++matched;
        } else {
            // The byte is not tried again as the first one of the key.
            matched = 0;
        }
    }
    return false;
}

/// Reads on until behind that many zero bytes in a row.
bool SkipZeroBytes(FILE* stream, int zeroBytes) {
    for (int count = 0; count < zeroBytes;) {
        const int byte = NextByte(stream);
        if (byte == EOF) {
            return false;
        }
        count = byte == 0 ? count + 1 : 0;
    }
    return true;
}

/// The bytes up to two zero bytes in a row, without any zero byte: the text, for characters below
/// 256. False when the stream ends before.
bool ReadValue(FILE* stream, CString& value) {
    string_internals::TextBuilder text;
    for (int zeros = 0; zeros < 2;) {
        const int byte = NextByte(stream);
        if (byte == EOF) {
            return false;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        if (byte != 0) {
            text.Append(static_cast<char>(byte));
        }
    }
    value = text.Text();
    return true;
}

/// Searches for a key from where the stream stands and stores its value.
bool Scan(FILE* stream, const Key& key, FileInfo& info) {
    return SkipKey(stream, key.text) && key.field != nullptr &&
           SkipZeroBytes(stream, key.zeroBytes) && ReadValue(stream, info.*key.field);
}

CString VersionNumbers(CString version) {
    version.Trim(string_internals::kBlanks);
    const int blank = version.Find(" ");
    return blank < 0 ? version : version.Left(blank);
}

}  // namespace

bool CMyFileIO::GetFileInfo(FileInfo& info) const {
    return GetFileInfo(m_sFileName, info);
}

bool CMyFileIO::GetFileInfo(CString name, FileInfo& info) {
    const std::unique_ptr<FILE, StreamCloser> stream(std::fopen(name.GetBuffer(), "rb"));
    if (stream == nullptr) {
        return false;
    }
    bool foundLast = false;
    for (const Key& key : kKeys) {
        foundLast = Scan(stream.get(), key, info);
    }
    return foundLast;
}

bool CMyFileIO::GetFileInfo(CDir name, FileInfo& info) {
    return GetFileInfo(name.ToString(), info);
}

int CMyFileIO::CompareFileVersion(CString a, CString b) {
    const CString left = VersionNumbers(a);
    const CString right = VersionNumbers(b);
    // Number 0 is left out: "1.2" and "9.2" compare equal.
    for (unsigned token = 1; token <= 4; ++token) {
        const int leftNumber = left.GetToken(token, ".").ToInt();
        const int rightNumber = right.GetToken(token, ".").ToInt();
        if (leftNumber != rightNumber) {
            return leftNumber > rightNumber ? 1 : -1;
        }
    }
    return 0;
}
