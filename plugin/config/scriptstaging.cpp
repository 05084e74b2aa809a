#include "plugin/config/scriptstaging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char embeddedScript[] = ":/config/%1";
constexpr char installedScripts[] = "/addons/vyrassistanttool/officeassistant/resource/config/";

constexpr QFile::Permissions runnableByGroup = QFile::ReadOwner | QFile::ExeOwner |
                                               QFile::ReadUser | QFile::ExeUser | QFile::ReadGroup |
                                               QFile::ExeGroup;

} // namespace

QString scriptStagingDirectory()
{
    return suiteTemporaryDirectory() + QStringLiteral("/officeassis_script");
}

QString stagedScript(const QString &name)
{
    QString installed =
        QCoreApplication::applicationDirPath() + QLatin1String(installedScripts) + name;
    if (QFileInfo::exists(installed))
        return installed;
    return stageResource(QLatin1String(embeddedScript).arg(name), name, QString());
}

QString stageResource(const QString &resource, const QString &name, const QString &targetDirectory)
{
    if (!QFile::exists(resource))
        return {};
    QString directory = targetDirectory;
    if (directory.isEmpty()) {
        directory = scriptStagingDirectory();
        makeSuiteTemporaryDirectory();
        QDir().mkdir(directory);
    }
    const QString target = QStringLiteral("%1/%2").arg(directory, name);
    // A copy from an earlier run is used unchanged.
    if (!QFile::exists(target) && !QFile::copy(resource, target))
        return {};
    return QFile::setPermissions(target, runnableByGroup) ? target : QString();
}

} // namespace OfficeAssiant
