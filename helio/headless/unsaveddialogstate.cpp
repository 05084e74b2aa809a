#include "helio/headless/unsaveddialogstate.h"

#include <QSettings>
#include <QStandardPaths>
#include <QString>

namespace {

/// Where no file can be made, so that nothing is written.
const QString noDirectory = QStringLiteral("/dev/null");

void keepUserSettingsIn(const QString &directory)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory);
}

} // namespace

helio::UnsavedDialogState::UnsavedDialogState()
{
    keepUserSettingsIn(noDirectory);
}

helio::UnsavedDialogState::~UnsavedDialogState()
{
    keepUserSettingsIn(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}
