// Writes every machine of the corpus into a folder of its name, below the folder that is given.
#include <cstdio>
#include <exception>
#include <filesystem>

#include "machines/Corpus.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: write_corpus FOLDER\n", stderr);
        return 1;
    }
    try {
        for (const corpus::Machine& machine : corpus::Machines()) {
            machine.description.WriteTo(std::filesystem::path(argv[1]) / machine.name);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "write_corpus: %s\n", error.what());
        return 1;
    }
    return 0;
}
