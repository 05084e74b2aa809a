#include "doctor/machine/processfiles.h"

#include <QFile>

#include <algorithm>

#include <unistd.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestStat = 64 * 1024;
constexpr int longestPath = 4096;

QString placeOf(const Machine &machine, qint64 process, const char *entry)
{
    return machine.located(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(entry)));
}

} // namespace

std::optional<ProcessStat> processStat(const Machine &machine, qint64 process)
{
    const std::optional<QByteArray> line =
        readFile(placeOf(machine, process, "stat"), largestStat).content;
    const int open = line ? line->indexOf('(') : -1;
    const int close = line ? line->lastIndexOf(')') : -1;
    if (open < 0 || close < open)
        return std::nullopt;
    return ProcessStat{line->mid(open + 1, close - open - 1),
                       line->mid(close + 2).simplified().split(' ')};
}

QString programPath(const Machine &machine, qint64 process)
{
    QByteArray target(longestPath, Qt::Uninitialized);
    const QByteArray link = QFile::encodeName(placeOf(machine, process, "exe"));
    const ssize_t length =
        readlink(link.constData(), target.data(), static_cast<std::size_t>(target.size()));
    QString program =
        QFile::decodeName(target.left(static_cast<int>(std::max<ssize_t>(length, 0))));
    const QString deleted = QStringLiteral(" (deleted)");
    if (program.endsWith(deleted))
        program.chop(deleted.size());
    return program;
}

} // namespace doctor
