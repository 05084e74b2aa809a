#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace programs {

/// The value of a hexadecimal digit; -1 for any other character.
int hexadecimalDigit(char c);

/// The number at an offset of binary data; bytes beyond its end are zero.
std::uint8_t byteAt(std::string_view data, std::size_t offset);
std::uint16_t littleEndian16(std::string_view data, std::size_t offset);
std::uint32_t littleEndian32(std::string_view data, std::size_t offset);

/// A text of at most @p characters UTF-16 units, up to a zero or the end of the data.
std::string utf8FromUtf16(std::string_view data, std::size_t offset, std::size_t characters);

} // namespace programs
