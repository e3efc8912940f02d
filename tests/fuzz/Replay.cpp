// Runs a target over every file of the folders named: the corpus as a plain test.
// Fails when a folder is missing or when there was nothing to run.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/Input.h"

namespace {

void RunFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    // A crash names its input by being the last line.
    std::fprintf(stderr, "%s, %zu bytes\n", file.c_str(), bytes.size());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            RunFile(entry.path());
            ++count;
        }
    }
    std::fprintf(stderr, "%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
