#pragma once

#include <QStringList>

namespace ctl {

/// Runs "assistantctl why input"; @p arguments are those beside these words.
/// @return the exit status, a WhyStatus
int runWhyInput(const QStringList &arguments);

} // namespace ctl
