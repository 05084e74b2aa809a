#include "doctor/journal/ending.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "doctor/model/descriptor.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// After SIGKILL the kernel only has to clean up; a process that waits for a disk may take longer.
constexpr std::chrono::milliseconds killPatience{5000};

/// Field 22 of /proc/PID/stat; 0 if there is no such process, or it has ended and nobody has asked
/// how.
quint64 startOf(qint64 number)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(number));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = file.readAll();
    // The name before it is in brackets and may have any character.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    constexpr int stateField = 0;
    constexpr int startField = 19;
    const bool isRunning = fields.value(stateField) != "Z" && fields.value(stateField) != "X";
    return isRunning ? fields.value(startField).toULongLong() : 0;
}

bool hasEndedWithin(int descriptor, std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        pollfd ended{descriptor, POLLIN, 0};
        const int result = ::poll(&ended, 1, std::max(int(left.count()), 0));
        if (result >= 0 || errno != EINTR)
            return result > 0;
    }
}

bool sendSignal(int descriptor, int signal)
{
    return ::syscall(SYS_pidfd_send_signal, descriptor, signal, nullptr, 0) == 0 || errno == ESRCH;
}

} // namespace

Problem checkedForEnding(const ProcessId &process)
{
    if (process.number > 1 && process.number != ::getpid() && process.start > 0)
        return {};
    return texts::tr("Process %1 is not one to be ended.").arg(process.number);
}

Problem endProcess(const ProcessId &process, std::chrono::milliseconds patience)
{
    if (Problem problem = checkedForEnding(process))
        return problem;
    const QString number = QString::number(process.number);
    const Descriptor descriptor(int(::syscall(SYS_pidfd_open, pid_t(process.number), 0)));
    if (!descriptor.isOpen() && errno == ESRCH)
        return {};
    if (!descriptor.isOpen())
        return texts::tr("Process %1 cannot be watched while it ends; end it by hand.").arg(number);
    // The descriptor stays with its process, so this tells of the one that gets the signal.
    if (startOf(process.number) != process.start)
        return {};
    if (!sendSignal(descriptor.number(), SIGTERM))
        return texts::tr("Process %1 belongs to another user; only the administrator can end it.")
            .arg(number);
    if (hasEndedWithin(descriptor.number(), patience))
        return {};
    if (sendSignal(descriptor.number(), SIGKILL) &&
        hasEndedWithin(descriptor.number(), killPatience))
        return {};
    return texts::tr("Process %1 did not end.").arg(number);
}

} // namespace doctor
