#pragma once

#include <QString>

namespace standin {

struct Machine;

/// How long the conversion of a document may take unless a test says otherwise.
constexpr int printingMs = 120 * 1000;

/// Prints a document to the PDF file "tmp/NAME.pdf" of the suite's directory, NAME being the part
/// of its file name before the first dot, by the headless conversion of an installed office suite.
/// An earlier PDF of that name is gone from the beginning; the new one appears as a whole.
/// @return the path of the PDF
/// @throws std::runtime_error when there is no PDF, with the reason
QString printDocument(const Machine &machine, const QString &document, int timeoutMs = printingMs);

} // namespace standin
