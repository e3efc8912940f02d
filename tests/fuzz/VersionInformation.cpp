// Version strings read out of any file, against the same scan on a std::string.
// The input is the file.
#include <array>

#include "fuzz/Input.h"
#include "fuzz/MemoryFile.h"
#include "util/MyFileIO.h"

namespace {

struct Key {
    const char* text;
    int zeroBytes;
    CString FileInfo::*field;
};

constexpr std::array<Key, 8> kKeys = {{
    {"CompanyName", 4, &FileInfo::CompanyName},
    {"FileDescription", 4, &FileInfo::FileDescription},
    {"FileVersion", 4, &FileInfo::FileVersion},
    {"InternalName", 2, &FileInfo::InternalName},
    {"LegalCopyright", 2, &FileInfo::LegalCopyright},
    {"OriginalFilename", 2, &FileInfo::OriginalFilename},
    {"ProductName", 4, &FileInfo::ProductName},
    {"ProductVersion", 2, &FileInfo::ProductVersion},
}};

/// The scan by its states, one byte after the other.
class Scanner {
  public:
    explicit Scanner(const std::string& file) : m_file(file) {}

    bool SkipKey(const std::string& key) {
        size_t matched = 0;
        bool expectsZero = false;
        bool isWhole = false;
        while (m_position < m_file.size()) {
            const char byte = m_file[m_position++];
            if (expectsZero) {
                expectsZero = false;
                if (byte == '\0' && isWhole) {
                    return true;
                }
                if (byte != '\0') {
                    isWhole = false;
                    matched = 0;
                }
            } else if (byte == key[matched]) {
                expectsZero = true;
                ++matched;
            } else {
                matched = 0;
            }
            isWhole = matched == key.size();
        }
        return false;
    }
    bool SkipZeros(int wanted) {
        int count = 0;
        while (count < wanted && m_position < m_file.size()) {
            count = m_file[m_position++] == '\0' ? count + 1 : 0;
        }
        return count == wanted;
    }
    bool TakeValue(std::string& value) {
        int zeros = 0;
        std::string text;
        while (zeros < 2 && m_position < m_file.size()) {
            const char byte = m_file[m_position++];
            if (byte == '\0') {
                ++zeros;
            } else {
                zeros = 0;
                text += byte;
            }
        }
        if (zeros == 2) {
            value = text;
        }
        return zeros == 2;
    }

  private:
    const std::string& m_file;
    size_t m_position = 0;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fuzz::MemoryFile file;
    const std::string bytes = fuzz::Input(data, size).Rest();
    file.Write(bytes);

    FileInfo info;
    for (const Key& key : kKeys) {
        info.*key.field = "as before";
    }
    info.VarFileInfo = "as before";
    info.Translation = "as before";
    const bool result = CMyFileIO::GetFileInfo(CString(file.Name().c_str()), info);

    Scanner scanner(bytes);
    scanner.SkipKey("VS_VERSION_INFO");
    bool found = false;
    for (const Key& key : kKeys) {
        std::string expected = "as before";
        found = scanner.SkipKey(key.text) && scanner.SkipZeros(key.zeroBytes) &&
                scanner.TakeValue(expected);
        fuzz::RequireEqual((info.*key.field).GetBuffer(), expected, key.text);
    }
    fuzz::RequireEqual(result, found, "the result");
    fuzz::RequireEqual(info.VarFileInfo.GetBuffer(), "as before", "VarFileInfo");
    fuzz::RequireEqual(info.Translation.GetBuffer(), "as before", "Translation");

    // Any two texts have an order that turns round with them.
    const std::string left = bytes.substr(0, bytes.find('\0'));
    const std::string right(left.rbegin(), left.rend());
    fuzz::RequireEqual(CMyFileIO::CompareFileVersion(left.c_str(), right.c_str()),
                       -CMyFileIO::CompareFileVersion(right.c_str(), left.c_str()),
                       "CompareFileVersion turned round");
    return 0;
}
