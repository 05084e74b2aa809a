#include "programs/missingfonts/common/textscripts.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace programs {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
    Script script;
    bool sharedWithEastAsian;
};

/// Sorted. Characters between the ranges use the "high ANSI" font.
constexpr Range ranges[] = {
    {0x0000, 0x007F, AsciiScript, false},
    {0x0080, 0x058F, HighAnsiScript, true},
    {0x0590, 0x08FF, ComplexScript, false},   // Hebrew, Arabic, Syriac, Thaana, N'Ko
    {0x0900, 0x0FFF, ComplexScript, false},   // India, Thai, Lao, Tibetan
    {0x1000, 0x109F, ComplexScript, false},   // Myanmar
    {0x1100, 0x11FF, EastAsianScript, false}, // Hangul letters
    {0x1780, 0x17FF, ComplexScript, false},   // Khmer
    {0x1800, 0x18AF, ComplexScript, false},   // Mongolian
    {0x2000, 0x2BFF, HighAnsiScript, true},
    {0x2E80, 0xA4CF, EastAsianScript, false}, // radicals to Yi
    {0xA960, 0xA97F, EastAsianScript, false},
    {0xAC00, 0xD7FF, EastAsianScript, false},
    {0xE000, 0xEFFF, HighAnsiScript, true}, // private use
    {0xF000, 0xF0FF, SymbolScript, false},
    {0xF100, 0xF8FF, HighAnsiScript, true},
    {0xF900, 0xFAFF, EastAsianScript, false},
    {0xFB1D, 0xFDFF, ComplexScript, false},
    {0xFE30, 0xFE6F, EastAsianScript, false},
    {0xFE70, 0xFEFE, ComplexScript, false},
    {0xFF00, 0xFFEF, EastAsianScript, false},
    // Writers use the East Asian font for every surrogate pair.
    {0x10000, 0x10FFFF, EastAsianScript, false},
};

/// The first of the three UTF-8 bytes of U+4000 to U+9FFF.
constexpr unsigned char firstIdeographLead = 0xE4;
constexpr unsigned char lastIdeographLead = 0xE9;

bool isAscii(const char *text, std::size_t size)
{
    std::uint64_t bits = 0;
    for (; size >= sizeof(bits); text += sizeof(bits), size -= sizeof(bits)) {
        std::uint64_t word;
        std::memcpy(&word, text, sizeof(word));
        bits |= word;
    }
    for (; size > 0; ++text, --size)
        bits |= static_cast<unsigned char>(*text);
    return (bits & 0x8080808080808080U) == 0;
}

/// Removes the first character and returns it; U+FFFD for malformed text.
char32_t takeCharacter(std::string_view &text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80)
        return lead;
    const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < more)
        return 0xFFFD;
    char32_t character = lead & (0x3FU >> more);
    for (std::size_t n = 0; n < more; ++n) {
        const auto byte = static_cast<unsigned char>(text[n]);
        if ((byte & 0xC0U) != 0x80)
            return 0xFFFD;
        character = (character << 6U) | (byte & 0x3FU);
    }
    text.remove_prefix(more);
    return character;
}

} // namespace

Script scriptOf(char32_t character, bool preferEastAsian)
{
    const Range *range = std::lower_bound(std::begin(ranges), std::end(ranges), character,
                                          [](const Range &r, char32_t c) { return r.last < c; });
    if (range == std::end(ranges) || character < range->first)
        return HighAnsiScript;
    return preferEastAsian && range->sharedWithEastAsian ? EastAsianScript : range->script;
}

unsigned scriptsOf(std::string_view text, bool preferEastAsian)
{
    if (text.empty())
        return 0;
    if (isAscii(text.data(), text.size()))
        return AsciiScript;
    unsigned scripts = 0;
    while (!text.empty()) {
        // Most characters are ASCII or ideographs: the short cut makes long texts three times as
        // fast.
        const auto lead = static_cast<unsigned char>(text.front());
        if (lead < 0x80) {
            scripts |= AsciiScript;
            text.remove_prefix(1);
        } else if (lead >= firstIdeographLead && lead <= lastIdeographLead && text.size() >= 3) {
            scripts |= EastAsianScript;
            text.remove_prefix(3);
        } else {
            scripts |= scriptOf(takeCharacter(text), preferEastAsian);
        }
    }
    return scripts;
}

} // namespace programs
