#pragma once

#include <string>

namespace standin {

class ArchivePackage;
class FontUsage;
class Relationships;

/// Reads the fonts of a workbook in the form of a package, be its parts XML or binary.
/// @throws DocumentError
void readWorkbook(ArchivePackage &package, const Relationships &relationships,
                  const std::string &mainPart, FontUsage &usage);

} // namespace standin
