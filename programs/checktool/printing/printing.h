#pragma once

#include <QString>

namespace programs {

struct Machine;

/// The default time limit of a conversion.
constexpr int printingMs = 120 * 1000;

/// Prints a document to "tmp/NAME.pdf" in the suite's directory, with NAME the part of its file
/// name before the first dot. An installed LibreOffice converts it without a window. An earlier PDF
/// of that name is removed first; the new one appears only when it is complete.
/// @return the path of the PDF
/// @throws std::runtime_error with the reason when there is no PDF
QString printDocument(const Machine &machine, const QString &document, int timeoutMs = printingMs);

} // namespace programs
