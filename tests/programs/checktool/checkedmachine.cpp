#include "tests/programs/checktool/checkedmachine.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace testsupport {

CheckedMachine::CheckedMachine()
{
    machine.home = path(QStringLiteral("home"));
    machine.suiteHome = path(QStringLiteral("home/.local/share/Orvane"));
    machine.officeDirectory = path(QStringLiteral("office"));
    machine.temporaryDirectory = path(QStringLiteral("tmp"));
    machine.root = path(QStringLiteral("root"));
    machine.probeProgram = path(QStringLiteral("office/vyrEnvProbe"));
    for (const QString &directory :
         {machine.home, machine.officeDirectory, machine.temporaryDirectory, machine.root})
        QDir().mkpath(directory);
}

CheckedMachine::~CheckedMachine() = default;

QString CheckedMachine::write(const QString &name, const QByteArray &content) const
{
    makeDirectory(QFileInfo(name).path());
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QString CheckedMachine::writeProgram(const QString &name, const QByteArray &content) const
{
    QString file = write(name, content);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file;
}

QString CheckedMachine::path(const QString &name) const
{
    return m_directory.filePath(name);
}

void CheckedMachine::makeDirectory(const QString &name) const
{
    if (!QDir().mkpath(path(name)))
        qFatal("cannot make %s", qPrintable(path(name)));
}

void CheckedMachine::set(const char *variable, const QString &value)
{
    machine.environment.insert(QString::fromLatin1(variable), value);
}

void CheckedMachine::answerProbe(const QByteArray &body)
{
    machine.probeProgram = writeProgram(QStringLiteral("office/vyrEnvProbe"), "#!/bin/sh\n" + body);
}

QStringList CheckedMachine::check(const char *name, const QString &argument,
                                  const QString &application) const
{
    return programs::findingsOf(machine, QString::fromLatin1(name), application, argument)
        .text()
        .split(QLatin1Char('\n'))
        .mid(1);
}

QStringList problems(const QStringList &lines)
{
    QStringList found;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
                 [](const QString &line) { return line.startsWith(QStringLiteral("✘ ")); });
    return found;
}

bool hasLine(const QStringList &lines, const QStringList &words)
{
    return std::any_of(lines.begin(), lines.end(), [&](const QString &line) {
        return std::all_of(words.begin(), words.end(),
                           [&](const QString &word) { return line.contains(word); });
    });
}

} // namespace testsupport
