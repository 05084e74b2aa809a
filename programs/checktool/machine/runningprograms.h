#pragma once

#include <QSet>
#include <QString>

namespace standin {

struct Machine;

/// The names of the programs that run for this user.
QSet<QString> runningPrograms(const Machine &machine);

} // namespace standin
