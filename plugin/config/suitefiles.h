#pragma once

#include <QSettings>
#include <QString>

namespace OfficeAssiant {

/// The directory through which suite and assistant exchange files. Nobody promises that it is
/// there.
QString suiteTemporaryDirectory();

/// Makes suiteTemporaryDirectory() unless it is there, and nothing above it: a suite directory that
/// is missing altogether stays missing. False when there is no such directory then.
bool makeSuiteTemporaryDirectory();

/// The suite's environment check tool, which also prints documents.
QString checkToolPath();

/// The suite's settings of the current user.
class SuiteSettings : public QSettings
{
public:
    SuiteSettings();
};

} // namespace OfficeAssiant
