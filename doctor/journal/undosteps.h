#pragma once

#include <QStringList>
#include <QVector>

#include "doctor/journal/record.h"

namespace doctor {

/// How a repair is undone.
struct UndoPlan
{
    QVector<TreeStep> steps;
    /// Where the tree cannot be read, or what changed later contradicts.
    Problem problem;
    bool isConflict = false;
    /// What was changed after the repair and stays; with a conflict, what stands in the way.
    QStringList kept;
};

/// How to take back what @p record did, with the bytes of its contents. What was changed later in
/// the same files is kept: by lines in a text, one by one for rights and attributes. Only reads.
/// @param all what the journal knows: which later repair stands in the way, and since when a file
/// had the content that it gets
UndoPlan planUndo(const Record &record, const QVector<Record> &all);

} // namespace doctor
