#pragma once

#include <QStringList>

namespace ctl {

/// The exit status of "assistantctl why".
enum WhyStatus {
    AccessGranted = 0,
    AccessDenied = 1, ///< and explained
    WhyMisused = 2,
    AccessUndecided = 3, ///< refused for a reason that is not known, or not looked at
};

/// Runs "assistantctl why"; @p arguments are those after that word.
/// @return the exit status, a WhyStatus
int runWhy(const QStringList &arguments);

} // namespace ctl
