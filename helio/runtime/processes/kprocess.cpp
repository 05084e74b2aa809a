#include "host/krt.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QStandardPaths>

#include <atomic>
#include <limits>

#include "helio/runtime/hostevents.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "helio/runtime/processes/quietprocess.h"

namespace {

constexpr int notStarted = -2;
constexpr int crashed = -1;
/// How soon a waiting caller notices that the shell ends.
constexpr int endingCheckMs = 100;

std::atomic<int> awaitedPrograms{0};
/// When to kill them, in milliseconds of the monotonic clock.
std::atomic<qint64> endOfAwaiting{std::numeric_limits<qint64>::max()};

/// Some of the suite's programs are named without a directory: those beside this program, unless
/// the search path has them.
QString located(const QString &program)
{
    const QFileInfo beside(QCoreApplication::applicationDirPath() + QLatin1Char('/') + program);
    const bool isFound =
        program.contains(QLatin1Char('/')) || !QStandardPaths::findExecutable(program).isEmpty();
    return !isFound && beside.isFile() ? beside.filePath() : program;
}

int runToItsEnd(helio::QuietProcess &process)
{
    process.start();
    if (!process.waitForStarted(-1))
        return notStarted;
    while (!process.waitForFinished(endingCheckMs) && process.state() != QProcess::NotRunning) {
        if (QDeadlineTimer::current().deadline() >= endOfAwaiting)
            process.killGroup();
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : crashed;
}

} // namespace

int helio::awaitedProgramCount()
{
    return awaitedPrograms;
}

void helio::endAwaitedPrograms(int graceMs)
{
    endOfAwaiting = QDeadlineTimer(graceMs).deadline();
}

bool krt::ksafe::KProcess::StartDetach(const QString &program, const QStringList &arguments,
                                       const QString &workingDirectory, qint64 *processId)
{
    emit helio::HostEvents::instance().programStarting(program, arguments, workingDirectory, true);
    helio::QuietProcess process(located(program), arguments);
    process.setWorkingDirectory(workingDirectory);
    return process.startDetached(processId);
}

int krt::ksafe::KProcess::Execute(const QString &program, const QStringList &arguments)
{
    emit helio::HostEvents::instance().programStarting(program, arguments, QString(), false);
    helio::QuietProcess process(program, arguments);
    ++awaitedPrograms;
    const int status = runToItsEnd(process);
    --awaitedPrograms;
    return status;
}
