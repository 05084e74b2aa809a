#include "helio/ctl/leftoverwork.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <csignal>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "helio/ctl/callbackwait.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "helio/runtime/processes/runningprocess.h"
#include "helio/runtime/processes/terminationsignals.h"
#include "host/krt.h"

namespace {

constexpr int longestWaitMs = 30000;
/// After a termination signal, which ends all of it.
constexpr int longestEndMs = 2000;
constexpr int checkIntervalMs = 20;
/// Whoever started a program collects it long before.
constexpr int collectIntervalMs = 2000;
/// How long a thread that a command has just started may sleep before it runs.
constexpr int threadStartMs = 50;

/// Qt's name for the threads of its pools, in which searches run.
constexpr char pooledThread[] = "Thread (pooled)";
constexpr char threadsDirectory[] = "/proc/self/task/";
/// Where the library stages its scripts, below the suite's home. The interface fixes the place; it
/// is named here a second time because a shell sees no more of the library than host/.
constexpr char stagingDirectory[] = "/tmp/officeassis_script";

QString stagedScripts()
{
    return krt::dirs::orvaneHome() + QLatin1String(stagingDirectory);
}

int longestWait()
{
    return helio::TerminationSignals::first() == 0 ? longestWaitMs : longestEndMs;
}

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

bool isLivingChild(const QString &processId)
{
    const helio::ProcessStatus status = helio::processStatus(QStringLiteral("/proc/") + processId);
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

/// Whether this process has started a process, directly or through others. One whose parent has
/// ended counts only after adoptLeftovers().
bool isOwnDescendant(const QString &processId)
{
    qint64 process = processId.toLongLong();
    do {
        process = helio::processStatus(QStringLiteral("/proc/%1").arg(process)).parent;
    } while (process > 1 && process != QCoreApplication::applicationPid());
    return process == QCoreApplication::applicationPid();
}

QStringList ownScripts(const QString &directory)
{
    const QByteArray prefix = QFile::encodeName(directory) + '/';
    QStringList scripts;
    const QStringList processes = helio::processIds();
    for (const QString &processId : processes) {
        if (runsScriptFrom(prefix, processId) && isOwnDescendant(processId))
            scripts.append(processId);
    }
    return scripts;
}

QStringList otherThreads()
{
    QStringList threads =
        QDir(QLatin1String(threadsDirectory)).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    threads.removeOne(QString::number(QCoreApplication::applicationPid()));
    const auto isWatcher = [](const QString &thread) {
        return helio::processStatus(QLatin1String(threadsDirectory) + thread).name ==
               helio::signalThread;
    };
    threads.erase(std::remove_if(threads.begin(), threads.end(), isWatcher), threads.end());
    return threads;
}

/// True while a thread is still starting its program or reporting its result, which can take long
/// on a busy machine. Ignores searches, which end with the process.
bool hasRunningThread()
{
    const QStringList threads = otherThreads();
    return std::any_of(threads.begin(), threads.end(), [](const QString &thread) {
        const helio::ProcessStatus status =
            helio::processStatus(QLatin1String(threadsDirectory) + thread);
        return (status.state == "R" || status.state == "D") && status.name != pooledThread;
    });
}

QSet<qint64> endedChildren()
{
    QSet<qint64> ended;
    const QStringList processes = helio::processIds();
    for (const QString &processId : processes) {
        const helio::ProcessStatus status =
            helio::processStatus(QStringLiteral("/proc/") + processId);
        if (status.state == "Z" && status.parent == QCoreApplication::applicationPid())
            ended.insert(processId.toLongLong());
    }
    return ended;
}

} // namespace

void ctl::adoptLeftovers(QObject *owner)
{
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    auto *collector = new QTimer(owner);
    QObject::connect(collector, &QTimer::timeout, collector, [before = QSet<qint64>()]() mutable {
        const QSet<qint64> ended = endedChildren();
        for (const qint64 child : ended) {
            if (before.contains(child))
                ::waitpid(static_cast<pid_t>(child), nullptr, WNOHANG);
        }
        before = ended;
    });
    collector->start(collectIntervalMs);
}

bool ctl::isScriptRunningFrom(const QString &directory)
{
    return !ownScripts(directory).isEmpty();
}

void ctl::endStartedWork(int signal)
{
    helio::signalAwaitedGroups(signal);
    const QStringList scripts = ownScripts(stagedScripts());
    for (const QString &script : scripts) {
        const int group = helio::processStatus(QStringLiteral("/proc/") + script).group;
        if (group > 0 && group != ::getpgrp())
            ::kill(-group, signal);
    }
}

int ctl::waitForLeftoverWork()
{
    const QString scripts = stagedScripts();
    QElapsedTimer waited;
    waited.start();
    if (!otherThreads().isEmpty())
        CallbackWait::processEvents(threadStartMs);
    while (waited.elapsed() < longestWait() &&
           (helio::awaitedProgramCount() > 0 || hasRunningThread() ||
            (QFileInfo::exists(scripts) && isScriptRunningFrom(scripts))))
        CallbackWait::processEvents(checkIntervalMs);
    // Prints what other threads reported last, such as the start of a program.
    QCoreApplication::processEvents();
    return static_cast<int>(qMax(qint64{0}, longestWait() - waited.elapsed()));
}
