#pragma once

#include <QStringList>

namespace standin {

/// Writes the missing families for the page into the INI file of the program of that name: group
/// "vyrtool", key "MissFonts", the names joined with ";". Whatever else is in the file stays. The
/// file is replaced as a whole or not at all.
/// @throws std::runtime_error when it cannot be written
void writeMissingFonts(const QString &suiteHome, const QString &program,
                       const QStringList &families);

} // namespace standin
