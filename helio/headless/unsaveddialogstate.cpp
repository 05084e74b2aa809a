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

namespace helio {

UnsavedDialogState::UnsavedDialogState()
{
    // No file can be made there, so nothing is written.
    keepUserSettingsIn(QStringLiteral("/dev/null"));
}

UnsavedDialogState::~UnsavedDialogState()
{
    keepUserSettingsIn(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}

} // namespace helio
