#include "helio/runtime/processes/runningprocess.h"

#include <QDir>
#include <QFile>

#include <csignal>

#include <unistd.h>

namespace helio {

ProcessStatus processStatus(const QString &directory)
{
    QFile status(directory + QStringLiteral("/stat"));
    if (!status.open(QIODevice::ReadOnly))
        return {};
    // See proc(5). The name may contain any character, also parentheses.
    const QByteArray line = status.readAll();
    const int nameBegin = line.indexOf('(') + 1;
    const int nameEnd = line.lastIndexOf(')');
    const QList<QByteArray> fields = line.mid(nameEnd + 2).split(' ');
    return {line.mid(nameBegin, nameEnd - nameBegin), fields.value(0), fields.value(1).toInt(),
            fields.value(2).toInt(), fields.value(3).toInt()};
}

QStringList processIds()
{
    return QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
}

void signalAwaitedGroups(int signal)
{
    const QStringList processes = processIds();
    for (const QString &process : processes) {
        const ProcessStatus status = processStatus(QStringLiteral("/proc/") + process);
        if (status.parent == ::getpid() && status.session == ::getsid(0) &&
            status.group != ::getpgrp())
            ::kill(-status.group, signal);
    }
}

} // namespace helio
