#pragma once

#include <QString>

namespace programs {

/// The suite's directory of the user: $HELIO_SUITE_HOME, else "suiteHome" of the helio.ini beside
/// the program, else ~/.local/share/Orvane. The shell looks for it in the same way.
QString suiteHome();

/// The directory below it in which the suite's programs leave files for the assistant.
QString answerDirectory(const QString &suiteHome);

} // namespace programs
