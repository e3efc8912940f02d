// The raw dump against the structure table that dmidecode took from the same memory.
#include <cstdio>
#include <set>
#include <vector>

#include "vm/Answers.h"
#include "vm/StructureTable.h"

namespace {

class RawDump : public vm::OnGuest {};

// One of the window's lines: 15 bytes as digits, then as characters.
std::string Line(const std::vector<unsigned char>& bytes) {
    std::string digits;
    std::string characters = " ";
    for (const unsigned char byte : bytes) {
        char text[4];
        std::snprintf(text, sizeof text, "%02X ", byte);
        digits += text;
        characters += byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '_';
    }
    return digits + characters + "      \n";
}

// The 600 bytes from two before the structure on. Outside the copy every byte is 0.
std::string Window(const std::string& copy, size_t structure) {
    std::string text = "Dump Data Test Box \n\n hex dump\n";
    for (size_t line = 0; line < 40; ++line) {
        std::vector<unsigned char> bytes;
        for (size_t i = 0; i < 15; ++i) {
            const size_t ahead = structure + line * 15 + i;  // two more than the byte's offset
            const bool inside = ahead >= 2 && ahead - 2 < copy.size();
            bytes.push_back(inside ? vm::ByteAt(copy, ahead - 2) : 0);
        }
        text += Line(bytes);
    }
    return text;
}

std::string Dump(const std::string& table, char byteAfterTable) {
    static const std::set<int> decoded = {0, 1, 2, 3, 4, 9, 11, 17};
    std::string text;
    for (const vm::RawStructure& structure : vm::RawStructures(table)) {
        if (decoded.contains(structure.type)) {
            text += "SMBIOS TYPE " + std::to_string(structure.type) + " \n" +
                    Window(table + byteAfterTable, structure.offset);
        }
    }
    return text;
}

// The copy takes in the byte after the table, and what stands there is the firmware's affair: the
// dump must be the one that some value of that byte gives.
TEST_P(RawDump, ShowsEveryDecodedStructureByteForByte) {
    const std::string table = Table();
    const std::string dump = Ran("dump").out;
    for (int byte = 1; byte < 256; ++byte) {
        if (dump == Dump(table, static_cast<char>(byte))) {
            return;
        }
    }
    EXPECT_EQ(dump, Dump(table, '\0'));
}

TEST_P(RawDump, NamesTheTypesInTheOrderOfDmidecode) {
    std::string expected;
    for (const vm::SmbiosStructure& each : Dmidecode()) {
        if (each.type <= 4 || each.type == 9 || each.type == 11 || each.type == 17) {
            expected += "SMBIOS TYPE " + std::to_string(each.type) + " \n";
        }
    }
    const std::string dump = Ran("dump").out;
    std::string named;
    for (size_t at = dump.find("SMBIOS TYPE "); at != std::string::npos;
         at = dump.find("SMBIOS TYPE ", at + 1)) {
        named += dump.substr(at, dump.find('\n', at) + 1 - at);
    }
    EXPECT_EQ(named, expected);
}

TEST_P(RawDump, EndsWithSuccess) {
    EXPECT_EQ(Ran("dump").status, 0);
}

INSTANTIATE_TEST_SUITE_P(Guest, RawDump, vm::EveryGuest(), vm::GuestName);

}  // namespace
