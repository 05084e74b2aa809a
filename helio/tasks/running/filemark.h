#pragma once

#include <QString>

#include <tuple>

#include <sys/types.h>

namespace helio {

/// Which file stands at a path, and when it was written last: tells whether a run has written it.
class FileMark
{
public:
    /// A path without a file has a mark, too.
    explicit FileMark(const QString &path);

    bool isThere() const { return m_size >= 0; }
    bool operator==(const FileMark &other) const { return all() == other.all(); }

private:
    std::tuple<dev_t, ino_t, qint64, qint64, qint64> all() const
    {
        return {m_device, m_inode, m_seconds, m_nanoseconds, m_size};
    }

    dev_t m_device = 0;
    ino_t m_inode = 0;
    qint64 m_seconds = 0;
    qint64 m_nanoseconds = 0;
    qint64 m_size = -1;
};

} // namespace helio
