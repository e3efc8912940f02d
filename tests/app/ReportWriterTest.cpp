// The lines of a report: how keys, indexes, texts and numbers look, and how long lines leave.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "app/ReportWriter.h"

namespace {

/// What reaches standard output.
std::string Written(const char* prefix, const std::function<void(ReportWriter&)>& write) {
    testing::internal::CaptureStdout();
    {
        ReportWriter writer(prefix);
        write(writer);
    }
    return testing::internal::GetCapturedStdout();
}

TEST(ReportWriter, TextStandsBehindPrefixAndKey) {
    EXPECT_EQ(Written("", [](ReportWriter& w) { w.Text("Key", "a value"); }), "Key = a value\n");
    EXPECT_EQ(Written("System_", [](ReportWriter& w) { w.Text("Key", ""); }), "System_Key = \n");
}

TEST(ReportWriter, PrefixMayFillItsRoom) {
    EXPECT_EQ(Written("Eight_8_", [](ReportWriter& w) { w.Text("Key", "v"); }),
              "Eight_8_Key = v\n");
}

TEST(ReportWriter, AbsentValueLeavesTheKey) {
    EXPECT_EQ(Written("PCI_", [](ReportWriter& w) { w.Absent("Key"); }), "PCI_Key = \n");
}

TEST(ReportWriter, DecimalHasItsSignAndNoZeros) {
    EXPECT_EQ(Written("",
                      [](ReportWriter& w) {
                          w.Decimal("Key", 0);
                          w.Decimal("Key", -32768);
                          w.Decimal("Key", 2147483647);
                          w.Decimal("Key", -2147483647 - 1);
                      }),
              "Key = 0\nKey = -32768\nKey = 2147483647\nKey = -2147483648\n");
}

TEST(ReportWriter, DecimalOfTwoDigitsFillsWithAZero) {
    EXPECT_EQ(Written("",
                      [](ReportWriter& w) {
                          w.TwoDigits("Slot", 0);
                          w.TwoDigits("Slot", 3);
                          w.TwoDigits("Slot", 9);
                          w.TwoDigits("Slot", 10);
                          w.TwoDigits("Slot", 110);
                      }),
              "Slot = 00\nSlot = 03\nSlot = 09\nSlot = 10\nSlot = 110\n");
}

TEST(ReportWriter, ItemsCarryTheirIndex) {
    EXPECT_EQ(Written("PCI_",
                      [](ReportWriter& w) {
                          w.SelectItem(0);
                          w.ItemDecimal("Bus", 7);
                          w.ItemDecimal("Device", 31);
                          w.SelectItem(65535);
                          w.ItemDecimal("Bus", -1);
                          w.SelectItem(2147483647);
                          w.ItemDecimal("Bus", 255);
                      }),
              "PCI_Bus.0 = 7\nPCI_Device.0 = 31\nPCI_Bus.65535 = -1\nPCI_Bus.2147483647 = 255\n");
}

TEST(ReportWriter, HexIsInUpperCaseAndFilledWithZeros) {
    EXPECT_EQ(
        Written("",
                [](ReportWriter& w) {
                    w.SelectItem(4);
                    w.ItemHex<3>("Class", 0x00060400);
                    w.ItemHex<3>("Class", 0);
                    w.ItemHex<2>("Vendor", 0x8086);
                    w.ItemHex<2>("Vendor", 0xabcd);
                    w.ItemHex<1>("Type", 0x0a);
                }),
        "Class.4 = 060400\nClass.4 = 000000\nVendor.4 = 8086\nVendor.4 = ABCD\nType.4 = 0A\n");
}

TEST(ReportWriter, HexGrowsWithItsNumber) {
    EXPECT_EQ(Written("",
                      [](ReportWriter& w) {
                          w.SelectItem(0);
                          w.ItemHex<1>("Type", 0x17f);
                          w.ItemHex<1>("Type", 0xffff);
                          w.ItemHex<3>("Class", 0xffffffff);
                      }),
              "Type.0 = 17F\nType.0 = FFFF\nClass.0 = FFFFFFFF\n");
}

TEST(ReportWriter, ManyLinesLeaveWhole) {
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        expected += "PCI_Vendor_ID." + std::to_string(i) + " = 8086\n";
    }
    EXPECT_EQ(Written("PCI_",
                      [](ReportWriter& w) {
                          for (int i = 0; i < 1000; ++i) {
                              w.SelectItem(i);
                              w.ItemHex<2>("Vendor_ID", 0x8086);
                          }
                      }),
              expected);
}

TEST(ReportWriter, TextsOfEveryLengthLeaveWhole) {
    for (size_t length : {100U, 4080U, 4088U, 4089U, 4090U, 4095U, 4096U, 4097U, 10'000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(Written("",
                          [&](ReportWriter& w) {
                              w.Text("Key", text.c_str());
                              w.Text("Next", "v");
                          }),
                  "Key = " + text + "\nNext = v\n")
            << length;
    }
}

}  // namespace
