#pragma once

#include <QVector>
#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs code in a child that is traced: killed before its n-th system call, or made to see one
/// fail.
namespace stoppedchild {

enum class Way {
    Kill, ///< killed before the call
    Tear, ///< killed after a write of which only the first half was done
    Fail, ///< the call does nothing and answers with an error; the child goes on
};

struct Ending
{
    /// System calls, or those that count, until the child ended.
    int calls = 0;
    /// -1 if it was killed.
    int status = -1;
};

#ifdef __x86_64__
constexpr bool canChangeCalls = true;

inline bool isWrite(quint64 call)
{
    return call == SYS_write;
}

/// Calls that touch files; the others would only show that memory can run out.
inline bool touchesFiles(quint64 call)
{
    static const QVector<quint64> calls = {
        SYS_openat, SYS_read,        SYS_write,      SYS_fsync,     SYS_fstat,    SYS_newfstatat,
        SYS_flock,  SYS_linkat,      SYS_mkdirat,    SYS_mkdir,     SYS_renameat, SYS_renameat2,
        SYS_chmod,  SYS_fchownat,    SYS_ftruncate,  SYS_symlinkat, SYS_unlinkat, SYS_utimensat,
        SYS_open,   SYS_listxattr,   SYS_getxattr,   SYS_setxattr,  SYS_stat,     SYS_getdents64,
        SYS_statx,  SYS_removexattr, SYS_readlinkat, SYS_rmdir};
    return calls.contains(call);
}
#else
constexpr bool canChangeCalls = false;
inline bool isWrite(quint64)
{
    return false;
}
inline bool touchesFiles(quint64)
{
    return false;
}
#endif

/// Changes the call that @p child is about to make.
inline void changeCall(pid_t child, Way way)
{
#ifdef __x86_64__
    user_regs_struct registers{};
    ::ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    if (way == Way::Tear)
        registers.rdx /= 2;
    else
        registers.orig_rax = ~0ULL;
    ::ptrace(PTRACE_SETREGS, child, nullptr, &registers);
#else
    Q_UNUSED(child)
    Q_UNUSED(way)
#endif
}

inline void setResult(pid_t child, int error)
{
#ifdef __x86_64__
    user_regs_struct registers{};
    ::ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    registers.rax = quint64(-qint64(error));
    ::ptrace(PTRACE_SETREGS, child, nullptr, &registers);
#else
    Q_UNUSED(child)
    Q_UNUSED(error)
#endif
}

/// The child goes on until the next stop for a system call; false with its status when it ended.
inline bool goOn(pid_t child, int signal, int &status)
{
    for (;;) {
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0 ||
            ::waitpid(child, &status, 0) != child)
            qFatal("lost a traced child");
        if (!WIFSTOPPED(status))
            return false;
        if (WSTOPSIG(status) == (SIGTRAP | 0x80))
            return true;
        signal = WSTOPSIG(status);
    }
}

/// @p stopAt counts from 1: all calls for Kill, writes for Tear, those that touch files for Fail.
inline Ending run(const std::function<int()> &code, Way way, int stopAt, int error = EIO)
{
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("no child to trace");
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        ::_exit(code());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    Ending ending;
    while (goOn(child, 0, status)) {
        __ptrace_syscall_info info{};
        ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        if (info.op != PTRACE_SYSCALL_INFO_ENTRY)
            continue;
        const bool counts = way == Way::Kill || (way == Way::Tear ? isWrite(info.entry.nr)
                                                                  : touchesFiles(info.entry.nr));
        if (!counts || ++ending.calls != stopAt)
            continue;
        if (way != Way::Kill) {
            changeCall(child, way);
            if (!goOn(child, 0, status))
                break;
        }
        if (way == Way::Fail) {
            setResult(child, error);
            continue;
        }
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
        return ending;
    }
    ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ending;
}

} // namespace stoppedchild
