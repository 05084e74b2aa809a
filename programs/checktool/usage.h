#pragma once

#include <QString>

namespace programs {

/// The output of --help.
QString usage();

/// The output of --list: the names of the checks, one a line.
QString listOfChecks();

/// Whether @p name is a program of the suite that opens documents.
bool isSuiteProgram(const QString &name);

} // namespace programs
