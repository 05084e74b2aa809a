#include "programs/missingfonts/resourcelimits.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <exception>

#include <sys/resource.h>
#include <unistd.h>

#include "programs/missingfonts/common/limits.h"

namespace programs {

namespace {

// The sanitizers need terabytes of address space for their own bookkeeping.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

void setSoftLimit(rlim_t value)
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_DATA, &limit) != 0)
        return;
    limit.rlim_cur = std::min(value, limit.rlim_max);
    setrlimit(RLIMIT_DATA, &limit);
}

template<std::size_t size>
[[noreturn]] void endWith(const char (&message)[size])
{
    const ssize_t written = write(STDERR_FILENO, message, size - 1);
    static_cast<void>(written);
    _exit(1);
}

extern "C" void endForTime(int)
{
    endWith("the document takes too long to read\n");
}

[[noreturn]] void endForMemory()
{
    endWith("the document needs too much memory\n");
}

} // namespace

MemoryLimit::MemoryLimit()
{
    rlimit limit = {};
    getrlimit(RLIMIT_DATA, &limit);
    m_previous = limit.rlim_cur;
    if (!isSanitized)
        setSoftLimit(std::min<rlim_t>(limit.rlim_cur, limits::dataBytes));
}

MemoryLimit::~MemoryLimit()
{
    setSoftLimit(m_previous);
}

void guardProcess()
{
    std::set_terminate(endForMemory);
    std::signal(SIGXCPU, endForTime);
    rlimit limit = {};
    if (getrlimit(RLIMIT_CPU, &limit) != 0)
        return;
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, limits::processorSeconds);
    setrlimit(RLIMIT_CPU, &limit);
}

} // namespace programs
