#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The document path in the page's argument: base64 of UTF-8, up to the first zero byte.
QString decodedDocumentPath(const QString &argument);

/// The fonts that a document needs and this machine lacks, in the suite's own words: lets the
/// suite open the document and waits for it, without a limit. Nothing when the suite cannot tell.
std::optional<QString> missingFonts(const QString &document);

} // namespace OfficeAssiant
