#pragma once

class QIODevice;

namespace programs {

class FontUsage;

/// Reads the font table of a document in one of the older binary formats; every font in it counts
/// as used.
/// @throws DocumentError also when the document is encrypted or its format is unknown
void readOleDocument(QIODevice &file, FontUsage &usage);

} // namespace programs
