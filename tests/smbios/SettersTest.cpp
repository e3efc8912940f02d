// The setters that do more than copy: product name, chassis UUID, blade slot, buses, memory.
#include <gtest/gtest.h>

#include <string>

#include "smbios/srvinfo.h"

namespace {

// --- SetProductName -----------------------------------------------------------------------------

std::string ProductNameOf(const char* text) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.SetProductName(text));
    return record.GetProductName();
}

TEST(SetProductName, KeepsWhatStandsBeforeTheBracketedCode) {
    EXPECT_EQ(ProductNameOf("Arlo 2 -[771200X]-"), "Arlo 2 ");
}

TEST(SetProductName, KeepsATextWithoutABracketWhole) {
    EXPECT_EQ(ProductNameOf("Arlo 2"), "Arlo 2");
    EXPECT_EQ(ProductNameOf("Arlo-2 [x] ]-"), "Arlo-2 [x] ]-");
}

TEST(SetProductName, CutsAtTheFirstBracket) {
    EXPECT_EQ(ProductNameOf("Arlo-[1]-[2]-"), "Arlo");
}

TEST(SetProductName, NeedsNoClosingBracket) {
    EXPECT_EQ(ProductNameOf("Arlo 2 -["), "Arlo 2 ");
}

TEST(SetProductName, CodeAloneLeavesNothing) {
    EXPECT_EQ(ProductNameOf("-[771200X]-"), "");
}

TEST(SetProductName, BracketBehindTheRoomOfTheFieldIsNotSeen) {
    const std::string name(126, 'A');
    EXPECT_EQ(ProductNameOf((name + "-[771200X]-").c_str()), name + "-");
    EXPECT_EQ(ProductNameOf((name.substr(1) + "-[771200X]-").c_str()), name.substr(1));
}

// --- SetChassisUUID -----------------------------------------------------------------------------

constexpr char kUUID[] = "0123456789ABCDEF0123456789ABCDEF";

TEST(SetChassisUUID, TakesThe32CharactersBehindTheLabel) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF"));
    EXPECT_STREQ(record.GetChassisUUID(), kUUID);
}

TEST(SetChassisUUID, LabelMayStandAnywhere) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.SetChassisUUID("Chassis UUID:0123456789ABCDEF0123456789ABCDEF"));
    EXPECT_STREQ(record.GetChassisUUID(), kUUID);
}

TEST(SetChassisUUID, TextWithoutTheLabelChangesNothing) {
    SERVER_INFORMATION record;
    EXPECT_FALSE(record.SetChassisUUID("0123456789ABCDEF0123456789ABCDEF"));
    EXPECT_FALSE(record.SetChassisUUID("UUID 0123"));
    EXPECT_FALSE(record.SetChassisUUID("uuid:0123"));
    EXPECT_FALSE(record.SetChassisUUID(""));
    EXPECT_EQ(record.GetChassisUUID(), nullptr);
    record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF");
    EXPECT_FALSE(record.SetChassisUUID("none"));
    EXPECT_STREQ(record.GetChassisUUID(), kUUID);
}

TEST(SetChassisUUID, FurtherCharactersAreLeftOut) {
    SERVER_INFORMATION record;
    record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF89");
    EXPECT_STREQ(record.GetChassisUUID(), kUUID);
}

TEST(SetChassisUUID, CharactersAreNotInspected) {
    SERVER_INFORMATION record;
    record.SetChassisUUID("UUID:no hexadecimal digits, no case \xFF?");
    EXPECT_STREQ(record.GetChassisUUID(), "no hexadecimal digits, no case \xFF");
}

TEST(SetChassisUUID, CopyingStopsAtTheEndOfAShorterText) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.SetChassisUUID("UUID:0123"));
    EXPECT_EQ(std::string(record.GetChassisUUID(), 33), "0123" + std::string(29, '\0'));
    EXPECT_TRUE(record.SetChassisUUID("UUID:"));
    EXPECT_EQ(std::string(record.GetChassisUUID(), 33), std::string(33, '\0'));
}

TEST(SetChassisUUID, LaterOneReplacesTheEarlier) {
    SERVER_INFORMATION record;
    record.SetChassisUUID("UUID:FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF");
    record.SetChassisUUID("UUID:0123456789ABCDEF0123456789ABCDEF");
    EXPECT_STREQ(record.GetChassisUUID(), kUUID);
}

TEST(SetChassisUUID, FirstLabelCounts) {
    SERVER_INFORMATION record;
    record.SetChassisUUID("UUID:UUID:6789ABCDEF0123456789ABCDEF0");
    EXPECT_STREQ(record.GetChassisUUID(), "UUID:6789ABCDEF0123456789ABCDEF0");
}

// --- SetBladeSlot -------------------------------------------------------------------------------

short SlotOf(const char* text) {
    SERVER_INFORMATION record;
    EXPECT_TRUE(record.SetBladeSlot(text));
    return record.GetBladeSlot();
}

