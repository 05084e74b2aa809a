#pragma once

#include <sys/resource.h>

#include <QtGlobal>

namespace testsupport {

/// While this object lives, this process cannot open another file.
class NoMoreDescriptors
{
public:
    NoMoreDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_previous);
        rlimit none = m_previous;
        none.rlim_cur = 0;
        if (::setrlimit(RLIMIT_NOFILE, &none) != 0)
            qFatal("cannot limit the descriptors");
    }

    ~NoMoreDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_previous); }

private:
    Q_DISABLE_COPY_MOVE(NoMoreDescriptors)

    rlimit m_previous{};
};

} // namespace testsupport
