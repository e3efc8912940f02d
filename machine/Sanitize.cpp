// Placeholders for what identifies a machine: DSP0134 chapter 7.
#include "machine/Sanitize.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

#include "machine/StructureStrings.h"
#include "machine/StructureWalk.h"

namespace machine {

namespace {

constexpr uint8_t kTypeSystem = 1;
constexpr uint8_t kTypeOemStrings = 11;
constexpr uint8_t kTypeBattery = 22;
constexpr uint8_t kTypeHostInterface = 42;
constexpr uint8_t kFirstOemType = 128;

constexpr size_t kUuid = 0x08;  // of the system
constexpr size_t kUuidSize = 16;
constexpr uint8_t kUuidPlaceholder = 0x11;
constexpr size_t kBatterySerialNumber = 0x10;  // 16 bits
constexpr size_t kHostInterfaceData = 0x06;    // a management controller's UUID and addresses

constexpr char kUuidLabel[] = "UUID:";

struct StringField {
    uint8_t type;
    size_t offset;
};

constexpr StringField kIdentifyingStrings[] = {
    {1, 0x07},               // system: serial number
    {2, 0x07},  {2, 0x08},   // baseboard: serial number, asset tag
    {3, 0x07},  {3, 0x08},   // enclosure: the same
    {4, 0x20},  {4, 0x21},   // processor
    {17, 0x18}, {17, 0x19},  // memory device
    {22, 0x07},              // portable battery: serial number
    {39, 0x08}, {39, 0x09},  // power supply
};

bool IsMark(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == ' ' || std::ispunct(byte) != 0;
}

void HideText(std::string& text, size_t first, size_t last, char placeholder) {
    for (size_t i = first; i < last; ++i) {
        text[i] = IsMark(text[i]) ? text[i] : placeholder;
    }
}

std::string WithUuidsHidden(std::string text) {
    const size_t label = text.find(kUuidLabel);
    if (label != std::string::npos) {
        HideText(text, label + std::strlen(kUuidLabel), text.size(), '0');
    }
    return text;
}

bool EqualIgnoringCase(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

void HideCopies(std::string& text, const std::string& secret) {
    const std::string placeholder = PlaceholderFor(secret);
    auto from = text.begin();
    for (;;) {
        from = std::search(from, text.end(), secret.begin(), secret.end(), EqualIgnoringCase);
        if (from == text.end()) {
            return;
        }
        from = std::copy(placeholder.begin(), placeholder.end(), from);
    }
}

void Fill(Bytes& bytes, size_t first, size_t last, uint8_t value) {
    for (size_t i = first; i < std::min(last, bytes.size()); ++i) {
        bytes[i] = value;
    }
}

/// The two ways in which a UUID is written down: as it is stored, and as the standard reads it.
std::vector<std::string> UuidTexts(const Bytes& uuid) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    constexpr size_t kStandardOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    std::vector<std::string> texts(4);
    for (size_t i = 0; i < kUuidSize; ++i) {
        const bool startsGroup = i == 4 || i == 6 || i == 8 || i == 10;
        const uint8_t bytes[] = {uuid[i], uuid[kStandardOrder[i]]};
        for (size_t order = 0; order < 2; ++order) {
            const std::string digits = {kDigits[bytes[order] >> 4], kDigits[bytes[order] & 0x0F]};
            texts[2 * order] += digits;
            texts[2 * order + 1] += startsGroup ? "-" + digits : digits;
        }
    }
    return texts;
}

/// What a table says of its machine's identity, and the table without it.
class Sanitizer {
  public:
    explicit Sanitizer(Bytes& table) : m_table(table), m_walk(WalkStructures(table)) {}

    void Run() {
        for (const StructureSpan& structure : m_walk.structures) {
            HideStrings(structure);
            HideNumbers(structure);
        }
        for (const StructureSpan& structure : m_walk.structures) {
            HideCopiesIn(structure);
        }
        Fill(m_table, m_walk.End(), m_table.size(), 0);
    }

  private:
    uint8_t TypeOf(const StructureSpan& structure) const { return m_table[structure.offset]; }

    static bool Has(const StructureSpan& structure, size_t offset, size_t size) {
        return structure.offset + offset + size <= structure.strings;
    }

    void HideStrings(const StructureSpan& structure) {
        StructureStrings strings(m_table, structure);
        for (const StringField& field : kIdentifyingStrings) {
            if (field.type != TypeOf(structure) || !Has(structure, field.offset, 1)) {
                continue;
            }
            const uint8_t number = m_table[structure.offset + field.offset];
            for (size_t i = 1; i <= strings.Count(); ++i) {
                // A number that names no string may mean any of them.
                if (i == number || number > strings.Count()) {
                    Hide(strings, i);
                }
            }
        }
    }

