// The system part of the report against dmidecode in the same guest.
#include <algorithm>
#include <cctype>
#include <map>

#include "vm/Answers.h"
#include "vm/StructureTable.h"

namespace {

class SystemKeys : public vm::OnGuest {
  protected:
    static std::string Reported(const std::string& key) {
        return TheReport().Value("System_" + key);
    }
};

// dmidecode names a string whose number is 0; the report leaves it empty.
std::string EmptyUnlessSpecified(const std::string& text) {
    return text == "Not Specified" ? "" : text;
}

// Empty where the text ends before.
std::string From(const std::string& text, size_t start) {
    return text.substr(std::min(start, text.size()));
}

std::string UpTo(const std::string& text, const std::string& end) {
    return text.substr(0, text.find(end));
}

// The bytes of "33221100-5544-7766-8899-aabbccddeeff" in the order in which they are stored: since
// SMBIOS 2.6 the first three fields are little-endian (DSP0134, System UUID).
std::string InStoredOrder(const std::string& uuid) {
    std::string digits;
    for (const size_t at :
         {6U, 4U, 2U, 0U, 11U, 9U, 16U, 14U, 19U, 21U, 24U, 26U, 28U, 30U, 32U, 34U}) {
        digits += uuid.substr(at, 2);
    }
    std::transform(digits.begin(), digits.end(), digits.begin(),
                   [](unsigned char digit) { return static_cast<char>(std::toupper(digit)); });
    return digits;
}

// A UUID whose first stored byte is 0 is not recorded.
std::string ReportedFor(const std::string& uuid) {
    const bool readable = uuid.size() == 36 && uuid[8] == '-';
    const std::string digits = readable ? InStoredOrder(uuid) : "";
    return digits.starts_with("00") ? "" : digits;
}

// DSP0134, "System Enclosure or Chassis Types", as two digits, by dmidecode's names.
std::string EnclosureCode(const std::string& name) {
    static const std::map<std::string, std::string> codes = {
        {"Other", "01"},
        {"Unknown", "02"},
        {"Desktop", "03"},
        {"Main Server Chassis", "11"},
        {"Rack Mount Chassis", "17"},
        {"Blade", "1C"},
        {"Blade Enclosing", "1D"},
    };
    return codes.at(name);
}

int Megabytes(const std::string& size) {
    const std::map<std::string, int> units = {{"MB", 1}, {"GB", 1024}};
    return std::stoi(size) * units.at(size.substr(size.find(' ') + 1));
}

TEST_P(SystemKeys, BiosDateIsTheReleaseDate) {
    EXPECT_EQ(Reported("BIOS_Date"), PeerSaysInOneLine("bios-release-date"));
}

TEST_P(SystemKeys, ManufacturerIsThatOfTheSystem) {
    EXPECT_EQ(Reported("System_Manufacturer"), PeerSaysInOneLine("system-manufacturer"));
}

TEST_P(SystemKeys, ProductNameEndsBeforeTheBracketedCode) {
    EXPECT_EQ(Reported("Product_Name"), UpTo(PeerSaysInOneLine("system-product-name"), "-["));
}

TEST_P(SystemKeys, SerialNumberIsThatOfTheSystem) {
    EXPECT_EQ(Reported("Serial_Number"),
              EmptyUnlessSpecified(PeerSaysInOneLine("system-serial-number")));
}

TEST_P(SystemKeys, UuidIsGivenInStoredOrder) {
    EXPECT_EQ(Reported("System_UUID"), ReportedFor(PeerSaysInOneLine("system-uuid")));
}

TEST_P(SystemKeys, BuildLevelIsTheStartOfTheVersionCode) {
    const std::string version = PeerSaysInOneLine("bios-version");
    const size_t code = version.starts_with("-[") ? 2 : 0;
    EXPECT_EQ(Reported("BIOS_Build_Level"), version.substr(code, 7));
}

TEST_P(SystemKeys, LanguageIsTheTwoCharactersAfterTheBuildLevel) {
    const std::string version = PeerSaysInOneLine("bios-version");
    const size_t code = version.starts_with("-[") ? 2 : 0;
    EXPECT_EQ(Reported("BIOS_Language"), From(version, code + 7).substr(0, 2));
}

TEST_P(SystemKeys, BiosVersionIsTheRestAfterTenCharacters) {
    const std::string version = PeerSaysInOneLine("bios-version");
    const size_t code = version.starts_with("-[") ? 2 : 0;
    EXPECT_EQ(Reported("BIOS_Version"), UpTo(From(version, code + 10), "]-"));
}

TEST_P(SystemKeys, EveryEnclosureIsCounted) {
    EXPECT_EQ(Reported("Number_Of_Enclosures"), std::to_string(vm::OfType(Dmidecode(), 3).size()));
}

TEST_P(SystemKeys, EnclosureTypesAreGivenWithoutTheLock) {
    const vm::SmbiosStructures enclosures = vm::OfType(Dmidecode(), 3);
    ASSERT_FALSE(enclosures.empty());
    for (size_t i = 0; i < enclosures.size(); ++i) {
        EXPECT_EQ(Reported(vm::Indexed("Enclosure_Type", i)),
                  EnclosureCode(enclosures[i].Field("Type")));
    }
}

TEST_P(SystemKeys, EveryProcessorStructureIsASlot) {
    EXPECT_EQ(Reported("Processor_Slots"), std::to_string(vm::OfType(Dmidecode(), 4).size()));
}

TEST_P(SystemKeys, ProcessorIs64BitWhenTheKernelFindsLongMode) {
    const std::string cpuinfo = PeerSays("cpuinfo");
    const bool longMode =
        (UpTo(cpuinfo.substr(cpuinfo.find("\nflags")).substr(1), "\n") + " ").find(" lm ") !=
        std::string::npos;
    EXPECT_EQ(Reported("Processor_X64"), longMode ? "TRUE" : "FALSE");
    EXPECT_EQ(Ran("x64").status, longMode ? 0 : 1);
    EXPECT_EQ(Ran("x64").out, "");
}

TEST_P(SystemKeys, PropertiesLayoutSaysTheSame) {
    const std::string properties = Ran("report-properties").out;
    EXPECT_EQ(vm::Report(properties).Lines(), TheReport().Lines());
    EXPECT_TRUE(properties.starts_with("System_Machine_Type = "));
    EXPECT_EQ(properties.find("\n\n"), std::string::npos);
    EXPECT_EQ(properties.find("[PCI]"), std::string::npos);
}

TEST_P(SystemKeys, LongSwitchesPrintTheSameReports) {
    EXPECT_EQ(Ran("report-ini-long").out, Ran("report-ini").out);
    EXPECT_EQ(Ran("report-properties-long").out, Ran("report-properties").out);
}

TEST_P(SystemKeys, ReportsEndWithSuccess) {
    EXPECT_EQ(Ran("report-ini").status, 0);
    EXPECT_EQ(Ran("report-properties").status, 0);
}

INSTANTIATE_TEST_SUITE_P(Guest, SystemKeys, vm::EveryGuest(), vm::GuestName);

// Where the kernel lets it.
class PhysicalMemory : public SystemKeys {};

TEST_P(PhysicalMemory, DmidecodeReadsTheSameTableFromPhysicalMemory) {
    const auto types = [](const std::string& text) {
        std::string list;
        for (const vm::SmbiosStructure& each : vm::ReadDmidecode(text)) {
            list += std::to_string(each.type) + " ";
        }
        return list;
    };
    EXPECT_EQ(types(PeerSays("dmidecode-from-memory")), types(PeerSays("dmidecode")));
}

INSTANTIATE_TEST_SUITE_P(Guest, PhysicalMemory, vm::GuestsThatAnswerAlone(), vm::GuestName);

// Where no structure is made to say two things at once, dmidecode's words settle these too.
class ProcessorsAndMemory : public SystemKeys {};

TEST_P(ProcessorsAndMemory, PopulatedSocketsAreActive) {
    const vm::SmbiosStructures sockets = vm::OfType(Dmidecode(), 4);
    EXPECT_EQ(Reported("Active_Processors"),
              std::to_string(std::count_if(sockets.begin(), sockets.end(), [](const auto& each) {
                  return each.Field("Status").starts_with("Populated");
              })));
}

TEST_P(ProcessorsAndMemory, SpeedIsTheCurrentSpeed) {
    const vm::SmbiosStructures sockets = vm::OfType(Dmidecode(), 4);
    ASSERT_FALSE(sockets.empty());
    for (size_t i = 0; i < sockets.size(); ++i) {
        EXPECT_EQ(Reported(vm::Indexed("Processor_Speed_MHz", i)) + " MHz",
                  sockets[i].Field("Current Speed"));
    }
}

// DSP0134, "Processor Information": the family stands at 0x06. dmidecode says it in words.
TEST_P(ProcessorsAndMemory, FamilyIsTheCodeInTheStructure) {
    const std::string table = Table();
    size_t processors = 0;
    for (const vm::RawStructure& structure : vm::RawStructures(table)) {
        if (structure.type == 4) {
            EXPECT_EQ(Reported(vm::Indexed("Processor_Family", processors++)),
                      std::to_string(vm::ByteAt(table, structure.offset + 0x06)));
        }
    }
    EXPECT_GT(processors, 0U);
}

TEST_P(ProcessorsAndMemory, MemoryIsTheSumOfTheDevices) {
    int megabytes = 0;
    for (const vm::SmbiosStructure& device : vm::OfType(Dmidecode(), 17)) {
        megabytes += Megabytes(device.Field("Size"));
    }
    EXPECT_GT(megabytes, 0);
    EXPECT_EQ(Reported("Total_Enabled_Memory_Mb"), std::to_string(megabytes));
}

INSTANTIATE_TEST_SUITE_P(Guest, ProcessorsAndMemory,
                         testing::Values("plain", "dressed", "locked", "anchor3", "uefi", "uefi3",
                                         "plainuefi"),
                         vm::GuestName);

}  // namespace
