#pragma once

#include <QStringList>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/lists.h"

namespace doctor {

/// The choice that KDE Frameworks 5 should make, not compared with it: list by list what is a
/// default, then what was added; entries that are hidden or not for this desktop do not count,
/// removed ones stay out. Among entries that no list names it goes by their InitialPreference; here
/// the first one of the cache stands for that.
OpenChoice kdeChoice(const AssociationLists &lists, const DesktopEntries &entries,
                     const QStringList &types);

} // namespace doctor
