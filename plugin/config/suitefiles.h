#pragma once

#include <QSettings>
#include <QString>

namespace OfficeAssiant {

/// The directory in which suite and assistant exchange files. It may not exist.
QString suiteTemporaryDirectory();

/// Makes suiteTemporaryDirectory() unless it exists, but not its parent: a missing suite directory
/// stays missing. False if there is no such directory afterwards.
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
