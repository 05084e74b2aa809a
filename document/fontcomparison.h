#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The document path in the page's argument: base64 of UTF-8, up to the first zero byte.
QString decodedDocumentPath(const QString &argument);

/// The fonts that a document needs and this machine lacks, as the suite lists them. Lets the suite
/// open the document and waits without a time limit. Nothing if the suite gives no list,
/// or one of more than 16 MiB.
std::optional<QString> missingFonts(const QString &document);

} // namespace OfficeAssiant
