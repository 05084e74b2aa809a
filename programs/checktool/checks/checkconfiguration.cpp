#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <pwd.h>
#include <unistd.h>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/shellword.h"
#include "programs/suitehome/suitehome.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr qint64 mostSettings = qint64(16) * 1024 * 1024;
const QString settingsFile = QStringLiteral("/Orvane/Office.conf");

/// The directory of the suite's settings, by the XDG base directory rules.
QString configurationDirectory(const Machine &machine)
{
    const QString own = machine.variable("XDG_CONFIG_HOME");
    return own.startsWith(QLatin1Char('/')) ? own : machine.home + QStringLiteral("/.config");
}

QString userName()
{
    const passwd *user = ::getpwuid(::geteuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString::number(::geteuid());
}

bool may(const QString &path, int mode)
{
    return ::access(QFile::encodeName(path).constData(), mode) == 0;
}

/// Whether @p path exists; reports a missing one.
bool isThere(const QString &path, Findings &findings)
{
    const QFileInfo information(path);
    if (information.exists())
        return true;
    if (information.isSymLink())
        findings.problem(texts::tr("%1 is a link to %2, which is not there.")
                             .arg(path, information.symLinkTarget()),
                         texts::tr("Delete the link; the suite creates the file again."));
    else
        findings.fine(texts::tr("%1 is not there yet; it is made when it is needed.").arg(path));
    return false;
}

void checkOwner(const QString &path, Findings &findings)
{
    const QFileInfo information(path);
    if (information.ownerId() == ::geteuid())
        return;
    const QString owner = information.owner().isEmpty() ? QString::number(information.ownerId())
                                                        : information.owner();
    findings.problem(
        texts::tr("%1 belongs to the user %2, perhaps because the suite was once "
                  "started as that user.")
            .arg(path, owner),
        texts::tr("Take it over with: sudo chown -R %1 %2.").arg(userName(), shellWord(path)));
}

bool checkDirectory(const QString &path, Findings &findings)
{
    if (!isThere(path, findings))
        return false;
    if (!QFileInfo(path).isDir()) {
        findings.problem(
            texts::tr("%1 is not a directory, so that nothing can be kept in it.").arg(path),
            texts::tr("Move it away; the suite creates the directory again."));
        return false;
    }
    const int before = findings.problemCount();
    checkOwner(path, findings);
    if (!may(path, R_OK | W_OK | X_OK))
        findings.problem(
            texts::tr("The directory %1 cannot be used for reading and writing.").arg(path),
            texts::tr("Give yourself the rights with: chmod u+rwx %1.").arg(shellWord(path)));
    if (findings.problemCount() == before)
        findings.fine(texts::tr("The directory %1 can be read and written.").arg(path));
    return true;
}

void checkContent(const QString &path, Findings &findings)
{
    const QString remedy =
        texts::tr("Rename the file; the suite starts with its own settings then.");
    QFile file(path);
    if (file.size() > mostSettings) {
        findings.problem(texts::tr("The settings file %1 is unusually large.").arg(path), remedy);
        return;
    }
    const bool isText = file.open(QIODevice::ReadOnly) && !file.readAll().contains('\0');
    const QSettings settings(path, QSettings::IniFormat);
    // QSettings parses a group only when its keys are read.
    const int count = settings.allKeys().size();
    if (!isText || settings.status() == QSettings::FormatError)
        findings.problem(
            texts::tr("The settings file %1 is damaged: parts of it are not settings.").arg(path),
            remedy);
    else
        findings.fine(texts::tr("The settings file %1 can be read; settings in it: %2.")
                          .arg(path, QString::number(count)));
}

void checkFile(const QString &path, Findings &findings)
{
    if (!isThere(path, findings))
        return;
    if (!QFileInfo(path).isFile()) {
        findings.problem(
            texts::tr("%1 is not a file, so that no settings can be kept in it.").arg(path),
            texts::tr("Move it away; the suite creates the file again."));
        return;
    }
    checkOwner(path, findings);
    if (!may(path, W_OK))
        findings.problem(
            texts::tr("The settings file %1 cannot be written: changed settings are "
                      "lost.")
                .arg(path),
            texts::tr("Give yourself the right with: chmod u+rw %1.").arg(shellWord(path)));
    if (may(path, R_OK))
        checkContent(path, findings);
    else
        findings.problem(
            texts::tr(
                "The settings file %1 cannot be read: the suite starts without your settings.")
                .arg(path),
            texts::tr("Give yourself the right with: chmod u+rw %1.").arg(shellWord(path)));
}

} // namespace

void checkConfiguration(const Machine &machine, const QString &, const QString &argument,
                        Findings &findings)
{
    const QString path =
        argument.isEmpty() ? configurationDirectory(machine) + settingsFile : argument;
    if (!argument.isEmpty() && !QFileInfo(argument).isFile()) {
        findings.problem(texts::tr("There is no file %1.").arg(argument),
                         texts::tr("Give the full path of a settings file."));
        return;
    }
    if (checkDirectory(QFileInfo(path).path(), findings))
        checkFile(path, findings);
    if (argument.isEmpty() && checkDirectory(machine.suiteHome, findings))
        checkDirectory(answerDirectory(machine.suiteHome), findings);
}

} // namespace programs