    void Hide(StructureStrings& strings, size_t number) {
        constexpr size_t kShortestSecret = 5;  // shorter ones occur by chance
        const std::string text = strings.Get(number);
        // Texts without a digit, such as "Not Specified", identify nothing.
        if (text.size() >= kShortestSecret &&
            std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            m_secrets.push_back(text);
        }
        strings.Set(number, PlaceholderFor(text));
    }

    void HideNumbers(const StructureSpan& structure) {
        const size_t start = structure.offset;
        switch (TypeOf(structure)) {
            case kTypeSystem:
                if (Has(structure, kUuid, kUuidSize)) {
                    HideUuid(start + kUuid);
                }
                break;
            case kTypeBattery:
                Fill(m_table, start + kBatterySerialNumber,
                     std::min(start + kBatterySerialNumber + 2, structure.strings), 0);
                break;
            case kTypeHostInterface:
                Fill(m_table, start + kHostInterfaceData, structure.strings, 0);
                break;
            default:
                break;
        }
    }

    void HideUuid(size_t offset) {
        const auto start = m_table.begin() + static_cast<std::ptrdiff_t>(offset);
        const Bytes uuid(start, start + kUuidSize);
        const auto isAll = [&uuid](uint8_t value) { return uuid == Bytes(kUuidSize, value); };
        if (isAll(0x00) || isAll(0xFF)) {
            return;  // the machine has none
        }
        Bytes placeholder(kUuidSize, kUuidPlaceholder);
        // systally reports no UUID that begins with 0; it is to report none afterwards either.
        placeholder[0] = uuid[0] == 0 ? 0 : kUuidPlaceholder;
        for (auto copy = m_table.begin(); copy != m_table.end();) {
            copy = std::search(copy, m_table.end(), uuid.begin(), uuid.end());
            if (copy != m_table.end()) {
                copy = std::copy(placeholder.begin(), placeholder.end(), copy);
            }
        }
        for (const std::string& text : UuidTexts(uuid)) {
            m_secrets.push_back(text);
        }
    }

    void HideCopiesIn(const StructureSpan& structure) {
        const bool isFree =
            TypeOf(structure) == kTypeOemStrings || TypeOf(structure) >= kFirstOemType;
        StructureStrings strings(m_table, structure);
        for (size_t number = 1; number <= strings.Count(); ++number) {
            std::string text = WithUuidsHidden(strings.Get(number));
            for (const std::string& secret : m_secrets) {
                if (isFree) {
                    HideCopies(text, secret);
                }
            }
            strings.Set(number, text);
        }
    }

    Bytes& m_table;
    StructureWalk m_walk;
    std::vector<std::string> m_secrets;
};

}  // namespace

void Sanitize(FirmwareTables& tables) {
    Sanitizer(tables.table).Run();
    if (tables.HasBiosArea()) {
        const size_t end = tables.place.offset + tables.place.size;
        Fill(tables.biosArea, 0, tables.place.offset, 0);
        Fill(tables.biosArea, end, tables.biosArea.size(), 0);
    }
}

void SanitizeConfiguration(Bytes& configuration) {
    // PCI Express Base Specification: a list of capabilities behind the first 256 bytes.
    constexpr size_t kFirst = 0x100;
    constexpr uint16_t kDeviceSerialNumber = 0x0003;
    constexpr size_t kHeaderSize = 4;
    constexpr size_t kSerialNumberSize = 8;
    size_t offset = kFirst;
    while (offset >= kFirst && offset + kHeaderSize <= configuration.size()) {
        const uint8_t* const header = configuration.data() + offset;
        const auto capability = static_cast<uint16_t>(header[0] | header[1] << 8);
        const size_t next = (static_cast<size_t>(header[3]) << 4 | header[2] >> 4) & ~size_t{3};
        if (capability == kDeviceSerialNumber) {
            Fill(configuration, offset + kHeaderSize, offset + kHeaderSize + kSerialNumberSize, 0);
        }
        if (next <= offset) {
            return;  // the end of the list, or a list that could go round
        }
        offset = next;
    }
}

std::string PlaceholderFor(const std::string& text) {
    std::string placeholder = WithUuidsHidden(text);
    const size_t label = text.find(kUuidLabel);
    HideText(placeholder, 0, std::min(label, text.size()), 'X');
    return placeholder;
}

}  // namespace machine
