#pragma once

#include <QStringList>
#include <QTemporaryDir>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/machine.h"

namespace testsupport {

/// A machine of the test's own for the check tool: every place below a directory that goes with
/// this object, an empty environment, and a probe program that the test writes.
class CheckedMachine
{
public:
    CheckedMachine();
    ~CheckedMachine();

    /// Writes a file below the directory, whose directories are made; gives its path.
    QString write(const QString &name, const QByteArray &content) const;

    /// Writes a file that may be run.
    QString writeProgram(const QString &name, const QByteArray &content) const;

    QString path(const QString &name) const;

    void makeDirectory(const QString &name) const;

    void set(const char *variable, const QString &value);

    /// The probe program is a shell script with this body.
    void answerProbe(const QByteArray &body);

    /// What the check says, a line each, without the line of the outcome.
    QStringList check(const char *name, const QString &argument = {},
                      const QString &application = QStringLiteral("vyr")) const;

    standin::Machine machine;

private:
    QTemporaryDir m_directory;
};

/// The lines that tell of problems.
QStringList problems(const QStringList &lines);

/// Whether a line has all of these words.
bool hasLine(const QStringList &lines, const QStringList &words);

} // namespace testsupport
