#pragma once

#include <cstdint>
#include <set>
#include <string_view>

#include "programs/missingfonts/ooxml/sheet/sharedstrings.h"
#include "programs/missingfonts/ooxml/sheet/sheetstyles.h"

namespace programs {

/// What the parts of a workbook are read into: the fonts in use, and what cells refer to.
struct Workbook
{
    explicit Workbook(FontUsage &fontUsage)
        : usage(fontUsage), theme(usage), styles(usage), strings(usage, used)
    {
    }

    /// Marks the font of a cell format as used.
    void useFormat(std::size_t format) { used.insert(styles.font(format)); }

    /// Marks the fonts of a page heading as used.
    void useHeading(std::string_view heading);

    /// Passes the fonts in use on to the FontUsage; to be called when all parts have been read.
    void finish();

    FontUsage &usage;
    SheetFonts used;
    /// Fonts that texts of a binary workbook name by number; its styles may come after the texts.
    std::set<std::uint32_t> usedFontNumbers;
    ThemeFonts theme;
    SheetStyles styles;
    SharedStrings strings;
};

} // namespace programs
