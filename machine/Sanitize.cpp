// Placeholders for what identifies a machine: DSP0134 chapter 7.
#include "machine/Sanitize.h"

#include <algorithm>
#include <bitset>

#include "machine/Secrets.h"
#include "machine/StructureStrings.h"
#include "machine/StructureWalk.h"

namespace machine {

namespace {

constexpr uint8_t kTypeSystem = 1;
constexpr uint8_t kTypeBattery = 22;
constexpr uint8_t kTypeHostInterface = 42;
constexpr uint8_t kTypeInactive = 126;
constexpr uint8_t kFirstOemType = 128;

constexpr size_t kHeaderSize = 4;
constexpr size_t kUuid = 0x08;  // of the system
constexpr size_t kUuidSize = 16;
constexpr size_t kBatterySerialNumber = 0x10;  // 16 bits
constexpr size_t kHostInterfaceData = 0x06;    // a management controller's UUID and addresses

// What a capture keeps of a table ends there at the latest.
constexpr size_t kLongestKept = 0x10000;

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

constexpr StringField kNames[] = {
    {0, 0x04}, {0, 0x05}, {0, 0x08},  // firmware: vendor, version, date
    {1, 0x04}, {1, 0x05},             // system: manufacturer, product name
    {2, 0x04}, {2, 0x05}, {2, 0x0A},  // baseboard: the same, location in the chassis
    {3, 0x04},                        // enclosure: manufacturer
};

void Fill(Bytes& bytes, size_t first, size_t last, uint8_t value) {
    for (size_t i = first; i < std::min(last, bytes.size()); ++i) {
        bytes[i] = value;
    }
}

/// What a table says of its machine's identity, and the table without it.
class Sanitizer {
  public:
    explicit Sanitizer(Bytes& table) : m_table(table), m_walk(WalkStructures(table)) {}

    void Run() {
        for (const StructureSpan& structure : m_walk.structures) {
            LearnNames(structure);
        }
        for (const StructureSpan& structure : m_walk.structures) {
            HideStrings(structure);
            HideNumbers(structure);
        }
        for (const StructureSpan& structure : m_walk.structures) {
            if (structure.end <= kLongestKept) {
                HideCopiesIn(structure);
            }
        }
        Fill(m_table, m_walk.End(), m_table.size(), 0);
    }

  private:
    uint8_t TypeOf(const StructureSpan& structure) const { return m_table[structure.offset]; }

    static bool Has(const StructureSpan& structure, size_t offset, size_t size) {
        return structure.offset + offset + size <= structure.strings;
    }

    void LearnNames(const StructureSpan& structure) {
        const StructureStrings strings(m_table, structure);
        for (const StringField& field : kNames) {
            if (field.type == TypeOf(structure) && Has(structure, field.offset, 1)) {
                const uint8_t number = m_table[structure.offset + field.offset];
                if (number > 0 && number <= strings.Count()) {
                    m_secrets.AddName(strings.Get(number));
                }
            }
        }
    }

    void HideStrings(const StructureSpan& structure) {
        for (const StringField& field : kIdentifyingStrings) {
            if (field.type == TypeOf(structure)) {
                HideFieldsString(structure, field.offset);
            }
        }
    }

    void HideFieldsString(const StructureSpan& structure, size_t offset) {
        StructureStrings strings(m_table, structure);
        const bool isThere = Has(structure, offset, 1);
        const uint8_t number = isThere ? m_table[structure.offset + offset] : 0;
        for (size_t i = 1; i <= strings.Count(); ++i) {
            // A number that names no string may mean any of them, and a field that is missing any
            // that no other field names.
            const bool isMeant =
                isThere ? i == number || number > strings.Count() : !IsNamed(structure, i);
            if (isMeant) {
                m_secrets.AddText(strings.Get(i));
                strings.Set(i, PlaceholderFor(strings.Get(i)));
            }
        }
    }

