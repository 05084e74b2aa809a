#pragma once

#include <QDateTime>
#include <QStringList>

namespace doctor {

struct Record;

/// A repair in the history.
struct JournalEntry
{
    enum class State {
        Begun, ///< interrupted, or under way in another program
        Applied,
        Undone,
        TakenBack, ///< failed or interrupted; nothing of it is left
        Damaged,   ///< its record cannot be read
    };

    int number = 0;
    QDateTime time;
    QString check;
    QString repair;
    State state = State::Damaged;
    QStringList paths;
};

JournalEntry entryOf(const Record &record);

} // namespace doctor
