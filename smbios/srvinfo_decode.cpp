// The walk over the structure table and one decoder per structure type.
// Takes strings in the order of the string fields; a field's number only says that there is one.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

#include "smbios/srvinfo.h"

namespace {

// The structure header, DSP0134 6.1.2.
constexpr size_t kType = 0x00;
constexpr size_t kLength = 0x01;
constexpr uint8_t kTypeEndOfTable = 127;  // DSP0134 7.45

using Decoder = unsigned char* (SERVER_INFORMATION::*)(unsigned char*);

struct DecodedType {
    uint8_t type;
    const char* title;
    Decoder decode;
};

// Every other type is skipped, the memory module (type 6) included. A row also shows in /dump,
// whose output is promised.
constexpr DecodedType kDecodedTypes[] = {
    {0, "SMBIOS TYPE 0 \n", &SERVER_INFORMATION::FindTable0},
    {1, "SMBIOS TYPE 1 \n", &SERVER_INFORMATION::FindTable1},
    {2, "SMBIOS TYPE 2 \n", &SERVER_INFORMATION::FindTable2},
    {3, "SMBIOS TYPE 3 \n", &SERVER_INFORMATION::FindTable3},
    {4, "SMBIOS TYPE 4 \n", &SERVER_INFORMATION::FindTable4},
    {9, "SMBIOS TYPE 9 \n", &SERVER_INFORMATION::FindTable9},
    {11, "SMBIOS TYPE 11 \n", &SERVER_INFORMATION::FindTable11},
    {17, "SMBIOS TYPE 17 \n", &SERVER_INFORMATION::FindTable17},
};

struct SlotType {
    uint8_t code;
    const char* name;
};

// DSP0134 7.10.1.
constexpr SlotType kSlotTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "ISA"},
    {0x04, "MCA"},
    {0x05, "EISA"},
    {0x06, "PCI"},
    {0x07, "PCMCIA"},
    {0x08, "VL_VESA"},
    {0x09, "Proprietary"},
    {0x0A, "Processor"},
    {0x0B, "Proprietary-Memory"},
    {0x0C, "I/O-Riser"},
    {0x0D, "NuBus"},
    {0x0E, "PCI-66"},
    {0x0F, "AGP"},
    {0x10, "AGP-2X"},
    {0x11, "AGP-4X"},
    {0xA0, "PC-98/C20"},
    {0xA1, "PC-98/C24"},
    {0xA2, "PC-98/E"},
    {0xA3, "PC-98/Local"},
    {0xA4, "PC-98/Card"},
};

const char* NameOfSlotType(uint8_t code) {
    for (const SlotType& slot : kSlotTypes) {
        if (slot.code == code) {
            return slot.name;
        }
    }
    return "Default";
}

uint16_t Word(const unsigned char* bytes) {
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

/// Where the string set of a structure begins, its length taken as unsigned: types 0, 1, 2, 3, 11.
unsigned char* StringsOf(unsigned char* structure) {
    return structure + structure[kLength];
}

/// The same for types 4 and 9 and for all that is skipped, type 17 included, whose length counts
/// as signed: 128 and more leads backwards.
unsigned char* StringsOfSignedLength(unsigned char* structure) {
    return structure + static_cast<signed char>(structure[kLength]);
}

/// A few characters out of a text, ended by NUL.
struct Part {
    /// Up to `count` characters from `start` on; none behind the end.
    Part(std::string_view whole, size_t start, size_t count) {
        whole.remove_prefix(std::min(start, whole.size()));
        std::copy_n(whole.begin(), std::min({count, whole.size(), sizeof text - 1}), text);
    }

    char text[8] = {};  // the longest part, the BIOS build ID, has seven
};

/// The strings of one structure, taken one after the other.
class Strings {
  public:
    explicit Strings(unsigned char* first) : m_next(first) {}

    /// The current string; the next one becomes current.
    const char* Take() {
        const char* text = Current();
        m_next += std::strlen(text) + 1;
        return text;
    }
    void SkipIf(uint8_t field) {
        if (field != 0) {
            Take();
        }
    }
    /// The rule of types 4 and 9: a string may be there though its field says that there is none.
    void SkipUnlessFieldAndStringAreEmpty(uint8_t field) {
        if (field != 0 || *m_next != 0) {
            Take();
        }
    }
    unsigned char* Position() const { return m_next; }

  private:
    const char* Current() const { return reinterpret_cast<const char*>(m_next); }

    unsigned char* m_next;
};

}  // namespace

