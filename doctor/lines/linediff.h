#pragma once

#include <QByteArray>
#include <QVector>

namespace doctor {

/// Whole lines of one content that became whole lines of another, both as ranges of bytes. One of
/// the ranges may be empty. A line has its line feed with it.
struct LineChange
{
    int begin = 0;
    int end = 0;
    int newBegin = 0;
    int newEnd = 0;
};

/// What changed from @p before to @p after, from the top down; changes do not touch each other. The
/// shortest list for contents that differ little; beyond a fixed effort neighbouring changes are
/// one. Memory is proportional to the lines between the first and the last that differ.
QVector<LineChange> lineChanges(const QByteArray &before, const QByteArray &after);

} // namespace doctor
