#include "dump/kdumphelp.h"

#include <QDir>
#include <QFileSystemWatcher>

#include "host/krt.h"

namespace OfficeAssiant {

QString dumpDirectory()
{
    return krt::dirs::orvaneHome() + QStringLiteral("/tmp/dump");
}

KDumpHelp::KDumpHelp(QObject *parent) : QObject(parent), m_watcher(new QFileSystemWatcher(this))
{
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &KDumpHelp::dumpfilegenerate);
}

KDumpHelp::~KDumpHelp() = default;

bool KDumpHelp::isDumpSavingEnabled() const
{
    return true;
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

void KDumpHelp::dumpfilegenerate(const QString &) {}

} // namespace OfficeAssiant
