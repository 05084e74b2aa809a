#include "helio/runtime/processes/spawn.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "helio/runtime/processes/descriptor.h"

namespace {

using helio::InheritedDescriptor;

/// The null-terminated list of pointers that posix_spawn() takes.
std::vector<char *> toPointers(QList<QByteArray> &texts)
{
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Gives a new program the default handling of signals, with none blocked.
class SpawnAttributes
{
public:
    SpawnAttributes()
    {
        ::posix_spawnattr_init(&m_attributes);
        sigset_t signalSet;
        ::sigemptyset(&signalSet);
        ::posix_spawnattr_setsigmask(&m_attributes, &signalSet);
        ::sigaddset(&signalSet, SIGPIPE);
        ::sigaddset(&signalSet, SIGCHLD);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signalSet);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&m_attributes); }
    Q_DISABLE_COPY(SpawnAttributes)

    const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

/// All descriptors from this one on are closed in the new program.
int firstClosed(const std::vector<InheritedDescriptor> &descriptors)
{
    int last = STDERR_FILENO;
    for (const InheritedDescriptor &descriptor : descriptors)
        last = std::max(last, descriptor.theirs);
    return last + 1;
}

/// Gives a new program its descriptors.
class SpawnActions
{
public:
    explicit SpawnActions(const std::vector<InheritedDescriptor> &descriptors)
    {
        ::posix_spawn_file_actions_init(&m_actions);
        for (const InheritedDescriptor &descriptor : descriptors)
            ::posix_spawn_file_actions_adddup2(&m_actions, descriptor.ours, descriptor.theirs);
        // A refresh outlives this process and must not keep its pipes open.
        ::posix_spawn_file_actions_addclosefrom_np(&m_actions, firstClosed(descriptors));
    }
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    Q_DISABLE_COPY(SpawnActions)

    const posix_spawn_file_actions_t *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

} // namespace

std::optional<pid_t> helio::spawnProgram(const QList<QByteArray> &words,
                                         const QProcessEnvironment &environment,
                                         const std::vector<InheritedDescriptor> &descriptors)
{
    QList<QByteArray> ownWords = words;
    QList<QByteArray> ownEnvironment;
    const QStringList variables = environment.toStringList();
    for (const QString &variable : variables)
        ownEnvironment.append(QFile::encodeName(variable));
    const SpawnActions actions(descriptors);
    const SpawnAttributes attributes;
    pid_t process = 0;
    const int fault =
        ::posix_spawnp(&process, words.constFirst().constData(), actions.get(), attributes.get(),
                       toPointers(ownWords).data(), toPointers(ownEnvironment).data());
    if (fault != 0)
        return {};
    return process;
}

std::optional<int> helio::awaitProgram(pid_t process, int timeoutMs)
{
    if (timeoutMs >= 0) {
        const Descriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
        pollfd end{descriptor.number(), POLLIN, 0};
        if (descriptor.isOpen() && ::poll(&end, 1, timeoutMs) == 0)
            ::kill(process, SIGKILL);
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return {};
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
