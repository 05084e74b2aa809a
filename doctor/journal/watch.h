#pragma once

#include <QStringList>
#include <QVector>

#include "doctor/journal/store.h"
#include "doctor/model/plan.h"

namespace doctor {

/// For each path a step from what is there to the same. Where a path is a link, what it leads to is
/// watched too; of directories that are not there yet, each. Only reads.
/// @param most bytes of the contents; a problem if there are more, or a path cannot be kept
Problem stepsToWatch(const QStringList &paths, qint64 most, QVector<TreeStep> &steps);

/// Ends a watch. What has changed becomes an applied repair, the one action of @p record; @p notes
/// says what of it cannot be undone. If nothing has changed the record is removed and its number 0.
Problem adopt(Store &store, Record &record, QStringList &notes);

/// A step that was done, for people.
Change changeOf(const TreeStep &step);

} // namespace doctor