    bool IsNamed(const StructureSpan& structure, size_t number) const {
        const auto begin = m_table.begin();
        const auto first = begin + static_cast<std::ptrdiff_t>(structure.offset + kHeaderSize);
        const auto last = begin + static_cast<std::ptrdiff_t>(structure.strings);
        return std::find(first, last, number) != last;
    }

    void HideNumbers(const StructureSpan& structure) {
        const size_t start = structure.offset;
        switch (TypeOf(structure)) {
            case kTypeSystem:
                HideUuid(structure);
                break;
            case kTypeBattery:
                Fill(m_table, start + kBatterySerialNumber,
                     std::min(start + kBatterySerialNumber + 2, structure.strings), 0);
                break;
            case kTypeHostInterface:
                Fill(m_table, start + kHostInterfaceData, structure.strings, 0);
                break;
            case kTypeInactive:
                HideAll(structure);
                break;
            default:
                break;
        }
    }

    /// Nobody can tell what an inactive structure was, nor does anybody read it.
    void HideAll(const StructureSpan& structure) {
        Fill(m_table, structure.offset + kHeaderSize, structure.strings, 0);
        StructureStrings strings(m_table, structure);
        for (size_t number = 1; number <= strings.Count(); ++number) {
            strings.Set(number, PlaceholderFor(strings.Get(number)));
        }
    }

    void HideUuid(const StructureSpan& structure) {
        const size_t first = structure.offset + kUuid;
        const size_t last = std::min(first + kUuidSize, structure.strings);
        if (first >= last) {
            return;
        }
        const auto start = m_table.begin() + static_cast<std::ptrdiff_t>(first);
        const Bytes uuid(start, m_table.begin() + static_cast<std::ptrdiff_t>(last));
        const auto isAll = [&uuid](uint8_t value) { return uuid == Bytes(uuid.size(), value); };
        if (isAll(0x00) || isAll(0xFF)) {
            return;  // the machine has none
        }
        if (uuid.size() == kUuidSize) {
            m_secrets.AddUuid(uuid);
        }
        const Bytes placeholder = PlaceholderForUuid(uuid);
        std::copy(placeholder.begin(), placeholder.end(), start);
    }

    void HideCopiesIn(const StructureSpan& structure) {
        const size_t fields = structure.offset + kHeaderSize;
        if (TypeOf(structure) >= kFirstOemType) {
            m_secrets.HideIn(m_table, fields, structure.strings);
        } else {
            // Fields that the standard describes hold numbers, which may look like a short text.
            m_secrets.HideUuidsIn(m_table, fields, structure.strings);
        }
        StructureStrings strings(m_table, structure);
        for (size_t number = 1; number <= strings.Count(); ++number) {
            const size_t start = strings.OffsetOf(number);
            m_secrets.HideIn(m_table, start, start + strings.Get(number).size());
            strings.Set(number, WithUuidsHidden(strings.Get(number)));
        }
    }

    Bytes& m_table;
    StructureWalk m_walk;
    Secrets m_secrets;
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
    // PCI Express Base standard: a list of capabilities behind the first 256 bytes.
    constexpr size_t kFirst = 0x100;
    constexpr size_t kSpace = 0x1000;
    constexpr uint16_t kDeviceSerialNumber = 0x0003;
    constexpr size_t kSerialNumberSize = 8;
    std::bitset<kSpace> isVisited;  // the list may lead anywhere, and round
    size_t offset = kFirst;
    while (offset >= kFirst && offset + kHeaderSize <= configuration.size() && offset < kSpace &&
           !isVisited[offset]) {
        isVisited.set(offset);
        const uint8_t* const header = configuration.data() + offset;
        const auto capability = static_cast<uint16_t>(header[0] | header[1] << 8);
        const size_t next = (static_cast<size_t>(header[3]) << 4 | header[2] >> 4) & ~size_t{3};
        if (capability == kDeviceSerialNumber) {
            Fill(configuration, offset + kHeaderSize, offset + kHeaderSize + kSerialNumberSize, 0);
        }
        offset = next;
    }
}

}  // namespace machine
