#pragma once

#include <QStringList>

namespace ctl {

/// Runs "assistantctl doctor"; @p arguments are those after that word.
/// @return the exit status, a DoctorStatus
int runDoctor(const QStringList &arguments);

} // namespace ctl
