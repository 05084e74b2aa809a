#include "tests/doctor/why/denied/actor.h"

#include <array>

#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr gid_t noGroup = 3999;

bool keepOnly(const QVector<int> &capabilities)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    for (const int capability : capabilities) {
        const auto number = static_cast<unsigned>(capability);
        sets.at(CAP_TO_INDEX(number)).effective |= CAP_TO_MASK(number);
        sets.at(CAP_TO_INDEX(number)).permitted |= CAP_TO_MASK(number);
    }
    return ::syscall(SYS_capset, &header, sets.data()) == 0;
}

bool become(const Actor &actor)
{
    // Else the kernel hides /proc/self from the new user.
    return ::prctl(PR_SET_KEEPCAPS, 1) == 0 &&
           ::setgroups(static_cast<std::size_t>(actor.groups.size()), actor.groups.data()) == 0 &&
           ::setresgid(noGroup, noGroup, noGroup) == 0 &&
           ::setresuid(actor.user, actor.user, actor.user) == 0 && keepOnly(actor.capabilities) &&
           ::prctl(PR_SET_DUMPABLE, 1) == 0;
}

[[noreturn]] void runChild(int output, const Actor &actor, const QByteArray &directory,
                           const std::function<QByteArray()> &work)
{
    if (::chdir(directory.constData()) != 0 || !become(actor))
        ::_exit(1);
    const QByteArray result = work();
    ::_exit(::write(output, result.constData(), static_cast<std::size_t>(result.size())) ==
                    result.size()
                ? 0
                : 1);
}

} // namespace

QByteArray asActor(const Actor &actor, const QByteArray &directory,
                   const std::function<QByteArray()> &work)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        qFatal("no pipe for an actor");
    const pid_t child = ::fork();
    if (child == 0)
        runChild(ends[1], actor, directory, work);
    ::close(ends[1]);
    QByteArray result;
    std::array<char, 4096> piece{};
    for (ssize_t size = 1; size > 0;) {
        size = ::read(ends[0], piece.data(), piece.size());
        result.append(piece.data(), static_cast<int>(std::max<ssize_t>(size, 0)));
    }
    ::close(ends[0]);
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        qFatal("an actor has failed");
    return result;
}
