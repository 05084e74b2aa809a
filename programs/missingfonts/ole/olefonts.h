#pragma once

#include <string>

namespace standin {

class CompoundFile;
class FontUsage;

/// The table of fonts of a text document (.doc).
/// @throws DocumentError also when the document is encrypted or too old
void readTextFontTable(CompoundFile &file, const std::string &stream, FontUsage &usage);

/// The font records of a workbook (.xls).
/// @throws DocumentError also when the workbook is encrypted or too old
void readSheetFontRecords(CompoundFile &file, const std::string &stream, FontUsage &usage);

/// The font collection of a presentation (.ppt), without the fonts that it carries itself.
/// @throws DocumentError also when the presentation is encrypted
void readPresentationFonts(CompoundFile &file, const std::string &stream, FontUsage &usage);

} // namespace standin
