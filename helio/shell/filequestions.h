#pragma once

#include <QString>

#include "helio/tasks/taskoperations.h"

namespace shell {

/// Asks in a dialog of its own window; a file that is there is only replaced when the user says so.
QString askForFile(const helio::FileQuestion &question);

/// Opens a file with the desktop's program for it, unless the desktop would run it.
bool openFile(const QString &path);

} // namespace shell
