#pragma once

#include <QStringList>

namespace standin {

/// The suite's directory of the user: $HELIO_SUITE_HOME, else "suiteHome" of the helio.ini beside
/// the program, else ~/.local/share/Orvane. The shell looks for it in the same way.
QString suiteHome();

/// Writes the missing families for the page into the INI file of the program of that name: group
/// "vyrtool", key "MissFonts", the names joined with ";". Whatever else is in the file stays. The
/// file is replaced as a whole or not at all.
/// @throws std::runtime_error when it cannot be written
void writeMissingFonts(const QString &suiteHome, const QString &program,
                       const QStringList &families);

} // namespace standin
