#include "helio/shell/terminationsignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int caughtSignals[] = {SIGTERM, SIGINT, SIGHUP};

// Not a signalfd: it needs blocked signals, and started programs would inherit the blocking.
int pipeEnds[2] = {-1, -1};

void writeToPipe(int)
{
    const int previousError = errno;
    const char byte = 0;
    // If the pipe is full, a signal is already waiting to be read.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = previousError;
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : caughtSignals)
        sigaction(signal, &action, nullptr);
}

} // namespace

namespace shell {

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning("cannot make a pipe for signals, so they end the program at once");
        return;
    }
    auto *notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) > 0) {
        }
        emit received();
    });
    setHandler(writeToPipe);
}

TerminationSignals::~TerminationSignals()
{
    if (pipeEnds[0] < 0)
        return;
    setHandler(SIG_DFL);
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

} // namespace shell
