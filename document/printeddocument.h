#pragma once

#include <QString>

namespace OfficeAssiant {

/// Lets the suite print a document to a PDF file, waits without a time limit, and returns the PDF's
/// path. Empty if no component opens such a document or there is no PDF, not even an earlier one.
QString printToPdf(const QString &document);

/// Starts the desktop's viewer for a PDF.
void showPdf(const QString &pdf);

} // namespace OfficeAssiant
