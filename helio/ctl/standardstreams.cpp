#include "helio/ctl/standardstreams.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr char nothing[] = "/dev/null";

} // namespace

void ctl::openMissingStandardStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // open() returns the lowest free number, which is this one.
        if (::fcntl(stream, F_GETFD) < 0 && errno == EBADF)
            ::open(nothing, O_RDWR);
    }
}

int ctl::takeStandardInput()
{
    const int input = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int none = ::open(nothing, O_RDONLY | O_CLOEXEC);
    if (input < 0 || none < 0)
        return STDIN_FILENO;
    ::dup2(none, STDIN_FILENO);
    ::close(none);
    return input;
}
