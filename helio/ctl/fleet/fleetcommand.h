#pragma once

#include <QStringList>

namespace ctl {

/// The exit status of "assistantctl report" and "assistantctl compare".
enum FleetStatus {
    NothingDiffers = 0, ///< or the report is printed
    SomethingDiffers = 1,
    FleetMisused = 2,
    ReportUnreadable = 3,
};

/// Runs "assistantctl report"; @p arguments are those after that word.
/// @return the exit status, a FleetStatus
int runReport(const QStringList &arguments);

/// Runs "assistantctl compare"; @p arguments are those after that word.
/// @return the exit status, a FleetStatus
int runCompare(const QStringList &arguments);

} // namespace ctl
