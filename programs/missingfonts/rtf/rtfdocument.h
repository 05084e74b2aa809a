#pragma once

class QIODevice;

namespace programs {

class FontUsage;

/// Reads the fonts of an RTF document.
/// @throws DocumentError when the document is malformed, too deeply nested or ends too early
void readRtfDocument(QIODevice &file, FontUsage &usage);

} // namespace programs
