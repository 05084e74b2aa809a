#include "envcheck/toolprocess.h"

#include <QDir>
#include <QFile>
#include <QMultiHash>
#include <QVector>

#include <csignal>

#include <unistd.h>

namespace OfficeAssiant {

namespace {

QByteArray readProcessFile(pid_t process, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

pid_t parentOf(pid_t process)
{
    // See proc(5). The name may contain any character, also parentheses.
    const QByteArray status = readProcessFile(process, "stat");
    return status.mid(status.lastIndexOf(')') + 2).split(' ').value(1).toInt();
}

QMultiHash<pid_t, pid_t> childrenByParent()
{
    QMultiHash<pid_t, pid_t> children;
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &process : processes)
        children.insert(parentOf(process.toInt()), process.toInt());
    return children;
}

/// Parents come before their children.
QVector<pid_t> descendantsOf(pid_t ancestor, const QMultiHash<pid_t, pid_t> &children)
{
    QVector<pid_t> descendants = children.values(ancestor).toVector();
    for (int index = 0; index < descendants.size(); ++index)
        descendants += children.values(descendants.at(index)).toVector();
    return descendants;
}

void kill(pid_t process)
{
    if (::getpgid(process) == process)
        ::kill(-process, SIGKILL);
    ::kill(process, SIGKILL);
}

} // namespace

void killOwnProcesses(const QString &program)
{
    const QByteArray path = QFile::encodeName(program);
    const QMultiHash<pid_t, pid_t> children = childrenByParent();
    const QVector<pid_t> ownProcesses = descendantsOf(::getpid(), children);
    for (const pid_t process : ownProcesses) {
        // The first word of a script's command line is its interpreter.
        if (!readProcessFile(process, "cmdline").split('\0').contains(path))
            continue;
        kill(process);
        const QVector<pid_t> helpers = descendantsOf(process, children);
        for (const pid_t helper : helpers)
            kill(helper);
    }
}

} // namespace OfficeAssiant
