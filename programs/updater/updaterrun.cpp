#include "programs/updater/updaterrun.h"

#include <QSettings>

#include "qtversion/qtversion.h"

namespace programs {

namespace {

const QString defaultPackage = QStringLiteral("office-assistant");
constexpr int defaultTimeoutSeconds = 20;
constexpr int longestTimeoutSeconds = 60;
constexpr int secondsOfADay = 24 * 60 * 60;

int timeoutMs(const UpdaterConfig &config)
{
    bool isNumber = false;
    const int seconds = config.value(QStringLiteral("timeout")).toInt(&isNumber);
    return 1000 * (isNumber ? qBound(1, seconds, longestTimeoutSeconds) : defaultTimeoutSeconds);
}

QString compareVersions(const UpdaterConfig &config, const AskPackage &ask)
{
    if (config.value(QStringLiteral("enabled")) == QLatin1String("false"))
        return QStringLiteral("the check for a newer version is switched off (enabled=false)");
    const QString name = config.value(QStringLiteral("package"), defaultPackage);
    const InstalledPackage package = ask(name, timeoutMs(config));
    if (!package.error.isEmpty())
        return QStringLiteral("the versions cannot be compared: ") + package.error;
    if (package.installed.isEmpty())
        return QStringLiteral("%1 is not installed as a package, so there is nothing to compare")
            .arg(name);
    if (package.candidate.isEmpty() || package.candidate == package.installed)
        return QStringLiteral("%1 %2 is installed, and the package sources offer nothing newer")
            .arg(name, package.installed);
    return QStringLiteral("%1 %2 is installed, and the package sources offer %3; install it with "
                          "\"apt install %1\"")
        .arg(name, package.installed, package.candidate);
}

QString dailyReport(const UpdaterConfig &config, const QDateTime &now)
{
    const QString last = config.value(QStringLiteral("usagecollected"));
    const QDateTime lastTime = QDateTime::fromString(last, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (lastTime.isValid() && lastTime <= now && lastTime.secsTo(now) < secondsOfADay)
        return QStringLiteral("no daily report is due: the last one is of %1").arg(last);
    return QStringLiteral("a daily report is due (the last one: %1), but this updater sends none")
        .arg(last.isEmpty() ? QStringLiteral("never") : last);
}

} // namespace

std::optional<UpdaterTask> taskOf(const QString &option)
{
    static const QMap<QString, UpdaterTask> tasks = {
        {QStringLiteral("/from:manual"), UpdaterTask::ManualCheck},
        {QStringLiteral("/from:lumstart"), UpdaterTask::DailyReport},
        {QStringLiteral("/sendinstallinfo:true"), UpdaterTask::InstallReport},
        {QStringLiteral("/senduninstallinfo:true"), UpdaterTask::UninstallReport},
    };
    const auto found = tasks.find(option);
    return found == tasks.end() ? std::nullopt : std::optional<UpdaterTask>(*found);
}

UpdaterConfig readUpdaterConfig(const QString &path)
{
    QSettings file(path, qtversion::suiteIni());
    file.beginGroup(QStringLiteral("update"));
    UpdaterConfig config;
    const QStringList keys = file.childKeys();
    for (const QString &key : keys)
        config.insert(key, file.value(key).toString());
    return config;
}

QString outcomeOf(UpdaterTask task, const UpdaterConfig &config, const QDateTime &now,
                  const AskPackage &ask)
{
    switch (task) {
    case UpdaterTask::ManualCheck:
        return compareVersions(config, ask);
    case UpdaterTask::DailyReport:
        return dailyReport(config, now);
    case UpdaterTask::InstallReport:
        return QStringLiteral("an install report was asked for, but this updater sends none");
    case UpdaterTask::UninstallReport:
        return QStringLiteral("an uninstall report was asked for, but this updater sends none");
    }
    return {};
}

} // namespace programs
