#include "info/runcommand.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <thread>

namespace OfficeAssiant {

namespace {

/// Close-on-exec keeps our end of the pipe from programs that other threads start meanwhile.
constexpr char readMode[] = "re";

std::FILE *openPipe(const QString &command)
{
    return ::popen(command.toLocal8Bit().constData(), readMode);
}

QByteArray readToEnd(std::FILE *stream)
{
    QByteArray output;
    std::array<char, 1024> buffer;
    std::size_t count = 0;
    do {
        count = std::fread(buffer.data(), 1, buffer.size(), stream);
        output.append(buffer.data(), static_cast<int>(count));
    } while (count == buffer.size());
    return output;
}

} // namespace

QString runCommand(const QString &command)
{
    std::FILE *stream = openPipe(command);
    if (!stream)
        return {};
    // Decoded as a whole: a character may lie across two reads.
    QString output = QString::fromLocal8Bit(readToEnd(stream));
    ::pclose(stream);
    if (output.endsWith(QLatin1Char('\n')))
        output.chop(1);
    return output;
}

std::optional<QByteArray> readCommandOutput(const QString &command)
{
    const auto previousHandler = std::signal(SIGCHLD, SIG_DFL);
    std::FILE *stream = openPipe(command);
    if (!stream)
        return std::nullopt;
    const QByteArray output = readToEnd(stream);
    ::pclose(stream);
    std::signal(SIGCHLD, previousHandler);
    return output;
}

void startCommand(const QString &command)
{
    std::FILE *stream = openPipe(command);
    if (!stream)
        return;
    // Somebody has to collect the child and the descriptor, but not the caller.
    std::thread([stream] {
        readToEnd(stream);
        ::pclose(stream);
    }).detach();
}

} // namespace OfficeAssiant
