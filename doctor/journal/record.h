#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

#include "doctor/journal/tree/treestep.h"

namespace doctor {

/// Applying a repair, or undoing it: begun with all its steps, then done or taken back. Or a watch
/// over paths that somebody else changes: its steps lead from each path to itself, until what was
/// changed is adopted as a repair that is done.
struct Action
{
    enum class End {
        None, ///< begun, and perhaps stopped in the middle
        Done,
        Clean, ///< done, and its temporary files are removed
        Back,  ///< taken back
    };

    bool isUndo = false;
    bool isWatch = false;
    /// Milliseconds since 1970, UTC.
    qint64 time = 0;
    QVector<TreeStep> steps;
    /// So many steps, from the first, may have been done. The same path may be in several, so that
    /// what is there does not tell.
    int reached = 0;
    End end = End::None;

    bool isDone() const { return end == End::Done || end == End::Clean; }
};

/// What the journal knows of one repair: applied first, undone later.
struct Record
{
    int number = 0;
    QString check;
    QString repair;
    QVector<Action> actions;
    /// It cannot be read; its number is all that is known.
    bool isDamaged = false;

    bool isApplied() const;
    bool isUndone() const;
    /// What was begun and not ended, or done and not tidied up.
    const Action *openAction() const;
};

// A record is a file to which lines are only ever added, each a checksum and a JSON object. A line
// that a kill or a full disk cut off counts as not written.

/// The line that an action begins with; for one that is clean already the only line.
QByteArray beginLine(const Record &record, const Action &action);
/// The line for the first @p reached steps, before the last of them is done or after the next was
/// taken back.
QByteArray reachedLine(int reached);
/// The line that an action comes to @p end with.
QByteArray endLine(Action::End end);
/// Room that the lines after the first need: they have to be written also when the disk is full.
int roomForLines(const Action &action);

/// Reads a record without the bytes of its contents. Nothing if no action was begun: the program
/// was stopped while it wrote the record, before it changed anything.
std::optional<Record> parsedRecord(const QByteArray &content);

} // namespace doctor
