#include "doctor/why/denied/denied.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace doctor {

namespace {

/// The errno of opening for reading: access(2) does not ask AppArmor. 0 if that works, or for what
/// may not be opened without a side effect.
int openProblem(const QByteArray &path, mode_t mode)
{
    if (!S_ISREG(mode) && !S_ISDIR(mode))
        return 0;
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    ::close(descriptor);
    return 0;
}

/// The kernel's answer, an errno; 0 if it grants the access.
int kernelAnswer(const QByteArray &path, Access access)
{
    struct stat state = {};
    if (::stat(path.constData(), &state) != 0)
        return errno;
    const unsigned rights = rightsFor(access, state.st_mode);
    const int error =
        ::faccessat(AT_FDCWD, path.constData(), static_cast<int>(rights), AT_EACCESS) == 0 ? 0
                                                                                           : errno;
    return error == 0 && access == Access::Read ? openProblem(path, state.st_mode) : error;
}

bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS;
}

/// Obstacles that access(2) does not know.
bool isBeyondRights(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::NotProgram:
    case Obstacle::AppendOnly:
    case Obstacle::DiskFull:
    case Obstacle::NoFreeInodes:
        return true;
    default:
        return false;
    }
}

/// The kernel's answer counts; the passage only explains it.
void compare(Passage &passage, int error)
{
    if (error == 0 && !isBeyondRights(passage.obstacle)) {
        passage.obstacle = Obstacle::None;
    } else if (error != 0 && passage.obstacle == Obstacle::None) {
        passage.obstacle = isRefusal(error) ? Obstacle::Unexplained : Obstacle::Undecided;
        passage.error = error;
    }
}

Denial::Verdict verdictOf(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::None:
        return Denial::Verdict::Granted;
    case Obstacle::Unexplained:
    case Obstacle::Undecided:
        return Denial::Verdict::Undecided;
    default:
        return Denial::Verdict::Denied;
    }
}

} // namespace

Denial whyDenied(const QByteArray &path, Access access)
{
    const Credentials own = ownCredentials();
    Denial denial;
    denial.passage = walkPath(path, access, own);
    const Passage &passage = denial.passage;
    compare(denial.passage, kernelAnswer(path, access));
    denial.verdict = verdictOf(passage.obstacle);
    denial.text = explanation(passage);
    denial.remedy = remedyFor(passage, own);
    return denial;
}

} // namespace doctor
