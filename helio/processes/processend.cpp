#include "helio/processes/processend.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "doctor/machine/deadline.h"
#include "helio/processes/processlist.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr std::chrono::seconds patience{5};
constexpr int betweenLooksMs = 100;

ProcessEnd refused(const QString &reason)
{
    return {ProcessEnd::Kind::Refused, reason};
}

/// Why the process may not be ended; empty if it may.
QString problemOf(qint64 id, quint64 start)
{
    const doctor::Machine machine = doctor::thisMachine();
    const QVector<ListedProcess> processes = readProcesses(machine);
    if (familyOf(getpid(), processes).contains(id))
        return texts::tr("This process belongs to the assistant itself.");
    const auto found =
        std::find_if(processes.begin(), processes.end(), [id, start](const ListedProcess &one) {
            return one.id == id && one.start == start;
        });
    if (found == processes.end())
        return texts::tr("This process has ended already.");
    return found->user == machine.user ? QString()
                                       : texts::tr("This process belongs to another user.");
}

/// Refers to one process, also when its number is given to another; see pidfd_open(2).
class ProcessDescriptor
{
public:
    explicit ProcessDescriptor(qint64 id)
        : m_number(static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(id), 0)))
    {
    }
    ~ProcessDescriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Q_DISABLE_COPY(ProcessDescriptor)

    bool isOpen() const { return m_number >= 0; }
    bool send(int signal) const
    {
        return syscall(SYS_pidfd_send_signal, m_number, signal, nullptr, 0) == 0;
    }
    bool hasEndedWithin(int milliseconds) const
    {
        pollfd waited{m_number, POLLIN, 0};
        return poll(&waited, 1, milliseconds) == 1;
    }

private:
    int m_number;
};

} // namespace

ProcessEnd endProcess(qint64 id, quint64 start, bool force,
                      const std::function<bool()> &isCancelled)
{
    const ProcessDescriptor process(id);
    // Looked at after it was opened: from here on the descriptor is of the process that was meant.
    const QString problem = problemOf(id, start);
    if (!problem.isEmpty())
        return refused(problem);
    if (!process.isOpen() || !process.send(force ? SIGKILL : SIGTERM))
        return refused(QString::fromLocal8Bit(std::strerror(errno)));
    const doctor::Deadline deadline(patience);
    while (!process.hasEndedWithin(betweenLooksMs)) {
        if (isCancelled())
            return {ProcessEnd::Kind::Cancelled, {}};
        if (deadline.isOver())
            return {ProcessEnd::Kind::Remains, {}};
    }
    return {};
}

} // namespace helio