TEST(SetBladeSlot, TextWithoutDigitLeavesTheSlotUnknown) {
    EXPECT_EQ(SlotOf(""), -1);
    EXPECT_EQ(SlotOf("Bay"), -1);
}

TEST(SetBladeSlot, TextWithoutDigitLeavesAnEarlierSlot) {
    SERVER_INFORMATION record;
    record.SetBladeSlot("Bay 14");
    EXPECT_TRUE(record.SetBladeSlot("Bay"));
    EXPECT_EQ(record.GetBladeSlot(), 14);
}

TEST(SetBladeSlot, TwoDigitsGiveADecimalNumber) {
    EXPECT_EQ(SlotOf("12"), 12);
    EXPECT_EQ(SlotOf("Bay 14"), 14);
    EXPECT_EQ(SlotOf("99"), 99);
    EXPECT_EQ(SlotOf("10"), 10);
}

TEST(SetBladeSlot, LeadingZeroGivesTheDigitBehindIt) {
    EXPECT_EQ(SlotOf("07"), 7);
    EXPECT_EQ(SlotOf("Slot 03"), 3);
    EXPECT_EQ(SlotOf("00"), 0);
}

TEST(SetBladeSlot, ThirdDigitIsNotRead) {
    EXPECT_EQ(SlotOf("123"), 12);
    EXPECT_EQ(SlotOf("007"), 0);
}

TEST(SetBladeSlot, FirstDigitOfTheTextCounts) {
    EXPECT_EQ(SlotOf("Rack 12 Bay 03"), 12);
}

TEST(SetBladeSlot, LoneFinalDigitCombinesWithTerminator) {
    EXPECT_EQ(SlotOf("5"), 2);
    EXPECT_EQ(SlotOf("Bay 1"), -38);
    EXPECT_EQ(SlotOf("Bay 9"), 42);
    EXPECT_EQ(SlotOf("0"), -48);
}

TEST(SetBladeSlot, NextCharacterIsUsedWhetherOrNotItIsADigit) {
    EXPECT_EQ(SlotOf("5 "), 34);
    EXPECT_EQ(SlotOf("1A"), 27);
    EXPECT_EQ(SlotOf("0A"), 17);
    EXPECT_EQ(SlotOf("3/4"), 29);
}

TEST(SetBladeSlot, NextCharacterCountsAsSigned) {
    EXPECT_EQ(SlotOf("1\xE9"), -61);
    EXPECT_EQ(SlotOf("0\x80"), -176);
}

TEST(SetBladeSlot, EightBitBytesAreNoDigits) {
    EXPECT_EQ(SlotOf("\xB2\xB9 12"), 12);
}

// --- SetBuses -----------------------------------------------------------------------------------

std::string BusesOf(std::initializer_list<const char*> names) {
    SERVER_INFORMATION record;
    for (const char* name : names) {
        EXPECT_TRUE(record.SetBuses(name));
    }
    return record.GetBuses();
}

TEST(SetBuses, FirstNameStandsAlone) {
    EXPECT_EQ(BusesOf({"PCI"}), "PCI");
}

TEST(SetBuses, EachNameIsListedOnceInTheOrderFirstMet) {
    EXPECT_EQ(BusesOf({"PCI", "PCI", "ISA"}), "PCI,ISA");
    EXPECT_EQ(BusesOf({"ISA", "PCI", "AGP", "ISA", "PCI"}), "ISA,PCI,AGP");
}

TEST(SetBuses, NameWithinAListedOneIsNotAdded) {
    EXPECT_EQ(BusesOf({"PCI-66", "PCI"}), "PCI-66");
    EXPECT_EQ(BusesOf({"EISA", "ISA"}), "EISA");
}

TEST(SetBuses, LongerNameIsAddedBehindItsOwnBeginning) {
    EXPECT_EQ(BusesOf({"PCI", "PCI-66"}), "PCI,PCI-66");
}

TEST(SetBuses, ListIsTruncatedToTheRoomOfTheField) {
    const std::string first(250, 'A');
    EXPECT_EQ(BusesOf({std::string(300, 'A').c_str()}), std::string(255, 'A'));
    EXPECT_EQ(BusesOf({first.c_str(), "BCDEFG"}), first + ",BCDE");
    EXPECT_EQ(BusesOf({std::string(255, 'A').c_str(), "B"}), std::string(255, 'A'));
}

// --- SetMemorySizeInMB --------------------------------------------------------------------------

TEST(SetMemorySizeInMB, StoresTheValue) {
    SERVER_INFORMATION record;
    for (const int megabytes : {4096, 0, -1, 2147483647}) {
        EXPECT_TRUE(record.SetMemorySizeInMB(megabytes));
        EXPECT_EQ(record.GetMemorySizeInMB(), megabytes);
    }
}

}  // namespace
