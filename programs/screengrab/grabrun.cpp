#include "programs/screengrab/grabrun.h"

#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTimer>

namespace programs {

namespace {

constexpr int killTimeoutMs = 5'000;

QString withoutLineEnd(const QByteArray &output)
{
    return QFile::decodeName(output.endsWith('\n') ? output.chopped(1) : output);
}

} // namespace

GrabRun runGrabProgram(const QString &program, int timeoutMs)
{
    QProcess process;
    QEventLoop loop;
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    process.start(program, QStringList(), QIODevice::ReadOnly);
    if (!process.waitForStarted())
        return {{}, program + QStringLiteral(": ") + process.errorString()};
    if (process.state() != QProcess::NotRunning)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(killTimeoutMs);
        return {{}, QStringLiteral("the desktop took too long")};
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {{}, withoutLineEnd(process.readAllStandardError())};
    return {withoutLineEnd(process.readAllStandardOutput()), {}};
}

} // namespace programs
