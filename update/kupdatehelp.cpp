#include "update/kupdatehelp.h"

#include <QFile>
#include <QSettings>

#include "host/krt.h"
#include "host/vyrupdate_linux.h"
#include "plugin/config/suitefiles.h"
#include "qtversion/qtversion.h"
#include "update/configfile.h"
#include "update/logtext.h"

namespace OfficeAssiant {

namespace {

constexpr char updaterName[] = "vyrupdate";
constexpr char logName[] = "/vyrupdate.log";
constexpr char configGroup[] = "update";
constexpr char manualCheckOption[] = "/from:manual";
/// As at the suite's start, when the updater checks whether its daily report is due.
constexpr char suiteStartOption[] = "/from:lumstart";
constexpr char uninstallReportOption[] = "/senduninstallinfo:true";
constexpr char installReportOption[] = "/sendinstallinfo:true";
constexpr char lastReportKey[] = "usagecollected";
/// Long enough ago for a report to be due; readers of the configuration know this exact date.
constexpr char longAgo[] = "2018-11-14 15:10:19";

} // namespace

KUpdateHelp::KUpdateHelp(const QString &updaterDirectory, const QString &logDirectory,
                         QObject *parent)
    : QObject(parent), m_updaterDirectory(updaterDirectory), m_logDirectory(logDirectory)
{
}

KUpdateHelp::~KUpdateHelp() = default;

bool KUpdateHelp::isUpdateSupported() const
{
    return QFile::exists(updater()) && QFile::exists(configFile());
}

std::optional<QJsonObject> KUpdateHelp::readConfig() const
{
    if (!QFile::exists(configFile()))
        return std::nullopt;
    recoverConfig(configFile());
    QSettings settings(configFile(), qtversion::suiteIni());
    settings.beginGroup(QLatin1String(configGroup));
    QJsonObject values;
    const QStringList keys = settings.childKeys();
    // QSettings reads a value with commas as a list, which has no text and shows as empty.
    for (const QString &key : keys)
        values.insert(key, settings.value(key).toString());
    return values;
}

void KUpdateHelp::setConfigValue(const QString &key, const QString &value) const
{
    storeText(configFile(), {QLatin1String(configGroup), key, value});
}

std::optional<QString> KUpdateHelp::readLog() const
{
    return readLogText(m_logDirectory + QLatin1String(logName));
}

void KUpdateHelp::clearLogDirectory() const
{
    removePlainFiles(m_logDirectory);
}

void KUpdateHelp::startManualCheck() const
{
    launch(QLatin1String(manualCheckOption));
}

void KUpdateHelp::startDailyReport() const
{
    if (!QFile::exists(configFile()))
        return;
    // The updater is to find the earlier date when it starts.
    launch(QLatin1String(suiteStartOption));
    setConfigValue(QLatin1String(lastReportKey), QLatin1String(longAgo));
}

void KUpdateHelp::startUninstallReport() const
{
    launch(QLatin1String(uninstallReportOption));
}

void KUpdateHelp::startInstallReport() const
{
    launch(QLatin1String(installReportOption));
}

QString KUpdateHelp::updater() const
{
    return m_updaterDirectory + QLatin1String(updaterName);
}

QString KUpdateHelp::configFile() const
{
    return vyrupdate_linux::getUpdateCfgPath(m_updaterDirectory);
}

void KUpdateHelp::launch(const QString &option) const
{
    recoverConfig(configFile());
    krt::ksafe::KProcess::StartDetach(updater(), {option}, QString(), nullptr);
}

} // namespace OfficeAssiant
