// copy_within ROOM COUNT: copies COUNT bytes into an allocation of ROOM, whatever the two are.
// The compiler knows neither, so that fortification of level 3 alone sees an overflow.
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    constexpr char kSource[64] = "copied";
    const size_t room = std::strtoul(argv[1], nullptr, 10);
    const size_t count = std::strtoul(argv[2], nullptr, 10);
    char* const memory = static_cast<char*>(std::malloc(room));
    std::memcpy(memory, kSource, count);
    std::puts(memory);
    std::free(memory);
}
