#include "programs/checktool/machine/runningprograms.h"

#include <QDir>

#include <unistd.h>

#include "programs/checktool/machine/machine.h"

namespace programs {

QSet<QString> runningPrograms(const Machine &machine)
{
    QSet<QString> names;
    const QString processes = machine.root + QStringLiteral("/proc");
    const QFileInfoList directories =
        QDir(processes).entryInfoList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QFileInfo &directory : directories) {
        if (directory.ownerId() != ::geteuid())
            continue;
        QFile name(directory.filePath() + QStringLiteral("/comm"));
        if (name.open(QIODevice::ReadOnly))
            names.insert(QString::fromLocal8Bit(name.readAll().trimmed()));
    }
    return names;
}

} // namespace programs
