#pragma once

#include <string_view>

namespace programs {

/// The kinds of characters for which a document names a font each.
enum Script : unsigned {
    AsciiScript = 1,
    HighAnsiScript = 2,
    EastAsianScript = 4,
    ComplexScript = 8,
    SymbolScript = 16 ///< characters of symbol fonts, in the private use area
};

/// The kind of a character. @p preferEastAsian: the writer's "hint" that characters which Latin and
/// East Asian fonts share are East Asian.
Script scriptOf(char32_t character, bool preferEastAsian = false);

/// The kinds of characters in a piece of UTF-8 text, as Script bits.
unsigned scriptsOf(std::string_view text, bool preferEastAsian = false);

} // namespace programs
