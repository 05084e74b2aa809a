#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>

#include <functional>
#include <optional>

#include "programs/updater/installedpackage.h"

namespace programs {

/// The task that the updater was started for.
enum class UpdaterTask {
    ManualCheck,
    DailyReport,
    InstallReport,
    UninstallReport,
};

/// The task of an option such as "/from:manual"; none for an unknown option.
std::optional<UpdaterTask> taskOf(const QString &option);

/// Keys and values of the group "update" in the configuration.
using UpdaterConfig = QMap<QString, QString>;
UpdaterConfig readUpdaterConfig(const QString &path);

using AskPackage = std::function<InstalledPackage(const QString &package, int timeoutMs)>;

/// Does the task and returns the outcome for the log. @p ask looks up the versions of the package.
QString outcomeOf(UpdaterTask task, const UpdaterConfig &config, const QDateTime &now,
                  const AskPackage &ask);

} // namespace programs
