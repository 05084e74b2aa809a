#pragma once

#include <QStringList>

namespace ctl {

/// Runs "assistantctl why open"; @p arguments are those behind these words.
/// @return the exit status, a WhyStatus
int runWhyOpen(const QStringList &arguments);

} // namespace ctl
