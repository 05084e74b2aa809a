#pragma once

#include <QStringList>

namespace programs {

/// Writes the missing families for the page into the INI file of @p program: group "vyrtool", key
/// "MissFonts", the names joined with ";". Other content of the file is kept. The file is replaced
/// as a whole or not at all.
/// @throws std::runtime_error when it cannot be written
void writeMissingFonts(const QString &suiteHome, const QString &program,
                       const QStringList &families);

} // namespace programs
