#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>

#include <functional>
#include <optional>

#include "programs/updater/installedpackage.h"

namespace standin {

/// What the updater was started for.
enum class UpdaterTask {
    ManualCheck,
    DailyReport,
    InstallReport,
    UninstallReport,
};

/// The task of a switch such as "/from:manual"; nothing for one that is not known.
std::optional<UpdaterTask> taskOf(const QString &option);

/// The group "update" of the configuration.
using UpdaterConfig = QMap<QString, QString>;
UpdaterConfig readUpdaterConfig(const QString &path);

using AskPackage = std::function<InstalledPackage(const QString &package, int timeoutMs)>;

/// Does the task and gives what came of it, for the log. @p ask is asked about the package whose
/// versions are compared.
QString outcomeOf(UpdaterTask task, const UpdaterConfig &config, const QDateTime &now,
                  const AskPackage &ask);

} // namespace standin
