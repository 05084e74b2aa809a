#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

#include "doctor/journal/journalentry.h"
#include "doctor/journal/journallimits.h"
#include "doctor/model/plan.h"

namespace doctor {

class Store;
struct Record;

struct JournalResult
{
    enum class Outcome {
        Applied,
        Undone,
        Refused,  ///< nothing was touched: the plan does not fit, or not now
        Conflict, ///< nothing was touched: what the user changed later stands in the way
        Failed,   ///< all was taken back, or notes says what was not
    };

    Outcome outcome = Outcome::Failed;
    /// The repair's number in the journal; 0 if it is not in there.
    int number = 0;
    /// Why it was not done.
    QString reason;
    /// What the user changed later: kept, or with a conflict what stands in the way.
    QStringList kept;
    /// What an interrupted repair before had left, where backups are, what stayed as it was.
    QStringList notes;
};

/// What came of a watch.
struct WatchResult
{
    /// Applied, or Failed; its number is 0 if nothing was changed.
    JournalResult journal;
    QVector<Change> changes;
};

/// Applies plans so that they can be undone, on disk in a directory of the user. Stopped at any
/// point, by a kill or a loss of power, the next apply(), undo() or recover() makes the tree as it
/// was before. One program at a time works with a journal; any number may read it.
class Journal
{
public:
    explicit Journal(const QString &directory = defaultDirectory(),
                     const JournalLimits &limits = {});

    /// $XDG_STATE_HOME/office-assistant/repairs, else below ~/.local/state.
    static QString defaultDirectory();

    /// Does all that the plan says or nothing. Commands are left to the administrator; processes
    /// end last, and stay ended.
    JournalResult apply(const Plan &plan);
    /// In any order. Later changes of the user in the same files stay.
    JournalResult undo(int number);

    /// Why changes of these paths by somebody else could not be undone: they cannot be read, or
    /// there is too much at them. Only reads.
    std::optional<QString> watchRefusal(const QStringList &paths) const;
    /// Keeps what is at these absolute paths before somebody else changes them. Other repairs wait
    /// for endWatch(). After a kill the next recover() ends the watch.
    /// @return Applied with the number in the journal, or Refused
    JournalResult beginWatch(const QString &check, const QString &repair, const QStringList &paths);
    /// Makes what has changed at those paths an applied repair. What else has changed in the same
    /// directories is not its.
    WatchResult endWatch();

    /// The oldest first. Writes nothing.
    QVector<JournalEntry> history() const;
    /// Takes back what an earlier program left half done, and says so. Writes nothing if there is
    /// none, or another program is at work.
    QStringList recover();

private:
    JournalResult applyIn(Store &store, const Plan &plan);
    JournalResult undoIn(Store &store, int number);
    JournalResult undoRecord(Store &store, Record &record);

    QString m_directory;
    JournalLimits m_limits;
    /// Locked as long as a watch lasts.
    std::shared_ptr<Store> m_watched;
    int m_watch = 0;
};

} // namespace doctor
