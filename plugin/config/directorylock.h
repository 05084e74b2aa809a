#pragma once

#include <QString>

namespace OfficeAssiant {

/// An advisory lock (flock(2)) on a directory itself, so that no lock file is left behind. Programs
/// of the same home share it. It ends with this object or the process.
class DirectoryLock
{
public:
    enum Kind {
        Shared,
        Exclusive
    };

    constexpr DirectoryLock() = default;

    /// Waits @p longestWaitMs at most for others to give the lock back.
    DirectoryLock(const QString &directory, Kind kind, int longestWaitMs);
    ~DirectoryLock();

    DirectoryLock(const DirectoryLock &) = delete;
    DirectoryLock &operator=(DirectoryLock &&other) noexcept;

    /// Whether another program or thread kept the lock. False where the file system has no locks:
    /// the caller then goes on without one.
    bool isRefused() const { return m_isRefused; }

    /// Whether this object has a lock on the directory that is at that path now.
    bool isHeldOn(const QString &directory) const;

    /// Replaces the shared lock by the exclusive one. If others share it, neither is kept.
    void makeExclusive();

private:
    void acquire(int operation, int longestWaitMs);

    int m_descriptor = -1;
    bool m_isRefused = false;
};

} // namespace OfficeAssiant
