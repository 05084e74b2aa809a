#pragma once

#include <QStringList>

namespace ctl {

/// The exit status of "assistantctl suite".
enum SuiteStatus {
    SuiteDone = 0,
    SuiteNotDone = 1, ///< or no suite is installed
    SuiteMisused = 2,
};

/// Runs "assistantctl suite"; @p arguments are those after that word.
/// @return the exit status, a SuiteStatus
int runSuite(const QStringList &arguments);

} // namespace ctl
