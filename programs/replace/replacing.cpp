#include "programs/replace/replacing.h"

#include <QFileInfo>

#include "texts/texts.h"

namespace programs {

namespace {

constexpr char journalName[] = "contentreplace";
/// The journal keeps both contents of each document.
constexpr qint64 mostBytes = 96 << 20;

doctor::JournalResult refused(const QString &reason)
{
    doctor::JournalResult result;
    result.outcome = doctor::JournalResult::Outcome::Refused;
    result.reason = reason;
    return result;
}

} // namespace

doctor::JournalResult replaceIn(const QVector<SearchedDocument> &documents)
{
    doctor::Plan plan;
    plan.check = QLatin1String(journalName);
    plan.repair = QStringLiteral("replace");
    qint64 bytes = 0;
    for (const SearchedDocument &document : documents) {
        if (document.hits.isEmpty())
            continue;
        doctor::Change change;
        change.path = QFileInfo(document.path).absoluteFilePath();
        change.resolved = QFileInfo(document.path).canonicalFilePath();
        change.before = document.before;
        change.after = document.after;
        bytes += document.before.size() + document.after.size();
        plan.changes.append(change);
    }
    if (plan.changes.isEmpty())
        return refused(texts::tr("nothing was found"));
    if (bytes > mostBytes)
        return refused(texts::tr("these are too many documents to undo at once; choose fewer"));
    return doctor::Journal().apply(plan);
}

doctor::JournalResult undoReplacing(int number)
{
    doctor::Journal journal;
    int newest = 0;
    for (const doctor::JournalEntry &entry : journal.history()) {
        const bool isMeant = entry.check == QLatin1String(journalName) &&
                             entry.state == doctor::JournalEntry::State::Applied &&
                             (number == 0 || number == entry.number);
        newest = isMeant ? entry.number : newest;
    }
    return newest > 0 ? journal.undo(newest)
                      : refused(texts::tr("there is no such replacement to undo"));
}

} // namespace programs
