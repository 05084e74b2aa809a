#include "helio/headless/unsaveddialogstate.h"

#include <QSettings>
#include <QStandardPaths>
#include <QString>

namespace {

void keepUserSettingsIn(const QString &directory)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory);
}

} // namespace

helio::UnsavedDialogState::UnsavedDialogState()
{
    // No file can be made there, so nothing is written.
    keepUserSettingsIn(QStringLiteral("/dev/null"));
}

helio::UnsavedDialogState::~UnsavedDialogState()
{
    keepUserSettingsIn(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}
