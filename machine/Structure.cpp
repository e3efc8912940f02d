// One SMBIOS structure: fields in, bytes out.
#include "machine/Structure.h"

#include <algorithm>

namespace machine {

Structure::Structure(uint8_t type, uint8_t length) : m_formatted(std::max<size_t>(length, 4)) {
    m_formatted[0] = type;
    m_formatted[1] = length;
}

Structure& Structure::Byte(size_t offset, uint8_t value) {
    m_formatted.at(offset) = value;
    return *this;
}

Structure& Structure::Word(size_t offset, uint16_t value) {
    Byte(offset, static_cast<uint8_t>(value));
    return Byte(offset + 1, static_cast<uint8_t>(value >> 8));
}

Structure& Structure::Dword(size_t offset, uint32_t value) {
    Word(offset, static_cast<uint16_t>(value));
    return Word(offset + 2, static_cast<uint16_t>(value >> 16));
}

Structure& Structure::Data(size_t offset, const Bytes& data) {
    for (size_t i = 0; i < data.size(); ++i) {
        Byte(offset + i, data[i]);
    }
    return *this;
}

Structure& Structure::String(size_t offset, const std::string& text) {
    Text(text);
    return Byte(offset, static_cast<uint8_t>(m_strings.size()));
}

Structure& Structure::Text(const std::string& text) {
    m_strings.push_back(text);
    return *this;
}

Bytes Structure::Encode(uint16_t handle) const {
    Bytes bytes = m_formatted;
    bytes[2] = static_cast<uint8_t>(handle);
    bytes[3] = static_cast<uint8_t>(handle >> 8);
    for (const std::string& text : m_strings) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        bytes.push_back(0);
    }
    // An empty set is closed by two NULs, any other by one behind that of its last string.
    bytes.resize(bytes.size() + (m_strings.empty() ? 2 : 1));
    return bytes;
}

}  // namespace machine
