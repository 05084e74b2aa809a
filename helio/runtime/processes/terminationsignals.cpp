#include "helio/runtime/processes/terminationsignals.h"

#include <QElapsedTimer>

#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

namespace {

constexpr int caughtSignals[] = {SIGTERM, SIGINT, SIGHUP};

/// What the pipe says when there is nothing more to watch.
constexpr unsigned char noMoreSignals = 0;
constexpr int withoutEnd = -1;
constexpr int checkIntervalMs = 100;
/// How long programs may take to end in order.
constexpr int graceMs = 1000;
/// timeout(1) and terminals send one signal to the process and to its group.
constexpr int sameSignalMs = 100;

// Not a signalfd: it needs blocked signals, and started programs would inherit the blocking.
int pipeEnds[2] = {-1, -1};
std::atomic<int> firstSignal{0};

void writeToPipe(int signal)
{
    const int previousError = errno;
    const auto byte = static_cast<unsigned char>(signal);
    // If the pipe is full, a signal is already waiting to be read.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = previousError;
}

/// Lets a write fail; started programs get the default handling, unlike with SIG_IGN.
void ignore(int) {}

void setHandler(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

void setHandlers(void (*handler)(int))
{
    for (const int signal : caughtSignals)
        setHandler(signal, handler);
}

} // namespace

namespace helio {

TerminationSignals::TerminationSignals(std::function<void(int)> endPrograms, int consumer)
    : m_endPrograms(std::move(endPrograms)), m_consumer(consumer)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning("cannot make a pipe for signals, so they end the program at once");
        return;
    }
    m_watcher = std::thread([this] { watch(); });
    setHandlers(writeToPipe);
    if (m_consumer >= 0)
        setHandler(SIGPIPE, ignore);
}

TerminationSignals::~TerminationSignals()
{
    if (!m_watcher.joinable())
        return;
    setHandlers(SIG_DFL);
    writeToPipe(noMoreSignals);
    m_watcher.join();
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

int TerminationSignals::first()
{
    return firstSignal;
}

void TerminationSignals::watch()
{
    ::pthread_setname_np(::pthread_self(), signalThread);
    firstSignal = nextSignal(withoutEnd);
    m_consumer = -1;
    if (firstSignal == noMoreSignals)
        return;
    emit received();
    endInOrder();
}

void TerminationSignals::endInOrder()
{
    QElapsedTimer taken;
    taken.start();
    for (;;) {
        m_endPrograms(taken.elapsed() < graceMs ? SIGTERM : SIGKILL);
        const int signal = nextSignal(checkIntervalMs);
        if (signal == noMoreSignals)
            return;
        if (signal > 0 && taken.elapsed() > sameSignalMs) {
            m_endPrograms(SIGKILL);
            setHandlers(SIG_DFL);
            ::kill(::getpid(), signal);
        }
    }
}

/// Waits for a signal: noMoreSignals at the end of this object, -1 if none came in time.
int TerminationSignals::nextSignal(int timeoutMs)
{
    for (;;) {
        pollfd sources[] = {{pipeEnds[0], POLLIN, 0}, {m_consumer, 0, 0}};
        const int ready = ::poll(sources, 2, timeoutMs);
        unsigned char byte = noMoreSignals;
        if (ready > 0 && ::read(pipeEnds[0], &byte, 1) == 1)
            return byte;
        if (ready > 0 && (sources[1].revents & (POLLERR | POLLHUP)) != 0)
            return SIGPIPE;
        if (ready == 0)
            return -1;
    }
}

} // namespace helio
