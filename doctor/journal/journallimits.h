#pragma once

#include <QtGlobal>

#include <chrono>

namespace doctor {

/// How much the journal keeps, and how long a process may take to end.
struct JournalLimits
{
    /// Half a year: settings are written by newer programs then, and nobody remembers the repair.
    std::chrono::hours age{24 * 180};
    /// Many hundred repairs of settings, and a share of a home directory that nobody misses.
    qint64 size = 256 << 20;
    /// Bytes that are read twice while somebody waits: a hundred dumps of crashes, and all
    /// settings.
    qint64 watched = 64 << 20;
    /// As long as a session manager gives programs to end.
    std::chrono::milliseconds patience{10000};
};

} // namespace doctor
