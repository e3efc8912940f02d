// The one word for raw bytes.
#pragma once

#include <cstdint>
#include <vector>

namespace machine {

using Bytes = std::vector<uint8_t>;

}  // namespace machine
