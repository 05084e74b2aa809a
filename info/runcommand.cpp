#include "info/runcommand.h"

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include <unistd.h>

namespace OfficeAssiant {

namespace {

/// Close-on-exec: programs that other threads start meanwhile must not inherit our end of the pipe.
constexpr char readMode[] = "re";

std::FILE *openPipe(const QString &command)
{
    return ::popen(command.toLocal8Bit().constData(), readMode);
}

/// Goes on reading after a signal that the host handles.
QByteArray readToEnd(std::FILE *stream)
{
    QByteArray output;
    std::array<char, 1024> buffer;
    for (;;) {
        const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream);
        const bool isInterrupted = std::ferror(stream) && errno == EINTR;
        output.append(buffer.data(), static_cast<int>(count));
        if (count < buffer.size() && !isInterrupted)
            return output;
        std::clearerr(stream);
    }
}

} // namespace

QString runCommand(const QString &command)
{
    std::FILE *stream = openPipe(command);
    if (!stream)
        return {};
    const QByteArray bytes = readToEnd(stream);
    ::pclose(stream);
    // Decoded as a whole, NUL bytes included: a character may be split between two reads.
    QString output = QString::fromLocal8Bit(bytes.constData(), bytes.size());
    if (output.endsWith(QLatin1Char('\n')))
        output.chop(1);
    return output;
}

std::optional<QByteArray> readCommandOutput(const QString &command)
{
    struct sigaction defaultAction
    {
    };
    struct sigaction previousAction
    {
    };
    defaultAction.sa_handler = SIG_DFL;
    ::sigaction(SIGCHLD, &defaultAction, &previousAction);
    std::FILE *stream = openPipe(command);
    if (!stream)
        return std::nullopt;
    const QByteArray output = readToEnd(stream);
    ::pclose(stream);
    ::sigaction(SIGCHLD, &previousAction, nullptr);
    return output;
}

void startCommand(const QString &command, QObject *owner)
{
    std::FILE *stream = openPipe(command);
    if (!stream)
        return;
    // Collects child and descriptor when the command ends. A thread could outlive the plug-in; the
    // notifier is destroyed with its owner.
    const int descriptor = ::fileno(stream);
    auto *ending = new QSocketNotifier(descriptor, QSocketNotifier::Read, owner);
    QObject::connect(ending, &QSocketNotifier::activated, ending, [ending, stream, descriptor] {
        std::array<char, 4096> thrownAway;
        const ssize_t count = ::read(descriptor, thrownAway.data(), thrownAway.size());
        if (count > 0 || (count < 0 && errno == EINTR))
            return;
        ending->setEnabled(false);
        ending->deleteLater();
        ::pclose(stream);
    });
}

} // namespace OfficeAssiant
