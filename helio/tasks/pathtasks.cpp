#include <QDateTime>
#include <QFile>
#include <QJsonArray>

#include <sys/stat.h>

#include "doctor/machine/machine.h"
#include "helio/tasks/tasks.h"

namespace helio {

namespace {

constexpr int mostPaths = 500;

QString kindOf(mode_t mode)
{
    if (S_ISDIR(mode))
        return QStringLiteral("directory");
    return S_ISREG(mode) ? QStringLiteral("file") : QStringLiteral("other");
}

QJsonObject described(const QString &path, const doctor::Machine &machine)
{
    const QString whole =
        path.startsWith(QLatin1String("~/")) ? machine.home() + path.mid(1) : path;
    QJsonObject row{{QStringLiteral("path"), path}};
    struct stat state = {};
    const bool isThere = ::stat(QFile::encodeName(whole).constData(), &state) == 0;
    row.insert(QStringLiteral("exists"), isThere);
    if (!isThere)
        return row;
    row.insert(QStringLiteral("kind"), kindOf(state.st_mode));
    if (S_ISREG(state.st_mode))
        row.insert(QStringLiteral("size"), double(state.st_size));
    row.insert(QStringLiteral("mode"),
               QStringLiteral("%1").arg(state.st_mode & 07777, 4, 8, QLatin1Char('0')));
    row.insert(QStringLiteral("owner"), doctor::accountOf(machine, state.st_uid).name);
    row.insert(QStringLiteral("group"), doctor::groupName(machine, state.st_gid));
    row.insert(QStringLiteral("changed"),
               QDateTime::fromSecsSinceEpoch(state.st_mtime, Qt::UTC).toString(Qt::ISODate));
    return row;
}

} // namespace

TaskEnd tasks::describePaths(const TaskRun &run)
{
    const QStringList paths =
        run.arguments.value(QStringLiteral("paths")).toVariant().toStringList();
    const doctor::Machine machine = doctor::thisMachine();
    QJsonArray rows;
    for (const QString &path : paths.mid(0, mostPaths))
        rows.append(described(path, machine));
    TaskEnd end;
    end.answer.insert(QStringLiteral("paths"), rows);
    return end;
}

TaskEnd tasks::choosePath(const TaskRun &run)
{
    TaskEnd end;
    end.file = run.file;
    return end;
}

} // namespace helio
