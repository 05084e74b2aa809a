#pragma once

#include "helio/tasks/running/taskrun.h"

namespace helio {

/// Has a process of its own write the system report to a new file.
TaskEnd reportedTo(const TaskRun &run, const QString &file);

} // namespace helio
