// A fuzzer's bytes, taken apart into the numbers and texts that a target needs.
// Never fails: behind the end there are only zeros and empty texts.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace fuzz {

class Input {
  public:
    Input(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    bool IsEmpty() const { return m_size == 0; }

    uint8_t Byte() {
        if (IsEmpty()) {
            return 0;
        }
        --m_size;
        return *m_data++;
    }
    uint16_t Word() {
        const unsigned low = Byte();
        return static_cast<uint16_t>(low | unsigned{Byte()} << 8);
    }
    /// Up to `count` bytes as they stand.
    std::string Take(size_t count) {
        const size_t taken = std::min(count, m_size);
        std::string bytes(reinterpret_cast<const char*>(m_data), taken);
        m_data += taken;
        m_size -= taken;
        return bytes;
    }
    std::string Rest() { return Take(m_size); }
    /// A text without NUL, its length in front: 31 characters at most.
    std::string Text() {
        constexpr size_t kLongest = 31;
        const std::string bytes = Take(Byte() & kLongest);
        return bytes.substr(0, bytes.find('\0'));
    }

  private:
    const uint8_t* m_data;
    size_t m_size;
};

/// Ends the process as a crash, which keeps the input, unless the condition holds.
inline void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "not as it must be: %s\n", what);
        std::abort();
    }
}

inline void RequireEqual(const std::string& actual, const std::string& expected, const char* what) {
    if (actual != expected) {
        std::fprintf(stderr, "%s:\n  actual   \"%s\"\n  expected \"%s\"\n", what, actual.c_str(),
                     expected.c_str());
        std::abort();
    }
}

inline void RequireEqual(long actual, long expected, const char* what) {
    if (actual != expected) {
        std::fprintf(stderr, "%s: actual %ld, expected %ld\n", what, actual, expected);
        std::abort();
    }
}

}  // namespace fuzz

/// What each target defines; the names are libFuzzer's own.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
