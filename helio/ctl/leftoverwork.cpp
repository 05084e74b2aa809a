#include "helio/ctl/leftoverwork.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <unistd.h>

#include "helio/ctl/callbackwait.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "host/krt.h"

namespace {

constexpr int longestWaitMs = 30000;
constexpr int checkIntervalMs = 20;
/// How long a thread that a command has just started may sleep before it runs.
constexpr int threadStartMs = 50;

/// Qt's name for the threads of its pools, in which searches run.
constexpr char pooledThread[] = "Thread (pooled)";
constexpr char threadsDirectory[] = "/proc/self/task/";
/// Where the library stages its scripts, below the suite's home. The interface fixes the place; it
/// is named here a second time because a shell sees no more of the library than host/.
constexpr char stagingDirectory[] = "/tmp/officeassis_script";

/// Whether a process's arguments name a script in @p directory: as the program itself, as the first
/// argument of an interpreter, as that of a script used as an interpreter or, for a moment, in the
/// command line of an `sh` that is about to run it.
bool namesScriptFrom(const QByteArray &directory, const QList<QByteArray> &words)
{
    if (words.value(0).startsWith(directory) || words.value(1).startsWith(directory))
        return true;
    if (words.value(1) == "-c")
        return words.value(2).startsWith("bash " + directory);
    return !words.value(1).startsWith('-') && words.value(2).startsWith(directory);
}

struct Status
{
    QByteArray name;
    QByteArray state;
    qint64 parent = 0;
};

/// Reads DIRECTORY/stat, where the directory in /proc is that of a process or thread. All fields
/// are empty if that has ended.
Status statusOf(const QString &directory)
{
    QFile status(directory + QStringLiteral("/stat"));
    if (!status.open(QIODevice::ReadOnly))
        return {};
    // See proc(5). The name may contain any character, also parentheses.
    const QByteArray line = status.readAll();
    const int nameBegin = line.indexOf('(') + 1;
    const int nameEnd = line.lastIndexOf(')');
    const QList<QByteArray> fields = line.mid(nameEnd + 2).split(' ');
    return {line.mid(nameBegin, nameEnd - nameBegin), fields.value(0),
            fields.value(1).toLongLong()};
}

bool isLivingChild(const QString &processId)
{
    const Status status = statusOf(QStringLiteral("/proc/") + processId);
    return !status.state.isEmpty() && status.state != "Z" && status.state != "X" &&
           status.parent == QCoreApplication::applicationPid();
}

bool runsScriptFrom(const QByteArray &directory, const QString &processId)
{
    QFile arguments(QStringLiteral("/proc/%1/cmdline").arg(processId));
    if (!arguments.open(QIODevice::ReadOnly))
        return false;
    const QByteArray words = arguments.readAll();
    // A program that is still being loaded has no arguments yet; it may become a script.
    return words.isEmpty() ? isLivingChild(processId)
                           : namesScriptFrom(directory, words.split('\0'));
}

bool isOwnProcess(const QString &processId)
{
    return QFileInfo(QStringLiteral("/proc/") + processId).ownerId() == ::getuid() &&
           processId.toLongLong() != QCoreApplication::applicationPid();
}

QStringList otherThreads()
{
    QStringList threads =
        QDir(QLatin1String(threadsDirectory)).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    threads.removeOne(QString::number(QCoreApplication::applicationPid()));
    return threads;
}

/// True while a thread is still starting its program or reporting its result, which can take long
/// on a busy machine. Ignores searches, which end with the process.
bool hasRunningThread()
{
    const QStringList threads = otherThreads();
    return std::any_of(threads.begin(), threads.end(), [](const QString &thread) {
        const Status status = statusOf(QLatin1String(threadsDirectory) + thread);
        return (status.state == "R" || status.state == "D") && status.name != pooledThread;
    });
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
    const QString scripts = krt::dirs::orvaneHome() + QLatin1String(stagingDirectory);
    QElapsedTimer waited;
    waited.start();
    if (!otherThreads().isEmpty())
        CallbackWait::processEvents(threadStartMs);
    while (waited.elapsed() < longestWaitMs &&
           (helio::awaitedProgramCount() > 0 || hasRunningThread() ||
            (QFileInfo::exists(scripts) && isScriptRunningFrom(scripts))))
        CallbackWait::processEvents(checkIntervalMs);
    // Prints what other threads reported last, such as the start of a program.
    QCoreApplication::processEvents();
    return static_cast<int>(qMax(qint64{0}, longestWaitMs - waited.elapsed()));
}
