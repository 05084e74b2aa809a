#pragma once

#include <QSet>
#include <QString>

namespace programs {

struct Machine;

/// Names of this user's running programs.
QSet<QString> runningPrograms(const Machine &machine);

} // namespace programs
