#pragma once

#include <QString>
#include <QStringList>

namespace programs {

/// The programs that shortcuts may name.
const QStringList &suitePrograms();

/// The program directory of an installed suite.
QString suiteProgramDirectory();

/// The path of @p program in @p directory; empty if there is no such executable.
QString installedProgram(const QString &directory, const QString &program);

} // namespace programs
