#pragma once

#include <set>
#include <string>
#include <string_view>

namespace standin {

/// The fonts of a heading or footing of a workbook's printed pages.
struct HeadingFonts
{
    std::set<std::string> families;
    /// Whether some of it is set in the font of the workbook.
    bool usesWorkbookFont = false;
};

/// Reads a heading as a spreadsheet writes it: text with codes, of which &"Family,Style" begins
/// another font.
HeadingFonts headingFonts(std::string_view heading);

} // namespace standin
