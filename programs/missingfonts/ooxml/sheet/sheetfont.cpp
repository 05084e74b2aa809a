#include "programs/missingfonts/ooxml/sheet/sheetfont.h"

#include "programs/missingfonts/ooxml/drawing/themefonts.h"

namespace standin {

Family SheetFont::resolved(const ThemeFonts &theme) const
{
    return scheme == Scheme::None ? family : theme.collectionFont(scheme == Scheme::Major, family);
}

SheetFont::Scheme sheetFontScheme(const std::string &value)
{
    if (value == "minor")
        return SheetFont::Scheme::Minor;
    return value == "major" ? SheetFont::Scheme::Major : SheetFont::Scheme::None;
}

} // namespace standin
