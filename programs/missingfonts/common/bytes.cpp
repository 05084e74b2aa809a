#include "programs/missingfonts/common/bytes.h"

#include <QString>

namespace programs {

int hexadecimalDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::uint8_t byteAt(std::string_view data, std::size_t offset)
{
    return offset < data.size() ? static_cast<std::uint8_t>(data[offset]) : std::uint8_t(0);
}

std::uint16_t littleEndian16(std::string_view data, std::size_t offset)
{
    return static_cast<std::uint16_t>(byteAt(data, offset) | byteAt(data, offset + 1) << 8);
}

std::uint32_t littleEndian32(std::string_view data, std::size_t offset)
{
    return littleEndian16(data, offset) |
           static_cast<std::uint32_t>(littleEndian16(data, offset + 2)) << 16;
}

std::string utf8FromUtf16(std::string_view data, std::size_t offset, std::size_t characters)
{
    QString text;
    for (std::size_t n = 0; n < characters && offset + 2 * n + 1 < data.size(); ++n) {
        const std::uint16_t unit = littleEndian16(data, offset + 2 * n);
        if (unit == 0)
            break;
        text += QChar(unit);
    }
    return text.toStdString();
}

} // namespace programs
