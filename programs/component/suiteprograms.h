#pragma once

#include <QString>
#include <QStringList>

#include "suites/installation.h"

namespace programs {

/// The programs that shortcuts may name.
const QStringList &suitePrograms();

/// The program directory of an installed suite.
QString suiteProgramDirectory();

/// The path of @p program in @p directory; empty if there is no such executable.
QString installedProgram(const QString &directory, const QString &program);

/// What opens @p documents with another suite's installation, or an empty document of the kind that
/// @p program is for. The suite finds out by itself which of its parts a document needs.
QStringList commandInstead(const suites::Installation &installation, const QString &program,
                           const QStringList &documents);

/// The office suite that is looked after in the place of this one; nothing without any.
std::optional<suites::Installation> suiteInstead();

} // namespace programs
