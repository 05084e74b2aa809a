#include "programs/process/boundedprogram.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <csignal>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "qtversion/qtversion.h"

namespace programs {

namespace {

constexpr int mostOutput = 4 * 1024 * 1024;
/// Short, because output piles up in memory meanwhile.
constexpr int readingPieceMs = 20;
constexpr int endingMs = 5000;

/// The process group to kill when this process ends.
volatile std::sig_atomic_t runningGroup = 0;

extern "C" void endWithGroup(int signal)
{
    endRunningProgram();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

sigset_t endingSignals()
{
    sigset_t ending;
    ::sigemptyset(&ending);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGALRM})
        ::sigaddset(&ending, signal);
    return ending;
}

/// Holds back the signals that would end this process.
class EndHold
{
public:
    EndHold()
    {
        const sigset_t ending = endingSignals();
        ::pthread_sigmask(SIG_BLOCK, &ending, &m_earlier);
    }
    ~EndHold() { ::pthread_sigmask(SIG_SETMASK, &m_earlier, nullptr); }

private:
    Q_DISABLE_COPY_MOVE(EndHold)

    sigset_t m_earlier;
};

class GroupProcess : public qtversion::PreparedProcess
{
protected:
    void prepare() override
    {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const rlimit none = {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP})
            std::signal(signal, SIG_DFL);
        const sigset_t ending = endingSignals();
        ::pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
    }
};

void keep(const QByteArray &piece, QByteArray *kept)
{
    kept->append(piece.left(mostOutput - kept->size()));
}

/// Starts the program in a group that ends with this process from its start. False on failure.
bool startGroup(GroupProcess *process, const QString &program, const QStringList &arguments,
                int timeoutMs)
{
    const EndHold untilGroupIsKnown;
    process->start(program, arguments);
    if (!process->waitForStarted(timeoutMs))
        return false;
    runningGroup = static_cast<std::sig_atomic_t>(process->processId());
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signal, endWithGroup);
    return true;
}

void read(QProcess *process, ProgramEnd *end)
{
    keep(process->readAllStandardOutput(), &end->output);
    keep(process->readAllStandardError(), &end->errors);
}

} // namespace

ProgramEnd runBounded(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment, int timeoutMs)
{
    ProgramEnd end;
    GroupProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    const QDeadlineTimer deadline(timeoutMs);
    if (!startGroup(&process, program, arguments, timeoutMs)) {
        end.startFault = process.errorString();
        return end;
    }
    while (!deadline.hasExpired() && !process.waitForFinished(readingPieceMs) &&
           process.state() != QProcess::NotRunning)
        read(&process, &end);
    const bool isLate = process.state() != QProcess::NotRunning;
    // Whatever the program left running in its group ends too.
    endRunningProgram();
    process.waitForFinished(endingMs);
    runningGroup = 0;
    read(&process, &end);
    if (isLate)
        end.kind = ProgramEnd::Kind::TimedOut;
    else
        end.kind = process.exitStatus() == QProcess::NormalExit ? ProgramEnd::Kind::Exited
                                                                : ProgramEnd::Kind::Crashed;
    end.status = process.exitCode();
    return end;
}

void endRunningProgram()
{
    if (runningGroup != 0)
        ::kill(-static_cast<pid_t>(runningGroup), SIGKILL);
}

QString lastLine(const QByteArray &text)
{
    return QString::fromLocal8Bit(text.trimmed().split('\n').constLast().trimmed());
}

} // namespace programs
