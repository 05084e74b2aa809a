#include "dump/kdumphelp.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

#include "dump/dumpfiles.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

/// The suite itself reads this key.
constexpr char saveDumpKey[] = "6.0/common/CrashDump/SaveDump";

QDateTime creationTime(const QString &path)
{
    const QFileInfo file(path);
    const QDateTime birth = file.birthTime();
    return birth.isValid() ? birth : file.metadataChangeTime();
}

} // namespace

KDumpHelp::KDumpHelp(QObject *parent) : QObject(parent), m_watcher(new QFileSystemWatcher(this))
{
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &KDumpHelp::dumpfilegenerate);
}

KDumpHelp::~KDumpHelp() = default;

bool KDumpHelp::isDumpSavingEnabled() const
{
    const SuiteSettings settings;
    return settings.value(QLatin1String(saveDumpKey), true).toBool();
}

void KDumpHelp::setDumpSaving(bool enabled)
{
    SuiteSettings settings;
    settings.setValue(QLatin1String(saveDumpKey), enabled);
}

void KDumpHelp::startWatching()
{
    QDir().mkpath(dumpDirectory());
    m_watcher->addPath(dumpDirectory());
}

void KDumpHelp::stopWatching()
{
    m_watcher->removePath(dumpDirectory());
}

bool KDumpHelp::hasRecentDump() const
{
    const QString newest = newestDumpPath();
    return !newest.isEmpty() && hasRecentStamp(creationTime(newest), QDateTime::currentDateTime());
}

void KDumpHelp::clearDumpDirectory()
{
    removePlainFiles(dumpDirectory());
}

void KDumpHelp::dumpfilegenerate(const QString &)
{
    if (hasRecentDump())
        emit sigdumpfileready();
}

} // namespace OfficeAssiant
