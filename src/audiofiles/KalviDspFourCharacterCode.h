#pragma once

#include <cstdint>

namespace vlk {

// A chunk identifier as the word that FileReader::readUnsignedInt makes of its four bytes in the file, so
// that identifiers are compared as the stored bytes whatever byte order the format's numbers have.
constexpr std::uint32_t fourCharacterCode(const char (&text)[5])
{
    return static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[0])) |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[1])) << 8 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[2])) << 16 |
           static_cast<std::uint32_t>(static_cast<std::uint8_t>(text[3])) << 24;
}

} // namespace vlk
