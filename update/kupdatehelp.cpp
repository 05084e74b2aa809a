#include "update/kupdatehelp.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include "host/krt.h"
#include "host/vyrupdate_linux.h"
#include "plugin/config/suitefiles.h"
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

/// The updater's configuration, ready for the keys of its update group.
class UpdateSettings : public QSettings
{
public:
    explicit UpdateSettings(const QString &file) : QSettings(file, QSettings::IniFormat)
    {
        // Written in place only if the directory is not writable, as in an installation where the
        // user owns just the file: on a full disk, writing in place would destroy the content.
        const QFileInfo directory(QFileInfo(QFileInfo(file).canonicalFilePath()).path());
        setAtomicSyncRequired(directory.isWritable());
        beginGroup(QLatin1String(configGroup));
    }
};

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
    const UpdateSettings settings(configFile());
    QJsonObject values;
    const QStringList keys = settings.childKeys();
    // QSettings reads a value with commas as a list, which has no text and shows as empty.
    for (const QString &key : keys)
        values.insert(key, settings.value(key).toString());
    return values;
}

void KUpdateHelp::setConfigValue(const QString &key, const QString &value) const
{
    if (QFile::exists(configFile()))
        UpdateSettings(configFile()).setValue(key, value);
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
    UpdateSettings settings(configFile());
    settings.setValue(QLatin1String(lastReportKey), QLatin1String(longAgo));
    // The date is written when the settings are destroyed, after the launch.
    launch(QLatin1String(suiteStartOption));
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
    krt::ksafe::KProcess::StartDetach(updater(), {option}, QString(), nullptr);
}

} // namespace OfficeAssiant
