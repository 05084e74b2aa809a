#include "doctor/journal/journalentry.h"

#include <QFile>

#include "doctor/journal/record.h"

namespace doctor {

namespace {

JournalEntry::State stateOf(const Record &record)
{
    if (record.isDamaged)
        return JournalEntry::State::Damaged;
    if (record.actions.last().end == Action::End::None)
        return JournalEntry::State::Begun;
    if (record.isUndone())
        return JournalEntry::State::Undone;
    return record.isApplied() ? JournalEntry::State::Applied : JournalEntry::State::TakenBack;
}

} // namespace

JournalEntry entryOf(const Record &record)
{
    JournalEntry entry;
    entry.number = record.number;
    entry.check = record.check;
    entry.repair = record.repair;
    entry.state = stateOf(record);
    if (record.actions.isEmpty())
        return entry;
    const Action &applied = record.actions.first();
    entry.time = QDateTime::fromMSecsSinceEpoch(applied.time);
    for (const TreeStep &step : applied.steps) {
        for (const QByteArray &path : {step.path, step.target}) {
            if (!path.isEmpty())
                entry.paths.append(QFile::decodeName(path));
        }
    }
    entry.paths.removeDuplicates();
    return entry;
}

} // namespace doctor
