#pragma once

#include <QStringList>

namespace programs {

/// All names of the family called @p name, the English one first; @p name alone when it is not in
/// the table. East Asian fonts have an English name and one in their own script, and documents use
/// either.
QStringList familyAliases(const QString &name);

} // namespace programs
