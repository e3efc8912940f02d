// The server information record: its lifecycle, getters and setters.
// Never writes past a field: a longer text is cut to the field's room.
#include "smbios/srvinfo.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

namespace {

template <size_t Size>
bool Store(char (&field)[Size], const char* text) {
    const size_t length = strnlen(text, Size - 1);
    // The text may lie in the field itself.
    std::memmove(field, text, length);
    field[length] = '\0';
    return true;
}

template <typename Element>
bool HasIndex(const GrowingList<Element>& elements, int index, int count) {
    return index >= 0 && index < count && static_cast<size_t>(index) < elements.Size();
}

bool IsDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

SERVER_INFORMATION::SERVER_INFORMATION() = default;

SERVER_INFORMATION::~SERVER_INFORMATION() = default;

int SERVER_INFORMATION::Run() {
    if (!LoadBIOSBuffer()) {
        std::printf(
            "Catastrophic DPMI_ReadMemoryInRM failure -2\n"
            " SERVER_INFORMATION::LoadBIOSBuffer()\n");
        return -2;
    }
    if (!ParseTables() || m_bOutOfMemory) {
        std::printf(
            "Catastrophic ParseTables() failure -3 \n"
            "SERVER_INFORMATION::ParseTables()\n");
        return -3;
    }
    return 0;
}

int SERVER_INFORMATION::dump() {
    m_bDumpMode = 1;
    if (Run() != 0) {
        m_bDumpMode = 0;
    }
    return 0;
}

unsigned short SERVER_INFORMATION::GetProcessorFamily(int i) const {
    return HasIndex(m_pProcessorFamily, i, m_nActiveProcessors)
               ? m_pProcessorFamily[static_cast<size_t>(i)]
               : uint16_t{0};
}

unsigned short SERVER_INFORMATION::GetProcessorSpeed(int i) const {
    return HasIndex(m_pProcessorSpeed, i, m_nActiveProcessors)
               ? m_pProcessorSpeed[static_cast<size_t>(i)]
               : uint16_t{0};
}

int SERVER_INFORMATION::GetSystemEnclosureType(int i) const {
    return HasIndex(m_pEnclosureType, i, m_nNumEnclosures)
               ? m_pEnclosureType[static_cast<size_t>(i)]
               : -1;
}

bool SERVER_INFORMATION::SetMachineBIOSName(const char* text) {
    return Store(m_szBIOSName, text);
}

bool SERVER_INFORMATION::SetMachineBIOSBuildID(const char* text) {
    return Store(m_szBIOSBuildID, text);
}

bool SERVER_INFORMATION::SetMachineBIOSLanguage(const char* text) {
    return Store(m_szBIOSLanguage, text);
}

bool SERVER_INFORMATION::SetMachineBIOSVersion(const char* text) {
    return Store(m_szBIOSVersion, text);
}

bool SERVER_INFORMATION::SetMachineBIOSDate(const char* text) {
    return Store(m_szBIOSDate, text);
}

bool SERVER_INFORMATION::SetManufacturer(const char* text) {
    return Store(m_szManufacturer, text);
}

bool SERVER_INFORMATION::SetModelNumber(const char* text) {
    return Store(m_szModelNumber, text);
}

bool SERVER_INFORMATION::SetMachineType(const char* text) {
    return Store(m_szMachineType, text);
}

bool SERVER_INFORMATION::SetMachineSerialNumber(const char* text) {
    return Store(m_szSerialNumber, text);
}

bool SERVER_INFORMATION::SetROMDiagnosticsBuild(const char* text) {
    return Store(m_szROMDiagBuild, text);
}

bool SERVER_INFORMATION::SetTESKBuild(const char* text) {
    return Store(m_szTESKBuild, text);
}

bool SERVER_INFORMATION::SetKORUBuild(const char* text) {
    return Store(m_szKORUBuild, text);
}

bool SERVER_INFORMATION::SetProductName(const char* text) {
    Store(m_szProductName, text);
    if (char* code = std::strstr(m_szProductName, "-["); code != nullptr) {
        *code = '\0';
    }
    return true;
}

bool SERVER_INFORMATION::SetChassisUUID(const char* text) {
    constexpr char kLabel[] = "UUID:";
    constexpr size_t kDigits = 32;
    const char* label = std::strstr(text, kLabel);
    if (label == nullptr) {
        return false;
    }
    std::unique_ptr<char[]> uuid(new (std::nothrow) char[kDigits + 1]());
    if (uuid == nullptr) {
        return false;
    }
    const char* digits = label + std::strlen(kLabel);
    std::memcpy(uuid.get(), digits, strnlen(digits, kDigits));
    m_pChassisUUID = std::move(uuid);
    return true;
}

bool SERVER_INFORMATION::SetBladeSlot(const char* text) {
    const char* digit = std::find_if(text, text + std::strlen(text), IsDecimalDigit);
    if (*digit == '\0') {
        return true;
    }
    // The next character counts as a digit whatever it is, the closing NUL included: a lone final
    // '5' gives 5 * 10 - 48 = 2.
    const auto next = static_cast<signed char>(digit[1]);
    m_nBladeSlot = static_cast<int16_t>((*digit - '0') * 10 + (next - '0'));
    return true;
}

bool SERVER_INFORMATION::SetBuses(const char* name) {
    if (std::strstr(m_szBuses, name) != nullptr) {
        return true;
    }
    const size_t length = std::strlen(m_szBuses);
    std::snprintf(m_szBuses + length, sizeof m_szBuses - length, "%s%s", length == 0 ? "" : ",",
                  name);
    return true;
}

bool SERVER_INFORMATION::SetMemorySizeInMB(int megabytes) {
    m_nMemorySizeInMB = megabytes;
    return true;
}
