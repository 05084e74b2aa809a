#include "info/shellprocess.h"

#include <QScopeGuard>
#include <QThread>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace OfficeAssiant {

namespace {

constexpr char shell[] = "/bin/sh";
constexpr unsigned long shortestPauseMs = 1;
constexpr unsigned long longestPauseMs = 20;
/// How long a killed program may take to end; in an uninterruptible system call it does not.
constexpr int longestKillMs = 1000;

std::optional<pid_t> spawn(QByteArray command, Apart apart, int input, int output)
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    // In this order, so that an output with the number 0 is not overwritten.
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawnattr_setflags(&attributes, apart == Apart::Session ? POSIX_SPAWN_SETSID
                                                                    : POSIX_SPAWN_SETPGROUP);
    char name[] = "sh";
    char option[] = "-c";
    char *const words[] = {name, option, command.data(), nullptr};
    pid_t child = -1;
    const int fault = ::posix_spawn(&child, shell, &actions, &attributes, words, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return fault == 0 ? std::optional<pid_t>(child) : std::nullopt;
}

/// Appends to @p text until the end of the input; false if the deadline expires first. Goes on
/// after a signal that the host handles.
bool readToEnd(QDeadlineTimer deadline, int input, QByteArray &text)
{
    std::array<char, 65536> piece;
    for (;;) {
        pollfd source = {input, POLLIN, 0};
        const int ready = ::poll(&source, 1, static_cast<int>(deadline.remainingTime()));
        const ssize_t count = ready > 0 ? ::read(input, piece.data(), piece.size()) : ready;
        if (count > 0)
            text.append(piece.data(), static_cast<int>(count));
        if (ready > 0 && count == 0)
            return true;
        if (deadline.hasExpired() || (count < 0 && errno != EINTR))
            return false;
    }
}

} // namespace

std::optional<pid_t> startShell(const QByteArray &command, Apart apart, int output)
{
    // Opened here and not in the child, which would not tell that it has too many files open.
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0)
        return std::nullopt;
    const auto child = spawn(command, apart, nothing, output < 0 ? nothing : output);
    ::close(nothing);
    return child;
}

bool hasEnded(pid_t child, QDeadlineTimer deadline)
{
    unsigned long pauseMs = shortestPauseMs;
    for (;;) {
        const pid_t ended = ::waitpid(child, nullptr, WNOHANG);
        // There is none to collect if the host ignores SIGCHLD.
        if (ended == child || (ended < 0 && errno == ECHILD))
            return true;
        if (deadline.hasExpired())
            return false;
        QThread::msleep(pauseMs);
        pauseMs = std::min(2 * pauseMs, longestPauseMs);
    }
}

std::optional<QByteArray> outputOfShell(const QByteArray &command, QDeadlineTimer deadline)
{
    int ends[2] = {-1, -1};
    // Close-on-exec: programs that other threads start meanwhile must not inherit the pipe.
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    const auto closing = qScopeGuard([&ends] { ::close(ends[0]); });
    const auto child = startShell(command, Apart::Group, ends[1]);
    ::close(ends[1]);
    if (!child)
        return std::nullopt;
    QByteArray text;
    // Kills before it collects: the group's number is not given to another one until then.
    if (!readToEnd(deadline, ends[0], text) || !hasEnded(*child, deadline)) {
        ::kill(-*child, SIGKILL);
        hasEnded(*child, QDeadlineTimer(longestKillMs));
    }
    return text;
}

} // namespace OfficeAssiant
