#pragma once

#include <QString>

namespace OfficeAssiant {

/// Lets the suite print a document to a PDF file, waits for it without a limit, and gives the
/// PDF's path. Null when no component opens such a document or there is no PDF; one that was left
/// from an earlier print counts.
QString printToPdf(const QString &document);

/// Starts the desktop's viewer for a PDF.
void showPdf(const QString &pdf);

} // namespace OfficeAssiant
