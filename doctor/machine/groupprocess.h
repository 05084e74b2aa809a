#pragma once

#include <QProcess>

#include <csignal>
#include <unistd.h>

#include "qtversion/qtversion.h"

namespace doctor {

/// A program in a process group of its own, which its children belong to.
class GroupProcess : public qtversion::PreparedProcess
{
public:
    /// Kills it with its children, and waits for its end.
    void killGroup()
    {
        const qint64 group = processId();
        if (group > 0)
            ::kill(-static_cast<pid_t>(group), SIGKILL);
        waitForFinished(longestEndMs);
    }

protected:
    void prepare() override { ::setpgid(0, 0); }

private:
    static constexpr int longestEndMs = 1000;
};

} // namespace doctor
