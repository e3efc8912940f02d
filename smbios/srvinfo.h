// What the firmware's SMBIOS tables say of this server, read into one record.
// Never trusts a length or a count: outside the copied table every byte reads as 0. Inside it, a
// field that lies beyond its structure's length is read from what follows; type 1 alone is asked
// for its length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "smbios/GrowingList.h"

inline constexpr unsigned STARTING_ADDRESS = 0xF000;  ///< real-mode segment of the BIOS area
inline constexpr unsigned SIZE_OF_DATA = 0xFFFF;      ///< bytes of the BIOS area that are read
inline constexpr char SM_BIOS_ANCHOR_ID_SM_[] = "_SM_";
inline constexpr char SM_BIOS_ANCHOR_ID_DMI[] = "_DMI";
inline constexpr int MAX_ENCLOSURES = 32;  ///< enclosures to be expected; more are kept too
inline constexpr int MAX_CPUS = 256;       ///< processors to be expected; more are kept too
inline constexpr int BLADE_SERVER = 3;     ///< board type of a blade (DSP0134, baseboard type)

/// Construct one, call Run() or dump() once, then ask the getters. Getters never fail: what the
/// firmware does not say is an empty text, 0, -1 or null, as noted. The texts belong to the
/// record and live as long as it does.
///
/// Messages go to standard output. The decoders consume the strings of a structure in the order
/// in which its string fields stand, not by their numbers.
class SERVER_INFORMATION {
  public:
    SERVER_INFORMATION();
    SERVER_INFORMATION(const SERVER_INFORMATION&) = delete;
    SERVER_INFORMATION& operator=(const SERVER_INFORMATION&) = delete;
    ~SERVER_INFORMATION();

    /// Finds, copies and decodes the structure table.
    /// Returns 0; -2 when the BIOS area cannot be read; -3 when it holds no entry point or the
    /// table cannot be had. Each failure has printed its message.
    int Run();
    /// Runs with a hex dump of each decoded structure. Always returns 0: the message of a
    /// failure has been printed by then.
    int dump();

    // --- Getters ----------------------------------------------------------------------------

    char* GetMachineBIOSName() const { return Text(m_szBIOSName); }
    char* GetMachineBIOSBuildID() const { return Text(m_szBIOSBuildID); }
    char* GetMachineBIOSLanguage() const { return Text(m_szBIOSLanguage); }
    char* GetMachineBIOSVersion() const { return Text(m_szBIOSVersion); }
    char* GetMachineBIOSDate() const { return Text(m_szBIOSDate); }
    char* GetManufacturer() const { return Text(m_szManufacturer); }
    char* GetProductName() const { return Text(m_szProductName); }
    char* GetMachineType() const { return Text(m_szMachineType); }
    char* GetModelNumber() const { return Text(m_szModelNumber); }
    char* GetMachineSerialNumber() const { return Text(m_szSerialNumber); }
    short GetActiveProcessors() const { return m_nActiveProcessors; }
    short GetProcessorSlots() const { return m_nProcessorSlots; }
    /// DSP0134 family code of active processor `i`; 0 when there is none.
    unsigned short GetProcessorFamily(int i) const;
    /// Current speed in MHz of active processor `i`; 0 when there is none.
    unsigned short GetProcessorSpeed(int i) const;
    /// The kinds of slot buses, separated by commas, each once.
    char* GetBuses() const { return Text(m_szBuses); }
    int GetMemorySizeInMB() const { return m_nMemorySizeInMB; }
    int GetNumSystemEnclosures() const { return m_nNumEnclosures; }
    /// DSP0134 type code of enclosure `i` without the lock bit; -1 when there is none.
    int GetSystemEnclosureType(int i) const;
    char* GetROMDiagnosticsBuild() const { return Text(m_szROMDiagBuild); }
    char* GetTESKBuild() const { return Text(m_szTESKBuild); }
    char* GetKORUBuild() const { return Text(m_szKORUBuild); }
    /// 32 upper-case hexadecimal digits in stored order; null when the firmware gives none, which a
    /// first byte of 0 stands for, or when there is no memory for them.
    char* GetUUID() const { return m_pUUID.get(); }
    /// 32 characters as the firmware wrote them; null when it gives none, or when there is no
    /// memory for them.
    char* GetChassisUUID() const { return m_pChassisUUID.get(); }
    /// The blade's slot, -1 when unknown.
    short GetBladeSlot() const { return m_nBladeSlot; }

    // --- Setters, each cutting its text to the room of the field; true unless another result is
    // --- named ----------------------------------------------------------------------------------

    bool SetMachineBIOSName(const char* text);
    bool SetMachineBIOSBuildID(const char* text);
    bool SetMachineBIOSLanguage(const char* text);
    bool SetMachineBIOSVersion(const char* text);
    bool SetMachineBIOSDate(const char* text);
    bool SetManufacturer(const char* text);
    bool SetModelNumber(const char* text);
    bool SetMachineType(const char* text);
    bool SetMachineSerialNumber(const char* text);
    bool SetROMDiagnosticsBuild(const char* text);
    bool SetTESKBuild(const char* text);
    bool SetKORUBuild(const char* text);
    /// Keeps what stands before "-[".
    bool SetProductName(const char* text);
    /// Keeps the 32 characters after "UUID:", unchecked; a shorter rest is filled with NUL.
    /// False, and no change, without "UUID:".
    bool SetChassisUUID(const char* text);
    /// Takes the slot number from the first digit of the text and the character after it.
    bool SetBladeSlot(const char* text);
    /// Adds a bus kind unless its name already occurs anywhere in the list.
    bool SetBuses(const char* name);
    bool SetMemorySizeInMB(int megabytes);

