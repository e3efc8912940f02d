// Writes the sample server's machine folder: the machine of the first run and of many tests.
#include <cstdio>
#include <exception>
#include <filesystem>

#include "machine/Arlo2.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: sample_server FOLDER\n", stderr);
        return 1;
    }
    try {
        std::filesystem::remove_all(argv[1]);
        machine::Arlo2().WriteTo(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sample_server: %s\n", error.what());
        return 1;
    }
    return 0;
}
