// The front end's switches, and the queries about identity and PCI functions.
// Runs one operation, keeps nothing, and answers by its exit status or on standard output.
#include "app/systally.h"

#include <cpuid.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "pci/PCIDeviceList_Proc.h"

int32_t query_mode = 0;
uint32_t addValue = 0;

namespace {

constexpr uint32_t kNotGiven = 65535;

}  // namespace

uint32_t vid = kNotGiven;
uint32_t did = kNotGiven;
uint32_t svid = kNotGiven;
uint32_t sdid = kNotGiven;
uint32_t busN = kNotGiven;
uint32_t devN = kNotGiven;
bool vidpassed = false;
bool didpassed = false;
bool svidpassed = false;
bool sdidpassed = false;
CString machType;
CString x64("TRUE");

// --- Switches -----------------------------------------------------------------------------------

namespace {

struct Switch {
    const char* name;
    CLParamModes mode;
};

// In the order in which they are tried: the first that matches an argument takes it.
constexpr Switch kSwitches[] = {
    {"/qMachType", CLP_VALUE}, {"/m:", CLP_VALUE},       {"/dumpProp", CLP_SWITCH},
    {"/p", CLP_SWITCH},        {"/dumpINI", CLP_SWITCH}, {"/i", CLP_SWITCH},
    {"/s", CLP_SWITCH},        {"/dump", CLP_SWITCH},    {"/vid:", CLP_VALUE},
    {"/did:", CLP_VALUE},      {"/svid:", CLP_VALUE},    {"/sdid:", CLP_VALUE},
    {"/bn:", CLP_VALUE},       {"/dn:", CLP_VALUE},      {"/add:", CLP_VALUE},
    {"/x64", CLP_SWITCH},
};

/// The switches that select an operation without a value, in the order in which they are asked.
struct PlainOperation {
    const char* name;
    const char* otherName;  // null when there is only one
    int32_t mode;
};

constexpr PlainOperation kPlainOperations[] = {
    {"/dumpProp", "/p", DUMP_PROP_VALUE}, {"/dumpINI", "/i", DUMP_INI_VALUE},
    {"/s", nullptr, QSERV_TYPE_VALUE},    {"/dump", nullptr, DUMP_TABLES_VALUE},
    {"/x64", nullptr, QX64_VALUE},
};

/// One PCI identifier to search for, and the register that it is compared with.
struct Criterion {
    const char* name;
    uint32_t* value;
    bool* passed;
    uint16_t PCIDevice::*field;
};

constexpr Criterion kCriteria[] = {
    {"/vid:", &vid, &vidpassed, &PCIDevice::m_wVendorID},
    {"/did:", &did, &didpassed, &PCIDevice::m_wDeviceID},
    {"/svid:", &svid, &svidpassed, &PCIDevice::m_wSubVendorID},
    {"/sdid:", &sdid, &sdidpassed, &PCIDevice::m_wSubDeviceID},
};

// The bases differ: identifiers are hexadecimal as lspci prints them, positions follow C.
constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;
constexpr int kByPrefix = 0;

/// Whether the switch was given; only then does `number` receive its value.
bool TakeNumber(CCLParams& table, const char* name, int base, uint32_t& number) {
    if (!table.GetValue(name)) {
        return false;
    }
    CString value;
    table.GetValue(name, value);
    // The number's low 32 bits, where strtoul's result has more.
    number = static_cast<uint32_t>(std::strtoul(value.GetBuffer(), nullptr, base));
    return true;
}

// Each of these is false when another operation is selected already; a switch that was not given
// selects nothing, which is no failure.

/// Selects the machine type query when its switch was given; the long form wins.
bool SelectMachineTypeQuery(CCLParams& table) {
    CString value;
    if (!table.GetValue("/qMachType", value) && !table.GetValue("/m:", value)) {
        return true;
    }
    machType = value;
    return setQueryMode(QMACHTYPE_VALUE);
}

bool SelectPlainOperations(CCLParams& table) {
    for (const PlainOperation& operation : kPlainOperations) {
        const bool given = table.GetValue(operation.name) ||
                           (operation.otherName != nullptr && table.GetValue(operation.otherName));
        if (given && !setQueryMode(operation.mode)) {
            return false;
        }
    }
    return true;
}

bool SelectPciQuery(CCLParams& table) {
    bool anyPassed = false;
    for (const Criterion& criterion : kCriteria) {
        if (TakeNumber(table, criterion.name, kHexadecimal, *criterion.value)) {
            *criterion.passed = true;
        }
        anyPassed = anyPassed || *criterion.passed;
    }
    return !anyPassed || setQueryMode(QPCI_VALUE);
}

}  // namespace

bool setupParams(CCLParams& table) {
    bool added = false;
    for (const Switch& entry : kSwitches) {
        added = table.Add(entry.name, entry.mode, false);
    }
    return added;
}

bool setQueryMode(int mode) {
    if (query_mode != 0) {
        return false;
    }
    query_mode = mode;
    return true;
}

int parseParams(CCLParams& table) {
    query_mode = 0;
    addValue = 0;
    if (!SelectMachineTypeQuery(table) || !SelectPlainOperations(table)) {
        return kFailure;
    }
    TakeNumber(table, "/add:", kDecimal, addValue);
    if (!SelectPciQuery(table)) {
        return kFailure;
    }
    TakeNumber(table, "/bn:", kByPrefix, busN);
    TakeNumber(table, "/dn:", kByPrefix, devN);
    const bool hasStart = busN != kNotGiven || devN != kNotGiven;
    return hasStart && query_mode != QPCI_VALUE ? kFailure : 0;
}

