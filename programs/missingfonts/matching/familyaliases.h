#pragma once

#include <QStringList>

namespace standin {

/// All names of the family that @p name is one of, the English one first; @p name alone when it is
/// not in the table. East Asian fonts go by an English name and one in their own script, and
/// documents write either.
QStringList familyAliases(const QString &name);

} // namespace standin
