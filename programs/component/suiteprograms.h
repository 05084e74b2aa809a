#pragma once

#include <QString>
#include <QStringList>

namespace standin {

/// The programs that the shortcuts may name.
const QStringList &suitePrograms();

/// Where an installation of the suite has its programs.
QString suiteProgramDirectory();

/// The path of the suite's own program in @p directory; empty when there is none that can be run.
QString installedProgram(const QString &directory, const QString &program);

} // namespace standin