/// The text is promised as it stands. The long forms, /dump and /x64 are left out of it.
void printUsage() {
    std::printf("%s",
                "QEV (R) SYSTALLY version " SYSTALLY_VERSION
                "\n"
                "Command Line Systally Utility\n"
                "systally [ /s | /i | /p | /m:machType ]\n"
                "systally [ /vid:vid | /did:did | /svid:svid | /bn:busN | /dn:devN | /add:n ]\n"
                "System Information Parameters:\n"
                "/s - Causes program to return zero if this is an Corvina server.\n"
                "/i - Dumps all known information about system hardware to\n"
                "     the screen in an \"INI\" format.\n"
                "/p - Dumps all known information about system hardware to\n"
                "     the screen in a \"Properties File\" format.\n"
                "/m:machType - Compares the machine type of the current system to the one\n"
                "     denoted by \"machType\".  Returns 1 if \"machType\" matches the machine\n"
                "     type of the current system.  Returns 0 if there is not a match.\n"
                "PCI Information Parameters:\n"
                "All of the following cause the program to return the number of matching PCI\n"
                "devices found. These parameters may be used in combination with each other.\n"
                "/vid:vid   - Searches for PCI devices with the denoted vendor ID.\n"
                "/did:did   - Searches for PCI devices with the denoted device ID.\n"
                "/svid:svid - Searches for PCI devices with the denoted sub-vendor ID.\n"
                "/sdid:sdid - Searches for PCI devices with the denoted sub-device ID.\n"
                "/bn:busN   - Causes the PCI device search to start at bus number busN.\n"
                "/dn:devN   - Causes the PCI device search to start at device number devN.\n"
                "/add:num   - Adds the integer num to the return value before exiting.\n");
}

// --- Identity queries ---------------------------------------------------------------------------

namespace {

struct Model {
    const char* text;
    const char* machineType;
};

// The first row whose text occurs in the product name wins, so longer names stand first.
constexpr Model kModels[] = {
    {"Arlo 2", "7712"}, {"Arlo 1", "7711"},  {"Arlo", "7710"},
    {"Birch", "7709"},  {"Cedar 1", "7730"}, {"Dune R", "7731"},
};

// Stands for no answer: it never matches, not even when it is asked for.
constexpr char kUnknownMachineType[] = "XXXX";

constexpr size_t kTypeSize = sizeof kUnknownMachineType;  // every type has four characters

char* CopyType(const char* source, char* type) {
    std::memcpy(type, source, kTypeSize);
    return type;
}

/// Fills the record; false, with a message, when SMBIOS cannot be read.
bool ReadServerOrExplain(SERVER_INFORMATION& info) {
    if (info.Run() == 0) {
        return true;
    }
    // Scripts look for these words, though the note is about another operating system.
    std::printf("%s\n",
                "Internal error.\nNote: This program cannot run with expanded memory drivers "
                "(EMM386) loaded.");
    return false;
}

}  // namespace

CString WorkingMachineType(const SERVER_INFORMATION& info) {
    const CString type = info.GetMachineType();
    char implied[kTypeSize];
    return type.IsEmpty() ? CString(fillInMachineTypeIfPossible(info, implied)) : type;
}

char* fillInMachineTypeIfPossible(const SERVER_INFORMATION& info, char* type) {
    for (const Model& model : kModels) {
        if (std::strstr(info.GetProductName(), model.text) != nullptr) {
            return CopyType(model.machineType, type);
        }
    }
    return CopyType(kUnknownMachineType, type);
}

int qMachType() {
    SERVER_INFORMATION info;
    if (!ReadServerOrExplain(info)) {
        return kFailure;
    }
    const CString type = WorkingMachineType(info);
    return type != kUnknownMachineType && type == machType ? 1 : 0;
}

int qServType() {
    SERVER_INFORMATION info;
    if (!ReadServerOrExplain(info)) {
        return kFailure;
    }
    // The other way round than qMachType: 0 is the yes that a shell's "if" expects.
    const bool isOfFamily = WorkingMachineType(info) != kUnknownMachineType &&
                            std::strstr(info.GetManufacturer(), "QEV") != nullptr;
    return isOfFamily ? 0 : 1;
}

int is64bit() {
    constexpr unsigned kHighestExtendedLeaf = 0x80000000;
    constexpr unsigned kExtendedFeatures = 0x80000001;
    constexpr unsigned kLongMode = 0x20000000;  // bit 29 of EDX

    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    __cpuid(kHighestExtendedLeaf, eax, ebx, ecx, edx);
    // Without extended leaves the bit is looked for in the answer to the first question.
    unsigned features = eax;
    if (eax > kHighestExtendedLeaf) {
        __cpuid(kExtendedFeatures, eax, ebx, ecx, edx);
        features = edx;
    }
    return (features & kLongMode) != 0 ? 0 : 1;
}

// --- The PCI query ------------------------------------------------------------------------------

namespace {

/// Whether the device lies at or behind the start position. Without a start bus every device
/// does: a start device alone has no effect.
bool IsAtOrBehindStart(const PCIDevice& device) {
    if (busN == kNotGiven || device.m_wBus > busN) {
        return true;
    }
    return device.m_wBus == busN && (devN == kNotGiven || device.m_wDevice >= devN);
}

bool MatchesCriteria(const PCIDevice& device) {
    for (const Criterion& criterion : kCriteria) {
        if (*criterion.passed && device.*criterion.field != *criterion.value) {
            return false;
        }
    }
    return true;
}

}  // namespace

int qPCI() {
    PCIDeviceList_Proc list;
    list.scanPCIBusAndCreateList();
    list.resetList();
    int count = 0;
    while (const PCIDevice* device = list.getNextDeviceFromList()) {
        // The list is in ascending order, so this skips its head alone.
        if (IsAtOrBehindStart(*device) && MatchesCriteria(*device)) {
            ++count;
        }
    }
    return count;
}
