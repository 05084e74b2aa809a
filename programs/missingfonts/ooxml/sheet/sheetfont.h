#pragma once

#include <set>
#include <string_view>
#include <tuple>

#include "programs/missingfonts/ooxml/drawing/themefonts.h"

namespace programs {

/// A font as a spreadsheet names it: the family that its writer saw, and which font of the theme
/// that was.
struct SheetFont
{
    enum class Scheme {
        None,
        Minor,
        Major
    };

    Family family = noFamily;
    Scheme scheme = Scheme::None;

    /// The family that is meant. The writer's own choice among a theme's fonts for several
    /// languages holds; otherwise a font of the theme is the theme's Latin one.
    Family resolved(const ThemeFonts &theme) const
    {
        return scheme == Scheme::None ? family
                                      : theme.collectionFont(scheme == Scheme::Major, family);
    }

    bool operator<(const SheetFont &other) const
    {
        return std::tie(family, scheme) < std::tie(other.family, other.scheme);
    }
};

using SheetFonts = std::set<SheetFont>;

/// Reads the value of a "scheme" element.
inline SheetFont::Scheme sheetFontScheme(std::string_view value)
{
    if (value == "minor")
        return SheetFont::Scheme::Minor;
    return value == "major" ? SheetFont::Scheme::Major : SheetFont::Scheme::None;
}

} // namespace programs
