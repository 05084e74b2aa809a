#pragma once

#include <QString>

#include <functional>

namespace helio {

/// How a try to end a process went.
struct ProcessEnd
{
    enum class Kind {
        Ended,
        Remains, ///< it was asked, and has not ended in time
        Refused,
        Cancelled
    };

    Kind kind = Kind::Ended;
    /// Why it is refused, for people.
    QString reason;
};

/// Asks a process to end with SIGTERM, or ends it with SIGKILL if @p force, and waits for five
/// seconds at most. Only the process that was started at @p start (see ListedProcess) is meant, of
/// the user's own and none of this program.
ProcessEnd endProcess(qint64 id, quint64 start, bool force,
                      const std::function<bool()> &isCancelled);

} // namespace helio
