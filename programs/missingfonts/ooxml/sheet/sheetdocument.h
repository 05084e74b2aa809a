#pragma once

#include <string>

namespace programs {

class ArchivePackage;
class FontUsage;
class Relationships;

/// Reads the fonts of a workbook that is a package, with XML or binary parts.
/// @throws DocumentError
void readWorkbook(ArchivePackage &package, const Relationships &relationships,
                  const std::string &mainPart, FontUsage &usage);

} // namespace programs
