// The hex dump around a structure.
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "smbios/srvinfo.h"

namespace {

std::string DumpOf(const std::vector<unsigned char>& window) {
    SERVER_INFORMATION record;
    testing::internal::CaptureStdout();
    record.DumpData(window.data() + 2);
    return testing::internal::GetCapturedStdout();
}

// clang-format off
constexpr char kAllBytes[] =
    "Dump Data Test Box \n"
    "\n"
    " hex dump\n"
    "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E  _______________      \n"
    "0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D  _______________      \n"
    "1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B 2C  __ !\"#$%&'()*+,      \n"
    "2D 2E 2F 30 31 32 33 34 35 36 37 38 39 3A 3B  -./0123456789:;      \n"
    "3C 3D 3E 3F 40 41 42 43 44 45 46 47 48 49 4A  <=>?@ABCDEFGHIJ      \n"
    "4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57 58 59  KLMNOPQRSTUVWXY      \n"
    "5A 5B 5C 5D 5E 5F 60 61 62 63 64 65 66 67 68  Z[\\]^_`abcdefgh      \n"
    "69 6A 6B 6C 6D 6E 6F 70 71 72 73 74 75 76 77  ijklmnopqrstuvw      \n"
    "78 79 7A 7B 7C 7D 7E 7F 80 81 82 83 84 85 86  xyz{|}~________      \n"
    "87 88 89 8A 8B 8C 8D 8E 8F 90 91 92 93 94 95  _______________      \n"
    "96 97 98 99 9A 9B 9C 9D 9E 9F A0 A1 A2 A3 A4  _______________      \n"
    "A5 A6 A7 A8 A9 AA AB AC AD AE AF B0 B1 B2 B3  _______________      \n"
    "B4 B5 B6 B7 B8 B9 BA BB BC BD BE BF C0 C1 C2  _______________      \n"
    "C3 C4 C5 C6 C7 C8 C9 CA CB CC CD CE CF D0 D1  _______________      \n"
    "D2 D3 D4 D5 D6 D7 D8 D9 DA DB DC DD DE DF E0  _______________      \n"
    "E1 E2 E3 E4 E5 E6 E7 E8 E9 EA EB EC ED EE EF  _______________      \n"
    "F0 F1 F2 F3 F4 F5 F6 F7 F8 F9 FA FB FC FD FE  _______________      \n"
    "FF 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D  _______________      \n"
    "0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C  _______________      \n"
    "1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A 2B  ___ !\"#$%&'()*+      \n"
    "2C 2D 2E 2F 30 31 32 33 34 35 36 37 38 39 3A  ,-./0123456789:      \n"
    "3B 3C 3D 3E 3F 40 41 42 43 44 45 46 47 48 49  ;<=>?@ABCDEFGHI      \n"
    "4A 4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57 58  JKLMNOPQRSTUVWX      \n"
    "59 5A 5B 5C 5D 5E 5F 60 61 62 63 64 65 66 67  YZ[\\]^_`abcdefg      \n"
    "68 69 6A 6B 6C 6D 6E 6F 70 71 72 73 74 75 76  hijklmnopqrstuv      \n"
    "77 78 79 7A 7B 7C 7D 7E 7F 80 81 82 83 84 85  wxyz{|}~_______      \n"
    "86 87 88 89 8A 8B 8C 8D 8E 8F 90 91 92 93 94  _______________      \n"
    "95 96 97 98 99 9A 9B 9C 9D 9E 9F A0 A1 A2 A3  _______________      \n"
    "A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF B0 B1 B2  _______________      \n"
    "B3 B4 B5 B6 B7 B8 B9 BA BB BC BD BE BF C0 C1  _______________      \n"
    "C2 C3 C4 C5 C6 C7 C8 C9 CA CB CC CD CE CF D0  _______________      \n"
    "D1 D2 D3 D4 D5 D6 D7 D8 D9 DA DB DC DD DE DF  _______________      \n"
    "E0 E1 E2 E3 E4 E5 E6 E7 E8 E9 EA EB EC ED EE  _______________      \n"
    "EF F0 F1 F2 F3 F4 F5 F6 F7 F8 F9 FA FB FC FD  _______________      \n"
    "FE FF 00 01 02 03 04 05 06 07 08 09 0A 0B 0C  _______________      \n"
    "0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B  _______________      \n"
    "1C 1D 1E 1F 20 21 22 23 24 25 26 27 28 29 2A  ____ !\"#$%&'()*      \n"
    "2B 2C 2D 2E 2F 30 31 32 33 34 35 36 37 38 39  +,-./0123456789      \n"
    "3A 3B 3C 3D 3E 3F 40 41 42 43 44 45 46 47 48  :;<=>?@ABCDEFGH      \n"
    "49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57  IJKLMNOPQRSTUVW      \n";
// clang-format on

TEST(DumpData, ShowsEveryByteAsDigitsAndAsCharacter) {
    std::vector<unsigned char> window(600);
    std::iota(window.begin(), window.end(), static_cast<unsigned char>(0));
    EXPECT_EQ(DumpOf(window), kAllBytes);
}

TEST(DumpData, BeginsTwoBytesBeforeTheStructure) {
    std::vector<unsigned char> window(600);
    window[0] = 'a';
    window[1] = 'b';
    window[2] = 'c';
    const std::string output = DumpOf(window);
    const std::string line =
        "61 62 63 00 00 00 00 00 00 00 00 00 00 00 00  abc____________      \n";
    EXPECT_EQ(output.substr(output.find("hex dump\n") + 9, line.size()), line);
}

TEST(DumpData, ReadsNoByteBehindTheSixHundredth) {
    // The address sanitizer watches the end of the window.
    std::vector<unsigned char> window(600);
    window[599] = 'z';
    const std::string output = DumpOf(window);
    const std::string line =
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 7A  ______________z      \n";
    EXPECT_EQ(output.substr(output.size() - line.size()), line);
}

}  // namespace
