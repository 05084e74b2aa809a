#pragma once

#include <QString>

namespace programs {

/// Writes the findings of a check to the file that the environment check reads: the INI file
/// "tmp/vyrEnv.ini" in the suite's directory, group "vyrEnv", key "APPLICATION-CHECK". Other keys
/// stay. The file is replaced as a whole or not at all.
/// @throws std::runtime_error when it cannot be written
void writeAnswer(const QString &suiteHome, const QString &check, const QString &application,
                 const QString &text, int lockMs = 10000);

} // namespace programs