    // --- The steps of Run ---------------------------------------------------------------------

    /// Allocates the BIOS buffer; null when memory cannot be had.
    unsigned char* MakeBuffer();
    /// Fills the BIOS buffer from physical memory; false when that cannot be read.
    bool LoadBIOSBuffer();
    /// Reads the image file SM_BIOS.BIN of the current directory.
    /// Requires: buffer has room for SIZE_OF_DATA bytes.
    void GetMemoryFromFile(unsigned char* buffer);
    /// Writes the BIOS buffer to the file whose literal name is "Y:\SM_BIOS.BIN".
    void CopyMemoryToFile();
    /// Searches the BIOS buffer for the entry point and copies the structure table that it
    /// describes out of physical memory. The first byte of the copy; null when there is none.
    unsigned char* FindHeader();
    /// Walks the structure table. False only when FindHeader() found none.
    bool ParseTables();
    /// Prints 600 bytes as hex digits and characters, from 2 bytes before `structure` on.
    /// Requires: `structure` lies in the table copy, or such a window around it can be read.
    void DumpData(const unsigned char* structure);

    // --- Decoders: one structure each, returning the address behind its string set ------------
    // The result is one byte short when the set is empty, but for memory devices and structures
    // that are skipped; the walk makes up for it once it knows the BIOS name. Requires: `structure`
    // lies in the table copy, or is followed by as many zero bytes.

    unsigned char* FindTable0(unsigned char* structure);   ///< BIOS information
    unsigned char* FindTable1(unsigned char* structure);   ///< system information
    unsigned char* FindTable2(unsigned char* structure);   ///< baseboard information
    unsigned char* FindTable3(unsigned char* structure);   ///< system enclosure
    unsigned char* FindTable4(unsigned char* structure);   ///< processor information
    unsigned char* FindTable9(unsigned char* structure);   ///< system slots
    unsigned char* FindTable11(unsigned char* structure);  ///< OEM strings
    unsigned char* FindTable17(unsigned char* structure);  ///< memory device
    /// The address behind a structure and both NULs of its string set, without decoding it.
    unsigned char* SkipTable(unsigned char* structure);
    /// Steps over strings until it stands on an empty one; returns that NUL.
    unsigned char* SkipStrings(unsigned char* strings);
    /// Keeps the code between "-[" and "]-" in the scratch field; empties it and returns false
    /// when the text holds no such code.
    bool ParseString(const char* text);

  private:
    // The interface hands out char*, though nobody writes through it.
    static char* Text(const char* field) { return const_cast<char*>(field); }

    void DecodeBIOSVersion(const char* version);
    void DecodeProductName(const char* product);
    void DecodeUUID(const unsigned char* uuid);
    void DecodeOEMString(const char* text);
    const char* BracketedCodeOrWhole(const char* text);
    void KeepParsed(const char* text);
    bool CopyTable(uint32_t address, uint16_t length);
    unsigned char* DecodeStructure(unsigned char* structure);
    unsigned char* SkipZeroBytes(unsigned char* position);
    bool IsInTable(const unsigned char* position) const;

    uint16_t m_wBoardType = 0;  // BLADE_SERVER for a blade; kept, asked by nobody yet
    uint8_t m_bDumpMode = 0;
    bool m_bOutOfMemory = false;  // a list could not grow: what the record says is not all
    std::unique_ptr<unsigned char[]> m_pBIOSBuffer;
    uint16_t m_wNumStructures = 0;
    char m_szBIOSName[128] = {};
    char m_szBIOSBuildID[32] = {};
    char m_szBIOSLanguage[32] = {};
    char m_szBIOSVersion[32] = {};
    char m_szBIOSDate[32] = {};
    char m_szManufacturer[128] = {};
    char m_szProductName[128] = {};
    char m_szMachineType[32] = {};
    char m_szModelNumber[32] = {};
    char m_szSerialNumber[128] = {};
    char m_szParsed[256] = {};
    int16_t m_nActiveProcessors = 0;
    int16_t m_nProcessorSlots = 0;
    GrowingList<uint16_t> m_pProcessorFamily;
    GrowingList<uint16_t> m_pProcessorSpeed;
    char m_szBuses[256] = {};
    int32_t m_nMemorySizeInMB = 0;
    int32_t m_nNumEnclosures = 0;
    GrowingList<int32_t> m_pEnclosureType;
    char m_szROMDiagBuild[32] = {};
    char m_szTESKBuild[32] = {};
    char m_szKORUBuild[32] = {};
    std::unique_ptr<char[]> m_pUUID;
    std::unique_ptr<char[]> m_pChassisUUID;
    int16_t m_nBladeSlot = -1;
    std::unique_ptr<unsigned char[]> m_pTableStorage;  // the copy between its two runs of zeros
    unsigned char* m_pTableBuffer = nullptr;           // the copy: table length + 1 bytes
    unsigned char* m_pTableEnd = nullptr;              // the byte behind the copy
};
