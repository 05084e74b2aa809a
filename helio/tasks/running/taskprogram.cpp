#include "helio/tasks/running/taskprogram.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr int pollMs = 50;
constexpr int startMs = 30000;
/// The command line ends what it has started within two seconds.
constexpr int graceMs = 4000;
constexpr int killMs = 2000;
constexpr int longestReason = 500;
constexpr char commandLine[] = "/assistantctl";

class GroupProcess : public qtversion::PreparedProcess
{
public:
    void signalGroup(int signal) { ::kill(static_cast<pid_t>(-processId()), signal); }

protected:
    void prepare() override
    {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    }
};

void endGroup(GroupProcess &process)
{
    process.signalGroup(SIGTERM);
    if (process.waitForFinished(graceMs))
        return;
    process.signalGroup(SIGKILL);
    process.waitForFinished(killMs);
}

QString lastLineOf(const QByteArray &text)
{
    return QString::fromUtf8(text.trimmed().split('\n').last()).left(longestReason);
}

QString faultOf(GroupProcess &process, const QString &name)
{
    if (process.exitStatus() == QProcess::CrashExit)
        return texts::tr("%1 was ended by a signal.").arg(name);
    if (process.exitCode() == 0)
        return {};
    const QString said = lastLineOf(process.readAllStandardError());
    const QString ended = texts::tr("%1 ended with status %2.").arg(name).arg(process.exitCode());
    return said.isEmpty() ? ended : ended + QLatin1Char(' ') + said;
}

} // namespace

ProgramResult runProgram(const TaskProgram &program, const std::function<bool()> &isCancelled)
{
    const QString name = QFileInfo(program.program).fileName();
    GroupProcess process;
    process.setProcessEnvironment(program.environment);
    process.start(program.program, program.arguments);
    ProgramResult result;
    if (!process.waitForStarted(startMs)) {
        result.fault = texts::tr("%1 cannot be started: %2").arg(name, process.errorString());
        return result;
    }
    process.write(program.input);
    process.closeWriteChannel();
    while (process.state() != QProcess::NotRunning && !process.waitForFinished(pollMs)) {
        if (!isCancelled())
            continue;
        endGroup(process);
        result.isCancelled = true;
        return result;
    }
    result.hasExited = process.exitStatus() == QProcess::NormalExit;
    result.output = process.readAllStandardOutput();
    result.fault = faultOf(process, name);
    return result;
}

CommandResult sendCommand(const TaskRun &run, const QString &command, const QJsonObject &arguments,
                          const QStringList &choices)
{
    const QJsonObject request{{QStringLiteral("command"), command},
                              {QStringLiteral("args"), arguments},
                              {QStringLiteral("choose"), QJsonArray::fromStringList(choices)}};
    // Over its input: other users could read arguments, and a request may have passwords.
    TaskProgram program{run.programs + QLatin1String(commandLine), {QStringLiteral("--session")}};
    program.environment.insert(QStringLiteral("OFFICE_ASSISTANT_TASK"), QStringLiteral("1"));
    program.input = QJsonDocument(request).toJson(QJsonDocument::Compact);
    const ProgramResult ended = runProgram(program, run.isCancelled);
    CommandResult result;
    result.isCancelled = ended.isCancelled;
    result.fault = ended.fault;
    const QList<QByteArray> lines = ended.output.split('\n');
    for (const QByteArray &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        const QString type = event.value(QStringLiteral("type")).toString();
        if (type == QLatin1String("error"))
            result.fault = event.value(QStringLiteral("message")).toString();
        for (const QString &key : {QStringLiteral("result"), QStringLiteral("incomplete")}) {
            if (type == QLatin1String("answer") && event.contains(key))
                result.envelope.insert(key, event.value(key));
        }
    }
    return result;
}

bool canSendCommands(const QString &programs)
{
    return QFileInfo(programs + QLatin1String(commandLine)).isExecutable();
}

} // namespace helio
