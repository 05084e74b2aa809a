#pragma once

#include <cstdint>
#include <set>

#include "programs/missingfonts/ooxml/sheet/sheetfont.h"

namespace standin {

class PackagePart;
class SharedStrings;
class SheetStyles;

/// What the parts of a binary workbook are read into.
struct BinarySheetTarget
{
    FontUsage &usage;
    SheetFonts &used;
    SheetStyles &styles;
    SharedStrings &strings;
    /// Fonts that texts name by their numbers; the styles may stand behind the texts.
    std::set<std::uint32_t> &usedFontNumbers;
};

/// Reads a part of a binary workbook (.xlsb): styles, shared texts, a sheet or its comments. The
/// records of each have numbers of their own, so that all are read alike.
/// @throws DocumentError
void readBinarySheetPart(PackagePart &part, const BinarySheetTarget &target);

} // namespace standin
