#pragma once

#include <QSet>
#include <QString>

namespace standin {

struct Machine;

/// Names of this user's running programs.
QSet<QString> runningPrograms(const Machine &machine);

} // namespace standin
