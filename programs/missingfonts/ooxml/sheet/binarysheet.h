#pragma once

namespace programs {

class PackagePart;
struct Workbook;

/// Reads a part of a binary workbook (.xlsb): styles, shared texts, a sheet or its comments. Each
/// of them has record numbers of its own, so one reader serves all.
/// @throws DocumentError
void readBinarySheetPart(PackagePart &part, Workbook &workbook);

} // namespace programs
