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

TEST(ReportWriter, DecimalsOfEveryLength) {
    const auto written = [](int value) {
        return Written("", [&](ReportWriter& w) { w.Item(value, ItemDecimal("K", value)); });
    };
    EXPECT_EQ(written(0), "K.0 = 0\n");
    EXPECT_EQ(written(9), "K.9 = 9\n");
    EXPECT_EQ(written(10), "K.10 = 10\n");
    EXPECT_EQ(written(99), "K.99 = 99\n");
    EXPECT_EQ(written(100), "K.100 = 100\n");
    EXPECT_EQ(written(507), "K.507 = 507\n");
    EXPECT_EQ(written(999), "K.999 = 999\n");
    EXPECT_EQ(written(1000), "K.1000 = 1000\n");
    EXPECT_EQ(written(65535), "K.65535 = 65535\n");
    EXPECT_EQ(written(2147483647), "K.2147483647 = 2147483647\n");
}

TEST(ReportWriter, ItemsCarryTheirIndexOnEachLine) {
    EXPECT_EQ(Written("PCI_",
                      [](ReportWriter& w) {
                          w.Item(0, ItemDecimal("Bus", 7), ItemDecimal("Device", 31));
                          w.Item(65535, ItemDecimal("Bus", -1));
                      }),
              "PCI_Bus.0 = 7\nPCI_Device.0 = 31\nPCI_Bus.65535 = -1\n");
}

TEST(ReportWriter, HexIsInUpperCaseAndFilledWithZeros) {
    EXPECT_EQ(
        Written("",
                [](ReportWriter& w) {
                    w.Item(4, ItemHex<3>("Class", 0x00060400), ItemHex<3>("Class", 0),
                           ItemHex<2>("Vendor", 0x8086), ItemHex<2>("Vendor", 0xabcd),
                           ItemHex<1>("Type", 0x0a));
                }),
        "Class.4 = 060400\nClass.4 = 000000\nVendor.4 = 8086\nVendor.4 = ABCD\nType.4 = 0A\n");
}

TEST(ReportWriter, HexGrowsWithItsNumber) {
    EXPECT_EQ(Written("",
                      [](ReportWriter& w) {
                          w.Item(0, ItemHex<1>("Type", 0x17f), ItemHex<1>("Type", 0xffff),
                                 ItemHex<3>("Class", 0xffffffff));
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
                              w.Item(i, ItemHex<2>("Vendor_ID", 0x8086));
                          }
                      }),
              expected);
}

TEST(ReportWriter, LongestLinesAreWholeWhereverAPieceEnds) {
    constexpr int kLowest = -2147483647 - 1;
    const std::string lines =
        "Prefix__Key_of_39_characters_as_long_as_allowed.-2147483648 = -2147483648\n"
        "Prefix__Key_of_39_characters_which_is_no_longer.-2147483648 = FFFFFFFF\n"
        "Prefix__Key_of_39_characters_as_long_as_allowed = -2147483648\n";
    for (size_t length = 3800; length < 4096; ++length) {
        const std::string text(length, 'x');
        EXPECT_EQ(
            Written("Prefix__",
                    [&](ReportWriter& w) {
                        w.Text("K", text.c_str());
                        w.Item(kLowest,
                               ItemDecimal("Key_of_39_characters_as_long_as_allowed", kLowest),
                               ItemHex<3>("Key_of_39_characters_which_is_no_longer", 0xFFFFFFFF));
                        w.Decimal("Key_of_39_characters_as_long_as_allowed", kLowest);
                    }),
            "Prefix__K = " + text + "\n" + lines)
            << length;
    }
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
