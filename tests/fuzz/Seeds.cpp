// Writes the tables that the table walk's fuzzing starts from: a whole server, and each damage
// that real firmware has shown, one file each.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>

#include "fuzz/TableInput.h"
#include "machine/Arlo2.h"

namespace {

using machine::Bytes;
using machine::MachineBuilder;
using machine::Structure;

using fuzz::kEndOfArea;
using fuzz::kLegacyAnchor;
using fuzz::kRawArea;

struct Seed {
    const char* name;
    Bytes table;
    uint16_t count = 100;
    uint8_t flags = 0;
    uint8_t paragraph = 0;
    uint16_t inPage = 0;
    std::optional<uint16_t> length = {};  // the table's own unless it lies
};

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes Repeated(const Bytes& bytes, int count) {
    Bytes all;
    for (int i = 0; i < count; ++i) {
        all = all + bytes;
    }
    return all;
}

Bytes FirstBytes(Bytes bytes, size_t count) {
    bytes.resize(count);
    return bytes;
}

Bytes Enclosure() {
    return Structure(3, 0x0D).String(0x04, "QEV").Byte(0x05, 0x17).Encode(7);
}

Bytes BIOS() {
    return Structure(0, 0x18).String(0x04, "QEV").String(0x05, "-[AB1234CUS-1.07]-").Encode(1);
}

/// A raw structure header, which need not be followed by what it announces.
Bytes Header(uint8_t type, uint8_t length) {
    return {type, length, 0, 0};
}

std::vector<Seed> Seeds() {
    const Bytes server = machine::Arlo2().EncodeTable();
    const auto whole = static_cast<uint16_t>(server.size());
    const Bytes end = Structure(127, 4).Encode(9);
    return {
        {"server", server},
        {"server-legacy", server, 100, kLegacyAnchor},
        {"server-across-pages", server, 100, 0, 0, 0xFF0},
        {"entry-point-in-last-paragraph", server, 100, kEndOfArea, 2},
        {"legacy-in-last-paragraph", server, 100, kEndOfArea | kLegacyAnchor, 1},
        {"raw-area", Bytes(32, '_') + server, 100, kRawArea},
        {"count-too-small", server, 3},
        {"count-of-zero", server, 0},
        {"count-too-large", FirstBytes(server, server.size() - end.size()), 1000},
        {"no-end-marker", BIOS() + Enclosure(), 2},
        {"zero-length-structure", BIOS() + Header(5, 0) + Enclosure() + end},
        {"cut-in-memory", server, 100, 0, 0, 0, static_cast<uint16_t>(whole / 2)},
        {"cut-in-a-string", BIOS() + Bytes{1, 27, 0, 0, 1, 2} + Bytes(21, 1) + Bytes(9, 'x')},
        {"tail-of-zeros", BIOS() + Bytes(3000, 0)},
        {"structure-shorter-than-its-fields", BIOS() + Header(4, 4) + Bytes(2, 0) + end},
        {"string-numbers-out-of-range",
         Structure(1, 0x1B).Data(4, {9, 200, 255, 77}).Text("only one").Encode(1) + end},
        {"unterminated-strings", Header(11, 5) + Bytes{3} + Bytes(400, 'a')},
        {"620-structures", BIOS() + Repeated(Enclosure(), 620) + end, 622},
        {"duplicate-handles", BIOS() + Repeated(Enclosure(), 3) + end},
        {"8-bit-strings",
         Structure(1, 0x1B).String(4, "\xC4\x80\xFF").String(5, "\x01\x1B[31m").Encode(1) + end},
        {"length-of-128", BIOS() + Header(6, 128) + Bytes(130, 0) + end},
        {"length-of-255", BIOS() + Header(9, 255) + Bytes(260, 0) + end},
        {"backward-steps", BIOS() + Bytes(120, 'q') + Header(4, 0x90) + Bytes(60, 0)},
        {"length-of-zero-announced", server, 100, 0, 0, 0, uint16_t{0}},
        {"length-of-65535-announced", server, 100, 0, 0, 0, uint16_t{65535}},
        {"64-kilobytes-of-strings", BIOS() + Header(11, 5) + Bytes{1} + Bytes(65000, 'D')},
        {"empty", {}},
    };
}

Bytes Encoded(const Seed& seed) {
    const size_t length = seed.length.value_or(static_cast<uint16_t>(seed.table.size()));
    Bytes bytes;
    for (const size_t number : {length, size_t{seed.count}, size_t{seed.inPage}}) {
        bytes.push_back(static_cast<uint8_t>(number));
        bytes.push_back(static_cast<uint8_t>(number >> 8));
    }
    bytes.push_back(seed.flags);
    bytes.push_back(seed.paragraph);
    return bytes + seed.table;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    for (const Seed& seed : Seeds()) {
        const Bytes bytes = Encoded(seed);
        std::ofstream file(folder / seed.name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            std::cerr << "cannot write " << folder / seed.name << '\n';
            return 1;
        }
    }
    return 0;
}
