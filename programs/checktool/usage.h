#pragma once

#include <QString>

namespace standin {

/// What --help prints.
QString usage();

/// What --list prints: the checks, one a line.
QString listOfChecks();

/// Whether documents are opened by a program of that name.
bool isSuiteProgram(const QString &name);

} // namespace standin