// --- The walk -----------------------------------------------------------------------------------

bool SERVER_INFORMATION::ParseTables() {
    unsigned char* position = FindHeader();
    if (position == nullptr) {
        return false;
    }
    uint16_t structures = 0;
    bool done = false;
    while (!done) {
        position = SkipZeroBytes(DecodeStructure(position));
        // The count bounds the walk even where lengths lead backwards; an announced count of 0
        // is reached after 65,536 structures.
        done = !IsInTable(position) || position[kType] == kTypeEndOfTable ||
               ++structures == m_wNumStructures;
    }
    return true;
}

unsigned char* SERVER_INFORMATION::DecodeStructure(unsigned char* structure) {
    for (const DecodedType& decoded : kDecodedTypes) {
        if (decoded.type == structure[kType]) {
            if (m_bDumpMode == 1) {
                std::printf("%s", decoded.title);
                DumpData(structure);
            }
            return (this->*decoded.decode)(structure);
        }
    }
    return SkipTable(structure);
}

/// Decoders stop one byte short behind an empty string set. Once the BIOS name is known, zero
/// bytes are therefore passed over, also those of a further BIOS information structure.
unsigned char* SERVER_INFORMATION::SkipZeroBytes(unsigned char* position) {
    if (m_szBIOSName[0] != '\0') {
        while (IsInTable(position) && *position == 0) {
            ++position;
        }
    }
    return position;
}

bool SERVER_INFORMATION::IsInTable(const unsigned char* position) const {
    return position >= m_pTableBuffer && position < m_pTableEnd;
}

unsigned char* SERVER_INFORMATION::SkipTable(unsigned char* structure) {
    unsigned char* strings = StringsOfSignedLength(structure);
    return *strings != 0 ? SkipStrings(strings) + 1 : strings + 2;
}

unsigned char* SERVER_INFORMATION::SkipStrings(unsigned char* strings) {
    Strings set(strings);
    while (*set.Position() != 0) {
        set.Take();
    }
    return set.Position();
}

bool SERVER_INFORMATION::ParseString(const char* text) {
    const char* opening = std::strstr(text, "-[");
    KeepParsed(opening == nullptr ? "" : opening + 2);
    char* closing = std::strstr(m_szParsed, "]-");
    char* const end = closing == nullptr ? m_szParsed : closing;
    *end = '\0';
    return closing != nullptr;
}

/// The code of the text, or the text when it holds none; kept in the scratch field.
const char* SERVER_INFORMATION::BracketedCodeOrWhole(const char* text) {
    if (!ParseString(text)) {
        KeepParsed(text);
    }
    return m_szParsed;
}

/// Copies a text, which may lie in the scratch field itself, to that field.
void SERVER_INFORMATION::KeepParsed(const char* text) {
    const size_t length = strnlen(text, sizeof m_szParsed - 1);
    std::memmove(m_szParsed, text, length);
    m_szParsed[length] = '\0';
}

// --- Type 0: BIOS information, DSP0134 7.1 -------------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable0(unsigned char* structure) {
    constexpr size_t kVendor = 0x04;
    constexpr size_t kVersion = 0x05;
    constexpr size_t kReleaseDate = 0x08;

    Strings strings(StringsOf(structure));
    strings.SkipIf(structure[kVendor]);
    if (structure[kVersion] != 0) {
        DecodeBIOSVersion(strings.Take());
    }
    if (structure[kReleaseDate] != 0) {
        SetMachineBIOSDate(strings.Take());
    }
    return SkipStrings(strings.Position()) + 1;
}

/// Splits a version such as "-[AB1234CUS-1.07]-" into build ID "AB1234C", language "US" and
/// version "1.07".
void SERVER_INFORMATION::DecodeBIOSVersion(const char* version) {
    constexpr size_t kBuildIDLength = 7;
    constexpr size_t kLanguageLength = 2;
    constexpr size_t kVersionStart = 10;

    SetMachineBIOSName(version);
    const std::string_view code = BracketedCodeOrWhole(version);
    const bool hasVersion =
        code.find('-') != std::string_view::npos && code.size() >= kVersionStart;
    SetMachineBIOSBuildID(Part(code, 0, kBuildIDLength).text);
    SetMachineBIOSLanguage(Part(code, kBuildIDLength, kLanguageLength).text);
    SetMachineBIOSVersion(hasVersion ? code.data() + kVersionStart : "");
}

