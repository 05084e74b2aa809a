// The file search: find, which prints each hit's kind, its path and a zero byte.
#include <QDir>
#include <QFile>
#include <QProcess>

#include "host/kfssearch.h"

class KFsSearch::Private : public QProcess
{
public:
    QByteArray unread;
};

KFsSearch::KFsSearch(QObject *parent) : QObject(parent) {}

KFsSearch::~KFsSearch()
{
    StopSearch();
}

void KFsSearch::RunEverythingDaemon() {}

void KFsSearch::StopSearch()
{
    if (!d)
        return;
    d->disconnect(this);
    d->kill();
    // Later: this may be called by the receiver of a hit.
    d.release()->deleteLater();
}

void KFsSearch::DoSearchFileName(const QString &keyword, const QString &directory,
                                 bool caseSensitive)
{
    StopSearch();
    d = std::make_unique<Private>();
    Private *find = d.get();
    connect(find, &QProcess::readyReadStandardOutput, this, [this, find, keyword] {
        find->unread += find->readAllStandardOutput();
        for (int end; d.get() == find && (end = find->unread.indexOf('\0')) > 0;) {
            const QByteArray hit = find->unread.left(end);
            find->unread.remove(0, end + 1);
            Q_EMIT SigGetContentHasKey(QFile::decodeName(hit.mid(1)), keyword, hit.startsWith('d'));
        }
    });
    connect(find, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning)
            Q_EMIT searchFinished();
    });
    QString pattern = keyword;
    for (const char special : {'\\', '*', '?', '['})
        pattern.replace(QLatin1Char(special), QStringLiteral("\\") + QLatin1Char(special));
    find->start(QStringLiteral("find"),
                {directory.isEmpty() ? QDir::homePath() : directory,
                 caseSensitive ? QStringLiteral("-name") : QStringLiteral("-iname"),
                 QLatin1Char('*') + pattern + QLatin1Char('*'), QStringLiteral("-printf"),
                 QStringLiteral("%y%p\\0")});
}
