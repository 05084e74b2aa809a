#pragma once

#include <set>
#include <tuple>

#include "programs/missingfonts/common/fontusage.h"

namespace standin {

class ThemeFonts;

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
    Family resolved(const ThemeFonts &theme) const;

    bool operator<(const SheetFont &other) const
    {
        return std::tie(family, scheme) < std::tie(other.family, other.scheme);
    }
};

using SheetFonts = std::set<SheetFont>;

/// How a "scheme" is written.
SheetFont::Scheme sheetFontScheme(const std::string &value);

} // namespace standin