// --- Type 1: system information, DSP0134 7.2 -----------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable1(unsigned char* structure) {
    constexpr uint8_t kLengthWithoutUUID = 0x18;
    constexpr size_t kManufacturer = 0x04;
    constexpr size_t kVersion = 0x06;
    constexpr size_t kSerialNumber = 0x07;
    constexpr size_t kUUID = 0x08;

    if (structure[kLength] <= kLengthWithoutUUID) {
        return SkipTable(structure);
    }
    Strings strings(StringsOf(structure));
    // Both conversions ask the same byte: firmware of this family names maker and product
    // together or neither.
    if (structure[kManufacturer] != 0) {
        SetManufacturer(strings.Take());
    }
    if (structure[kManufacturer] != 0) {
        DecodeProductName(strings.Take());
    }
    strings.SkipIf(structure[kVersion]);
    if (structure[kSerialNumber] != 0) {
        SetMachineSerialNumber(strings.Take());
    }
    // A UUID that begins with a zero byte counts as none.
    if (structure[kUUID] != 0) {
        DecodeUUID(structure + kUUID);
    }
    return SkipStrings(strings.Position()) + 1;
}

/// Takes machine type "7712" and model "00X" out of a product such as "Arlo 2 -[771200X]-".
void SERVER_INFORMATION::DecodeProductName(const char* product) {
    constexpr size_t kTypeLength = 4;
    constexpr size_t kModelLength = 3;

    SetProductName(product);
    const std::string_view code = BracketedCodeOrWhole(product);
    const bool isBlank = code.starts_with(' ');
    SetMachineType(isBlank ? "" : Part(code, 0, kTypeLength).text);
    SetModelNumber(isBlank ? "" : Part(code, kTypeLength, kModelLength).text);
}

/// Keeps the UUID as hexadecimal digits in stored order; the standard's byte order of its first
/// three fields is left alone.
void SERVER_INFORMATION::DecodeUUID(const unsigned char* uuid) {
    constexpr size_t kBytes = 16;
    constexpr char kDigits[] = "0123456789ABCDEF";

    m_pUUID.reset(new (std::nothrow) char[2 * kBytes + 1]());
    if (m_pUUID == nullptr) {
        return;
    }
    for (size_t i = 0; i < kBytes; ++i) {
        m_pUUID[2 * i] = kDigits[uuid[i] >> 4];
        m_pUUID[2 * i + 1] = kDigits[uuid[i] & 0x0F];
    }
}

// --- Type 2: baseboard information, DSP0134 7.3 --------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable2(unsigned char* structure) {
    constexpr size_t kFirstString = 0x04;  // manufacturer, product, version, serial number
    constexpr size_t kLastString = 0x07;
    constexpr size_t kAssetTag = 0x08;
    constexpr size_t kLocation = 0x0A;
    constexpr size_t kBoardType = 0x0E;

    Strings strings(StringsOf(structure));
    for (size_t field = kFirstString; field <= kLastString; ++field) {
        strings.SkipIf(structure[field]);
    }
    Strings location = strings;
    location.SkipIf(structure[kAssetTag]);
    if (structure[kLocation] != 0) {
        SetBladeSlot(location.Take());
    }
    if (structure[kBoardType] != 0) {
        m_wBoardType = structure[kBoardType];
    }
    return SkipStrings(strings.Position()) + 1;
}

// --- Type 3: system enclosure, DSP0134 7.4 -------------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable3(unsigned char* structure) {
    constexpr size_t kManufacturer = 0x04;
    constexpr size_t kEnclosureType = 0x05;
    constexpr uint8_t kLockBit = 0x80;
    constexpr size_t kVersion = 0x06;
    constexpr size_t kSerialNumber = 0x07;
    constexpr size_t kAssetTag = 0x08;

    m_bOutOfMemory |= !m_pEnclosureType.Append(structure[kEnclosureType] & ~kLockBit);
    ++m_nNumEnclosures;
    Strings strings(StringsOf(structure));
    strings.SkipIf(structure[kManufacturer]);
    strings.SkipIf(structure[kVersion]);
    if (structure[kSerialNumber] != 0 && ParseString(strings.Take())) {
        SetChassisUUID(m_szParsed);
    }
    strings.SkipIf(structure[kAssetTag]);
    return SkipStrings(strings.Position()) + 1;
}

