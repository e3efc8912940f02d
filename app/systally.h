// The front end's operations and the choices that the command line makes for them.
// One process runs one operation; the operation's result is the exit status.
#pragma once

#include <cstddef>
#include <cstdint>

#include "smbios/srvinfo.h"
#include "util/CLParams.h"
#include "util/CString.h"

// The operations. They are single bits, but only one is ever selected.
inline constexpr int32_t QPCI_VALUE = 1;
inline constexpr int32_t QMACHTYPE_VALUE = 2;
inline constexpr int32_t DUMP_INI_VALUE = 4;
inline constexpr int32_t DUMP_PROP_VALUE = 8;
inline constexpr int32_t QSERV_TYPE_VALUE = 16;
inline constexpr int32_t DUMP_TABLES_VALUE = 32;
inline constexpr int32_t QX64_VALUE = 64;

/// The exit status of usage errors and of SMBIOS data that cannot be read.
inline constexpr int kFailure = 255;

extern int32_t query_mode;  ///< the selected operation, 0 when there is none
extern uint32_t addValue;   ///< added to the PCI count before it becomes the exit status
// The PCI criteria; 65535 in a start position means that none was given.
extern uint32_t vid;
extern uint32_t did;
extern uint32_t svid;
extern uint32_t sdid;
extern uint32_t busN;
extern uint32_t devN;
extern bool vidpassed;
extern bool didpassed;
extern bool svidpassed;
extern bool sdidpassed;
extern CString machType;  ///< the machine type to compare with
/// What the report says of Processor_X64: "TRUE", unless the processor was asked and said no.
extern CString x64;

/// Registers the switches; the result of the last CCLParams::Add.
bool setupParams(CCLParams& table);
/// Turns the parsed table into query_mode, addValue and the criteria. Criteria that the table does
/// not give keep their values.
/// 0 on success, 255 on a usage error.
int parseParams(CCLParams& table);
/// Selects the operation; false, and no change, when one is selected already.
bool setQueryMode(int mode);
void printUsage();

/// The number of PCI functions that match the criteria. Ends the process when the functions cannot
/// be listed; see PCIDeviceList_Proc.
int qPCI();
/// 1 when the machine type equals machType, 0 when not, 255 when SMBIOS cannot be read.
int qMachType();
/// 0 for a server of the maker's family, 1 for any other, 255 when SMBIOS cannot be read.
int qServType();
/// 0 when the processor can run 64-bit code, 1 when not.
int is64bit();
/// Prints the report in the layout that query_mode selects. 0, or 255 when SMBIOS cannot be read.
/// Ends the process when the PCI functions cannot be listed; see PCIDeviceList_Proc.
int dumpAll();
/// Prints the decoded SMBIOS structures as a hex dump. Always 0.
int dumpTables();

/// The firmware's machine type, or the one that the product name implies.
CString WorkingMachineType(const SERVER_INFORMATION& info);
/// Writes the machine type that the product name implies, or "XXXX", and returns `type`.
/// Requires: type has room for 5 bytes.
char* fillInMachineTypeIfPossible(const SERVER_INFORMATION& info, char* type);
