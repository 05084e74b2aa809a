#include "tests/support/unprivileged.h"

#include <QtGlobal>

#include <array>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool dropCapabilities()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
    return ::syscall(SYS_capset, &header, none.data()) == 0;
}

} // namespace

bool testsupport::holdsUnprivileged(const std::function<bool()> &check)
{
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("no process for a check");
    if (child == 0)
        ::_exit(dropCapabilities() && check() ? 0 : 1);
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