// --- Type 4: processor information, DSP0134 7.5 --------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable4(unsigned char* structure) {
    constexpr size_t kSocket = 0x04;
    constexpr size_t kFamily = 0x06;
    constexpr size_t kManufacturer = 0x07;
    constexpr size_t kVersion = 0x10;
    constexpr size_t kCurrentSpeed = 0x16;
    constexpr size_t kStatus = 0x18;
    constexpr uint8_t kEnabledOrPopulated = 0x41;  // either bit counts

    m_nProcessorSlots = static_cast<int16_t>(m_nProcessorSlots + 1);
    if ((structure[kStatus] & kEnabledOrPopulated) != 0) {
        m_bOutOfMemory |= !m_pProcessorFamily.Append(structure[kFamily]);
        m_bOutOfMemory |= !m_pProcessorSpeed.Append(Word(structure + kCurrentSpeed));
        m_nActiveProcessors = static_cast<int16_t>(m_nActiveProcessors + 1);
    }
    Strings strings(StringsOfSignedLength(structure));
    strings.SkipUnlessFieldAndStringAreEmpty(structure[kSocket]);
    strings.SkipUnlessFieldAndStringAreEmpty(structure[kManufacturer]);
    strings.SkipUnlessFieldAndStringAreEmpty(structure[kVersion]);
    return SkipStrings(strings.Position()) + 1;
}

// --- Type 9: system slots, DSP0134 7.10 ----------------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable9(unsigned char* structure) {
    constexpr size_t kDesignation = 0x04;
    constexpr size_t kSlotType = 0x05;

    SetBuses(NameOfSlotType(structure[kSlotType]));
    Strings strings(StringsOfSignedLength(structure));
    strings.SkipUnlessFieldAndStringAreEmpty(structure[kDesignation]);
    return SkipStrings(strings.Position()) + 1;
}

// --- Type 11: OEM strings, DSP0134 7.12 ----------------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable11(unsigned char* structure) {
    // The count at 0x04 is not asked: the set ends with its empty string.
    Strings strings(StringsOf(structure));
    while (*strings.Position() != 0) {
        DecodeOEMString(strings.Take());
    }
    return strings.Position() + 1;
}

void SERVER_INFORMATION::DecodeOEMString(const char* text) {
    struct Label {
        const char* text;
        bool (SERVER_INFORMATION::*set)(const char*);
    };
    constexpr Label kLabels[] = {
        {"Diagnostics", &SERVER_INFORMATION::SetROMDiagnosticsBuild},
        {"Tesk Controller", &SERVER_INFORMATION::SetTESKBuild},
        {"Koru Adapter", &SERVER_INFORMATION::SetKORUBuild},
    };
    for (const Label& label : kLabels) {
        if (std::strstr(text, label.text) != nullptr) {
            if (ParseString(text)) {
                (this->*label.set)(m_szParsed);
            }
            return;
        }
    }
}

// --- Type 17: memory device, DSP0134 7.18 --------------------------------------------------------

unsigned char* SERVER_INFORMATION::FindTable17(unsigned char* structure) {
    constexpr size_t kSize = 0x0C;
    constexpr uint16_t kInKilobytes = 0x8000;
    constexpr int kKilobytesPerMegabyte = 1024;

    // No size is special: 0xFFFF, which stands for unknown, adds 31 MB.
    const uint16_t size = Word(structure + kSize);
    const int value = size & ~kInKilobytes;
    const int megabytes = (size & kInKilobytes) != 0 ? value / kKilobytesPerMegabyte : value;
    const unsigned sum =
        static_cast<unsigned>(GetMemorySizeInMB()) + static_cast<unsigned>(megabytes);
    SetMemorySizeInMB(static_cast<int>(sum));
    return SkipTable(structure);
}
