#pragma once

#include <string>

namespace programs {

class ArchivePackage;
class FontUsage;
class Relationships;

/// Reads the fonts of a presentation that is a package.
/// @throws DocumentError
void readPresentation(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage);

} // namespace programs
