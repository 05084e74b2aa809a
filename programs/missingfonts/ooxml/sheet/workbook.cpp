#include "programs/missingfonts/ooxml/sheet/workbook.h"

#include "programs/missingfonts/ooxml/sheet/pageheading.h"

namespace standin {

void Workbook::useHeading(std::string_view heading)
{
    const HeadingFonts fonts = headingFonts(heading);
    for (const std::string &family : fonts.families)
        usage.use(usage.family(family));
    if (fonts.usesWorkbookFont)
        useFormat(0);
}

void Workbook::finish()
{
    for (const std::uint32_t number : usedFontNumbers)
        used.insert(styles.fontByNumber(number));
    for (const SheetFont &font : used)
        usage.use(font.resolved(theme));
}

} // namespace standin
