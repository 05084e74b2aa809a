#pragma once

#include <QHash>
#include <QProcess>
#include <QStandardPaths>

constexpr int toolLimitMs = 20000;

/// What a tool prints; it has these variables alone.
inline QString run(const QStringList &command, const QHash<QString, QString> &variables)
{
    QProcess process;
    QProcessEnvironment environment;
    for (auto each = variables.begin(); each != variables.end(); ++each)
        environment.insert(each.key(), each.value());
    process.setProcessEnvironment(environment);
    process.start(QStandardPaths::findExecutable(command.first()), command.mid(1));
    if (!process.waitForFinished(toolLimitMs))
        qFatal("%s does not end", qPrintable(command.join(QLatin1Char(' '))));
    return QString::fromUtf8(process.readAllStandardOutput());
}
