#pragma once

#include <QJsonObject>
#include <QMap>
#include <QStringList>

#include "doctor/machine/machine.h"

namespace helio {

/// How the desktop shows programs: by the name of each that a desktop entry starts, its "title" in
/// @p language, and its "icon" as a data address where it has one of at most 64 KiB.
/// @param programs as ListedProcess names them; at most 500 are looked at
QJsonObject programLooks(const QStringList &programs, const QString &language,
                         const doctor::Machine &machine);

/// The same for desktop entries, by their names. An entry that is not shown in menus has a title
/// as well.
QJsonObject entryLooks(const QStringList &names, const QString &language,
                       const doctor::Machine &machine);

/// The same for files of desktop entries, by the names that the caller has given them.
QJsonObject fileLooks(const QMap<QString, QString> &files, const QString &language,
                      const doctor::Machine &machine);

} // namespace helio
