#include "info/runcommand.h"

#include <QTimer>

#include <csignal>

#include "info/shellprocess.h"

namespace OfficeAssiant {

namespace {

constexpr int collectIntervalMs = 100;

} // namespace

QString runCommand(const QString &command, int longestMs)
{
    const std::optional<QByteArray> bytes =
        outputOfShell(command.toLocal8Bit(), QDeadlineTimer(longestMs));
    if (!bytes)
        return {};
    // Decoded as a whole, NUL bytes included: a character may be split between two reads.
    QString output = QString::fromLocal8Bit(bytes->constData(), bytes->size());
    if (output.endsWith(QLatin1Char('\n')))
        output.chop(1);
    return output;
}

std::optional<QByteArray> readCommandOutput(const QString &command, int longestMs)
{
    struct sigaction defaultAction
    {
    };
    struct sigaction previousAction
    {
    };
    defaultAction.sa_handler = SIG_DFL;
    ::sigaction(SIGCHLD, &defaultAction, &previousAction);
    std::optional<QByteArray> output =
        outputOfShell(command.toLocal8Bit(), QDeadlineTimer(longestMs));
    if (output)
        ::sigaction(SIGCHLD, &previousAction, nullptr);
    return output;
}

std::optional<pid_t> startCommand(const QString &command, QObject *owner)
{
    const auto child = startShell(command.toLocal8Bit(), Apart::Session);
    if (!child)
        return std::nullopt;
    // A thread that waits could outlive the plug-in; the timer is destroyed with its owner.
    auto *collector = new QTimer(owner);
    QObject::connect(collector, &QTimer::timeout, collector, [collector, child = *child] {
        if (!hasEnded(child))
            return;
        collector->stop();
        collector->deleteLater();
    });
    collector->start(collectIntervalMs);
    return child;
}

} // namespace OfficeAssiant
