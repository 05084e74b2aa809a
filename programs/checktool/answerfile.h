#pragma once

#include <QString>

namespace standin {

/// Writes what a check has found to where the environment check reads it: the INI file
/// "tmp/vyrEnv.ini" of the suite's directory, group "vyrEnv", the program's name before the
/// check's. Whatever else is in the file stays. It is replaced as a whole or not at all.
/// @throws std::runtime_error when it cannot be written
void writeAnswer(const QString &suiteHome, const QString &check, const QString &application,
                 const QString &text, int lockMs = 10000);

} // namespace standin
