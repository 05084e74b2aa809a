#include "helio/ctl/leftoverwork.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <unistd.h>

#include "helio/ctl/callbackwait.h"
#include "helio/runtime/awaitedprograms.h"
#include "host/krt.h"

namespace {

constexpr int longestWaitMs = 30000;
constexpr int checkIntervalMs = 20;
/// Enough for a thread that a command has just started to get to its program.
constexpr int threadStartMs = 50;

/// A script shows as the program itself, as an interpreter's first argument, as that of a script
/// that stands in for the interpreter or, for a moment, in the command line that a shell of ours
/// is about to run.
bool namesScriptFrom(const QByteArray &directory, const QList<QByteArray> &words)
{
    if (words.value(0).startsWith(directory) || words.value(1).startsWith(directory))
        return true;
    if (words.value(1) == "-c")
        return words.value(2).startsWith("bash " + directory);
    return !words.value(1).startsWith('-') && words.value(2).startsWith(directory);
}

bool isLivingChild(const QString &processId)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    // Behind the name, which may hold anything: state and parent, as proc(5) lists them.
    const QByteArray line = status.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.value(0) != "Z" && fields.value(0) != "X" &&
           fields.value(1).toLongLong() == QCoreApplication::applicationPid();
}

bool runsScriptFrom(const QByteArray &directory, const QString &processId)
{
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(processId));
    if (!commandLine.open(QIODevice::ReadOnly))
        return false;
    const QByteArray words = commandLine.readAll();
    // While a shell, or the script in its place, is being loaded, there is no command line.
    return words.isEmpty() ? isLivingChild(processId)
                           : namesScriptFrom(directory, words.split('\0'));
}

bool isOwnProcess(const QString &processId)
{
    return QFileInfo(QStringLiteral("/proc/") + processId).ownerId() == ::getuid() &&
           processId.toLongLong() != QCoreApplication::applicationPid();
}

bool hasOtherThreads()
{
    return QDir(QStringLiteral("/proc/self/task"))
               .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
               .size() > 1;
}

} // namespace

bool ctl::isScriptRunningFrom(const QString &directory)
{
    const QByteArray prefix = QFile::encodeName(directory) + '/';
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    return std::any_of(processes.begin(), processes.end(), [&prefix](const QString &processId) {
        return isOwnProcess(processId) && runsScriptFrom(prefix, processId);
    });
}

int ctl::waitForLeftoverWork()
{
    const QString scripts = krt::dirs::orvaneHome() + QStringLiteral("/tmp/officeassis_script");
    QElapsedTimer waited;
    waited.start();
    if (hasOtherThreads())
        CallbackWait::processEvents(threadStartMs);
    while (waited.elapsed() < longestWaitMs &&
           (helio::awaitedProgramCount() > 0 ||
            (QFileInfo::exists(scripts) && isScriptRunningFrom(scripts))))
        CallbackWait::processEvents(checkIntervalMs);
    // What other threads reported last, such as the start of a program, is still to be printed.
    QCoreApplication::processEvents();
    return static_cast<int>(qMax(qint64{0}, longestWaitMs - waited.elapsed()));
}
