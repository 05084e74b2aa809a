#include "tests/support/lifeline.h"

#include <QDeadlineTimer>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "tests/support/patience.h"

namespace testsupport {

Lifeline::Lifeline()
{
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0 || ::fcntl(ends[0], F_SETFD, FD_CLOEXEC) != 0)
        qFatal("no pipe");
    m_watched = ends[0];
    m_held = ends[1];
}

Lifeline::~Lifeline()
{
    ::close(m_watched);
    if (m_held >= 0)
        ::close(m_held);
}

bool Lifeline::hasSign()
{
    pollfd watched = {m_watched, POLLIN, 0};
    return ::poll(&watched, 1, longestWaitMs) == 1 && (watched.revents & POLLIN) != 0;
}

bool Lifeline::areAllGone()
{
    ::close(m_held);
    m_held = -1;
    const QDeadlineTimer deadline(longestWaitMs);
    char sign = 0;
    while (!deadline.hasExpired()) {
        pollfd watched = {m_watched, POLLIN, 0};
        if (::poll(&watched, 1, static_cast<int>(deadline.remainingTime())) == 1 &&
            ::read(m_watched, &sign, 1) == 0)
            return true;
    }
    return false;
}

} // namespace testsupport
