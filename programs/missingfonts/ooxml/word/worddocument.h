#pragma once

#include <string>

namespace programs {

class ArchivePackage;
class FontUsage;
class Relationships;

/// Reads the fonts of a text document that is a package; @p mainPart is its body.
/// @throws DocumentError
void readWordDocument(ArchivePackage &package, const Relationships &relationships,
                      const std::string &mainPart, FontUsage &usage);

} // namespace programs
