#pragma once

#include <QStringList>

namespace ctl {

/// Runs "assistantctl why denied"; @p arguments are those after "why".
/// @return the exit status, a WhyStatus
int runWhyDenied(const QStringList &arguments);

} // namespace ctl
