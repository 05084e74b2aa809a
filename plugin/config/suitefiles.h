#pragma once

#include <QByteArray>
#include <QList>
#include <QSettings>
#include <QString>

namespace OfficeAssiant {

/// The directory in which suite and assistant exchange files. It may not exist.
QString suiteTemporaryDirectory();

/// Makes suiteTemporaryDirectory() for the user alone unless it exists, but not its parent: a
/// missing suite directory stays missing. False if there is no such directory afterwards.
bool makeSuiteTemporaryDirectory();

/// The names of the plain files in a directory, except hidden ones, in the order of the directory.
/// Unlike those of QDir they may be invalid in the locale's encoding.
QList<QByteArray> plainFiles(const QString &directory);

/// Removes these files. Files that cannot be removed stay.
void removePlainFiles(const QString &directory);

/// The suite's environment check tool, which also prints documents.
QString checkToolPath();

/// The suite's settings of the current user.
class SuiteSettings : public QSettings
{
public:
    SuiteSettings();
};

} // namespace OfficeAssiant
