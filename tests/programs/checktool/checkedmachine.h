#pragma once

#include <QStringList>
#include <QTemporaryDir>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/machine.h"

namespace testsupport {

/// A fake machine for the check tool: all paths below a directory that is removed with this object,
/// an empty environment, and a probe program that the test writes.
class CheckedMachine
{
public:
    CheckedMachine();
    ~CheckedMachine();

    /// Writes a file below the directory, with its parents. Returns its path.
    QString write(const QString &name, const QByteArray &content) const;

    /// Writes an executable file.
    QString writeProgram(const QString &name, const QByteArray &content) const;

    QString path(const QString &name) const;

    void makeDirectory(const QString &name) const;

    void set(const char *variable, const QString &value);

    /// Makes the probe program a script for sh with this body.
    void answerProbe(const QByteArray &body);

    /// The findings of a check, one a line, without the line of the outcome.
    QStringList check(const char *name, const QString &argument = {},
                      const QString &application = QStringLiteral("vyr")) const;

    programs::Machine machine;

private:
    QTemporaryDir m_directory;
};

/// The lines about problems.
QStringList problems(const QStringList &lines);

/// Whether one line contains all of these words.
bool hasLine(const QStringList &lines, const QStringList &words);

} // namespace testsupport
