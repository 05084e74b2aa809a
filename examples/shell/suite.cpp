// The suite's directories, its programs and what may be opened.
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>

#include "host/krt.h"
#include "host/vyrupdate_linux.h"

namespace {

QString below(const QString &sub)
{
    const QString directory = QCoreApplication::applicationDirPath();
    return sub.isEmpty() ? directory : directory + QLatin1Char('/') + sub;
}

/// Only what is known to be shown and never run.
bool isDocument(const QMimeType &type)
{
    return type.name() == QLatin1String("text/plain") ||
           type.name() == QLatin1String("application/pdf") ||
           type.name().startsWith(QLatin1String("image/")) ||
           type.name().startsWith(QLatin1String("application/vnd.o"));
}

} // namespace

QString krt::dirs::orvaneHome()
{
    return QDir::homePath() + QStringLiteral("/.local/share/Orvane");
}
QString krt::dirs::resources(const QString &sub, void *)
{
    return below(sub);
}
QString krt::dirs::frameworks(const QString &sub, void *)
{
    return below(sub);
}
bool krt::kcmc::support(const QString &)
{
    return false;
}
QString vyrupdate_linux::getUpdateCfgPath(const QString &directory)
{
    return directory + QStringLiteral("vyrupdate.cfg");
}

bool krt::ksafe::KProcess::StartDetach(const QString &program, const QStringList &arguments,
                                       const QString &workingDirectory, qint64 *processId)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setWorkingDirectory(workingDirectory);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached(processId);
}
int krt::ksafe::KProcess::Execute(const QString &program, const QStringList &arguments)
{
    return QProcess::execute(program, arguments);
}
bool krt::ksafe::KProcess::checkLocalFileSafe(const QString &path)
{
    const QFileInfo file(path);
    return file.isAbsolute() &&
           (file.isDir() || (file.isFile() && !file.isExecutable() &&
                             isDocument(QMimeDatabase().mimeTypeForFile(file))));
}
