#pragma once

class QIODevice;

namespace standin {

class FontUsage;

/// Reads the fonts of a document in one of the older binary formats. They are those of the
/// document's font table: which of them its text is set in is not looked up.
/// @throws DocumentError also when the document is encrypted or of a format that is not known
void readOleDocument(QIODevice &file, FontUsage &usage);

} // namespace standin
