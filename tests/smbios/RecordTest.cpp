// The record: its constants, its interface and what a new one answers.
#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <utility>

#include "smbios/srvinfo.h"

namespace {

using Record = SERVER_INFORMATION;

TEST(Constants, HaveTheirDocumentedValues) {
    EXPECT_EQ(STARTING_ADDRESS, 0xF000u);
    EXPECT_EQ(SIZE_OF_DATA, 0xFFFFu);
    EXPECT_STREQ(SM_BIOS_ANCHOR_ID_SM_, "_SM_");
    EXPECT_STREQ(SM_BIOS_ANCHOR_ID_DMI, "_DMI");
    EXPECT_EQ(MAX_ENCLOSURES, 32);
    EXPECT_EQ(MAX_CPUS, 256);
    EXPECT_EQ(BLADE_SERVER, 3);
}

template <typename Result, typename... Getters>
constexpr bool ReturnsOf(Getters... getters) {
    return (std::is_same_v<decltype((std::declval<Record&>().*getters)()), Result> && ...);
}

template <typename Result, typename... Getters>
constexpr bool ReturnsOfIndex(Getters... getters) {
    return (std::is_same_v<decltype((std::declval<Record&>().*getters)(0)), Result> && ...);
}

TEST(Getters, ReturnTheirDocumentedTypes) {
    EXPECT_TRUE(ReturnsOf<char*>(
        &Record::GetMachineBIOSName, &Record::GetMachineBIOSBuildID,
        &Record::GetMachineBIOSLanguage, &Record::GetMachineBIOSVersion,
        &Record::GetMachineBIOSDate, &Record::GetManufacturer, &Record::GetProductName,
        &Record::GetMachineType, &Record::GetModelNumber, &Record::GetMachineSerialNumber,
        &Record::GetBuses, &Record::GetROMDiagnosticsBuild, &Record::GetTESKBuild,
        &Record::GetKORUBuild, &Record::GetUUID, &Record::GetChassisUUID));
    EXPECT_TRUE(ReturnsOf<short>(&Record::GetActiveProcessors, &Record::GetProcessorSlots,
                                 &Record::GetBladeSlot));
    EXPECT_TRUE(ReturnsOf<int>(&Record::GetMemorySizeInMB, &Record::GetNumSystemEnclosures));
    EXPECT_TRUE(
        ReturnsOfIndex<unsigned short>(&Record::GetProcessorFamily, &Record::GetProcessorSpeed));
    EXPECT_TRUE(ReturnsOfIndex<int>(&Record::GetSystemEnclosureType));
}

TEST(Record, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Record>);
    EXPECT_FALSE(std::is_copy_assignable_v<Record>);
}

TEST(NewRecord, HasEmptyTexts) {
    const Record record;
    EXPECT_STREQ(record.GetMachineBIOSName(), "");
    EXPECT_STREQ(record.GetMachineBIOSBuildID(), "");
    EXPECT_STREQ(record.GetMachineBIOSLanguage(), "");
    EXPECT_STREQ(record.GetMachineBIOSVersion(), "");
    EXPECT_STREQ(record.GetMachineBIOSDate(), "");
    EXPECT_STREQ(record.GetManufacturer(), "");
    EXPECT_STREQ(record.GetProductName(), "");
    EXPECT_STREQ(record.GetMachineType(), "");
    EXPECT_STREQ(record.GetModelNumber(), "");
    EXPECT_STREQ(record.GetMachineSerialNumber(), "");
    EXPECT_STREQ(record.GetBuses(), "");
    EXPECT_STREQ(record.GetROMDiagnosticsBuild(), "");
    EXPECT_STREQ(record.GetTESKBuild(), "");
    EXPECT_STREQ(record.GetKORUBuild(), "");
}

TEST(NewRecord, CountsNothing) {
    const Record record;
    EXPECT_EQ(record.GetActiveProcessors(), 0);
    EXPECT_EQ(record.GetProcessorSlots(), 0);
    EXPECT_EQ(record.GetMemorySizeInMB(), 0);
    EXPECT_EQ(record.GetNumSystemEnclosures(), 0);
}

TEST(NewRecord, KnowsNoBladeSlot) {
    EXPECT_EQ(Record().GetBladeSlot(), -1);
}

TEST(NewRecord, HasNoUUIDs) {
    const Record record;
    EXPECT_EQ(record.GetUUID(), nullptr);
    EXPECT_EQ(record.GetChassisUUID(), nullptr);
}

TEST(NewRecord, AnswersEveryIndex) {
    const Record record;
    for (const int index : {-1, 0, 1, 31, 32, 255, 256, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(record.GetProcessorFamily(index), 0) << index;
        EXPECT_EQ(record.GetProcessorSpeed(index), 0) << index;
        EXPECT_EQ(record.GetSystemEnclosureType(index), -1) << index;
    }
}

TEST(TextGetters, PointIntoTheRecord) {
    Record record;
    const char* name = record.GetMachineBIOSName();
    record.SetMachineBIOSName("-[AB1234CUS-1.07]-");
    EXPECT_EQ(record.GetMachineBIOSName(), name);
    EXPECT_STREQ(name, "-[AB1234CUS-1.07]-");
}

TEST(MakeBuffer, ReturnsTheBuffer) {
    Record record;
    unsigned char* buffer = record.MakeBuffer();
    ASSERT_NE(buffer, nullptr);
    // All of its 65,535 bytes can be written.
    std::fill_n(buffer, 65535, static_cast<unsigned char>(0xA5));
    EXPECT_EQ(buffer[65534], 0xA5);
}

}  // namespace
