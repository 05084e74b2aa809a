#include "helio/suite/profilecopy.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "texts/texts.h"

namespace helio {

namespace {

/// A profile of 200 extensions has about half of that.
constexpr qint64 mostBytes = qint64(1) << 30;
constexpr int mostFiles = 50'000;

bool copyWithoutLines(const QString &from, const QString &to, const QByteArray &lineWith)
{
    QFile source(from);
    QFile target(to);
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly))
        return false;
    while (!source.atEnd()) {
        const QByteArray line = source.readLine();
        if (!line.contains(lineWith) && target.write(line) < 0)
            return false;
    }
    return target.flush();
}

bool copyEntry(const QFileInfo &entry, const QString &to, const QByteArray &lineWith)
{
    if (entry.isDir())
        return entry.isSymLink() || QDir().mkpath(to);
    // Neither pipes nor sockets: they could block, and nothing reads them at the start.
    if (!entry.isFile())
        return true;
    return lineWith.isEmpty() ? QFile::copy(entry.filePath(), to)
                              : copyWithoutLines(entry.filePath(), to, lineWith);
}

} // namespace

QString copyProfile(const QString &from, const QString &to, const LeftOut &leftOut,
                    const std::function<bool()> &goOn)
{
    const auto failed = [](const QString &path) {
        return texts::tr("%1 cannot be copied").arg(path);
    };
    if (!QDir().mkpath(to))
        return failed(from);
    qint64 bytes = 0;
    int files = 0;
    QDirIterator entries(from,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext() && goOn()) {
        entries.next();
        const QFileInfo entry = entries.fileInfo();
        const QString name = entry.filePath().mid(from.size() + 1);
        if (leftOut.names.contains(name.section(QLatin1Char('/'), 0, 0)))
            continue;
        bytes += entry.size();
        if (bytes > mostBytes || ++files > mostFiles)
            return texts::tr("%1 is too big to be copied").arg(from);
        if (!copyEntry(entry, to + QLatin1Char('/') + name,
                       name == leftOut.file ? leftOut.lineWith : QByteArray()))
            return failed(entry.filePath());
    }
    return {};
}

} // namespace helio
