#include "programs/missingfonts/xml/xmltext.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "programs/missingfonts/common/documenterror.h"

namespace programs {

namespace {

constexpr std::size_t longestEntity = 16;

void appendCharacter(std::string &target, std::uint32_t character)
{
    constexpr std::uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    const int more = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    target += static_cast<char>(leads[more] | (character >> (6 * more)));
    for (int n = more - 1; n >= 0; --n)
        target += static_cast<char>(0x80U | ((character >> (6 * n)) & 0x3FU));
}

bool isCharacter(std::uint32_t value)
{
    return (value >= 0x20 && value < 0xD800) || (value >= 0xE000 && value <= 0x10FFFF) ||
           value == '\t' || value == '\n' || value == '\r';
}

/// @p number is what "&#" and ";" enclose.
std::uint32_t numberedCharacter(std::string_view number)
{
    const bool hexadecimal = !number.empty() && number.front() == 'x';
    if (hexadecimal)
        number.remove_prefix(1);
    std::uint32_t value = 0;
    const char *end = number.data() + number.size();
    const auto result = std::from_chars(number.data(), end, value, hexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end || !isCharacter(value))
        throw DocumentError("a part has a malformed character number");
    return value;
}

std::uint32_t namedCharacter(std::string_view name)
{
    constexpr std::pair<std::string_view, char> entities[] = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto &[known, character] : entities) {
        if (name == known)
            return static_cast<std::uint32_t>(character);
    }
    throw DocumentError("a part uses an XML entity, which documents of this kind must not");
}

} // namespace

void appendXmlText(std::string &target, std::string_view text)
{
    while (true) {
        const std::size_t ampersand = text.find('&');
        target.append(text.substr(0, ampersand));
        if (ampersand == std::string_view::npos)
            return;
        text.remove_prefix(ampersand + 1);
        const std::size_t end = text.substr(0, longestEntity).find(';');
        if (end == std::string_view::npos || end == 0)
            throw DocumentError("a part has a malformed XML entity");
        const std::string_view name = text.substr(0, end);
        appendCharacter(target, name.front() == '#' ? numberedCharacter(name.substr(1))
                                                    : namedCharacter(name));
        text.remove_prefix(end + 1);
    }
}

std::size_t safeTextCut(std::string_view text)
{
    const std::size_t tail = text.size() - std::min(text.size(), longestEntity + 2);
    const std::size_t ampersand = text.rfind('&');
    if (ampersand != std::string_view::npos && ampersand >= tail &&
        text.find(';', ampersand) == std::string_view::npos)
        return ampersand;
    std::size_t cut = text.size();
    while (cut > tail && (static_cast<unsigned char>(text[cut - 1]) & 0xC0U) == 0x80)
        --cut;
    if (cut > tail && (static_cast<unsigned char>(text[cut - 1]) & 0x80U) != 0)
        --cut;
    return cut;
}

} // namespace programs
