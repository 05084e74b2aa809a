#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace standin {

/// What stands at an offset of binary data; zero beyond its end.
std::uint8_t byteAt(std::string_view data, std::size_t offset);
std::uint16_t littleEndian16(std::string_view data, std::size_t offset);
std::uint32_t littleEndian32(std::string_view data, std::size_t offset);

/// A text of at most @p characters UTF-16 units; it ends at a zero or with the data.
std::string utf8FromUtf16(std::string_view data, std::size_t offset, std::size_t characters);

} // namespace standin
