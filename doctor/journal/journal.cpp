#include "doctor/journal/journal.h"

#include <QDir>

#include <algorithm>
#include <utility>

#include "doctor/journal/applysteps.h"
#include "doctor/journal/ending.h"
#include "doctor/journal/keeping.h"
#include "doctor/journal/run.h"
#include "doctor/journal/undosteps.h"
#include "doctor/journal/watch.h"
#include "texts/texts.h"

namespace doctor {

namespace {

using Outcome = JournalResult::Outcome;

constexpr char stateVariable[] = "XDG_STATE_HOME";
constexpr char stateDirectory[] = ".local/state";
constexpr char journalDirectory[] = "office-assistant/repairs";

JournalResult without(Outcome outcome, const QString &reason, int number = 0)
{
    JournalResult result;
    result.outcome = outcome;
    result.number = number;
    result.reason = reason;
    return result;
}

/// Bytes that the journal keeps for an action.
qint64 sizeOf(const QVector<TreeStep> &steps)
{
    qint64 size = 0;
    for (const TreeStep &step : steps) {
        for (const Node *node : {&step.from, &step.to})
            size += node->content ? node->content->bytes.size() : 0;
    }
    return size;
}

/// Where the contents before the repair are, for those of the steps whose paths stand in the way.
QStringList backupNotes(const Store &store, const Record &record, const QStringList &paths)
{
    QStringList notes;
    for (const TreeStep &step : record.actions.first().steps) {
        const QString path = QFile::decodeName(step.path);
        if (step.from.content && paths.contains(path))
            notes.append(texts::tr("What %1 was before the repair is in %2.")
                             .arg(path, store.contentPath(record.number, *step.from.content)));
    }
    return notes;
}

/// Why a record cannot be undone.
Problem undoRefusal(const std::optional<Record> &record, int number)
{
    if (!record)
        return texts::tr("There is no repair %1.").arg(number);
    if (record->isDamaged)
        return texts::tr("The record of repair %1 is damaged.").arg(number);
    if (record->isUndone())
        return texts::tr("Repair %1 is undone already.").arg(number);
    if (!record->isApplied())
        return texts::tr("Repair %1 was taken back; there is nothing to undo.").arg(number);
    return {};
}

/// Makes and locks the journal, with nothing half done in it.
Problem makeReady(Store &store, QStringList &notes)
{
    Problem problem = store.makeDirectory();
    if (problem || !store.open(problem) || (problem = store.lock()))
        return problem;
    return recoverAll(store, notes);
}

/// What there is to do besides the steps.
Problem endingsOf(const Plan &plan, QVector<Change> &endings)
{
    for (const Change &change : plan.changes) {
        if (change.kind != Change::Kind::End)
            continue;
        if (Problem problem = checkedForEnding({change.process, change.processStart}))
            return problem;
        endings.append(change);
    }
    return {};
}

} // namespace

Journal::Journal(const QString &directory, const JournalLimits &limits)
    : m_directory(directory), m_limits(limits)
{
}

QString Journal::defaultDirectory()
{
    QString state = qEnvironmentVariable(stateVariable);
    // Relative paths do not count, says the XDG standard for base directories.
    if (!QDir::isAbsolutePath(state))
        state = QDir::home().filePath(QLatin1String(stateDirectory));
    return QDir::cleanPath(state) + QLatin1Char('/') + QLatin1String(journalDirectory);
}

JournalResult Journal::apply(const Plan &plan)
{
    if (!plan.refusal.isEmpty())
        return without(Outcome::Refused, plan.refusal);
    Store store(m_directory);
    QStringList notes;
    const Problem problem = makeReady(store, notes);
    JournalResult result = problem ? without(Outcome::Refused, *problem) : applyIn(store, plan);
    result.notes = notes + result.notes;
    return result;
}

JournalResult Journal::applyIn(Store &store, const Plan &plan)
{
    Action action;
    action.time = QDateTime::currentMSecsSinceEpoch();
    QVector<Change> endings;
    Problem problem = endingsOf(plan, endings);
    if (!problem)
        problem = stepsToApply(plan, action.steps);
    if (!problem && action.steps.isEmpty() && endings.isEmpty())
        problem = texts::tr("There is nothing left to change.");
    if (!problem && sizeOf(action.steps) > m_limits.size)
        problem = texts::tr("The files are too large to be kept for undo.");
    if (problem)
        return without(Outcome::Refused, *problem);

    Record record;
    record.check = plan.check;
    record.repair = plan.repair;
    JournalResult result;
    problem = runAction(store, record, action, endings, m_limits.patience, result.notes);
    result.number = record.number;
    if (problem) {
        result.reason = *problem;
        return result;
    }
    result.outcome = Outcome::Applied;
    removeOld(store, record.number, m_limits);
    return result;
}

JournalResult Journal::undo(int number)
{
    Store store(m_directory);
    Problem problem;
    if (!store.open(problem))
        return without(Outcome::Failed, problem ? *problem : *undoRefusal({}, number));
    if ((problem = store.lock()))
        return without(Outcome::Failed, *problem);
    QStringList notes;
    problem = recoverAll(store, notes);
    JournalResult result = problem ? without(Outcome::Failed, *problem) : undoIn(store, number);
    result.number = number;
    result.notes = notes + result.notes;
    return result;
}

JournalResult Journal::undoIn(Store &store, int number)
{
    std::optional<Record> record = store.read(number);
    Problem problem = undoRefusal(record, number);
    if (!problem)
        problem = store.load(number, record->actions.first());
    return problem ? without(Outcome::Failed, *problem) : undoRecord(store, *record);
}

JournalResult Journal::undoRecord(Store &store, Record &record)
{
    const UndoPlan plan = planUndo(record, readAll(store));
    JournalResult result;
    result.kept = plan.kept;
    if (plan.problem) {
        result.outcome = plan.isConflict ? Outcome::Conflict : Outcome::Failed;
        result.reason = *plan.problem;
        result.notes = backupNotes(store, record, plan.kept);
        return result;
    }
    Action action;
    action.isUndo = true;
    action.time = QDateTime::currentMSecsSinceEpoch();
    action.steps = plan.steps;
    const Problem problem = runAction(store, record, action, {}, m_limits.patience, result.notes);
    if (problem)
        result.reason = *problem;
    else
        result.outcome = Outcome::Undone;
    return result;
}

std::optional<QString> Journal::watchRefusal(const QStringList &paths) const
{
    QVector<TreeStep> steps;
    return stepsToWatch(paths, m_limits.watched, steps);
}

JournalResult Journal::beginWatch(const QString &check, const QString &repair,
                                  const QStringList &paths)
{
    const auto store = std::make_shared<Store>(m_directory);
    QStringList notes;
    Record record;
    record.check = check;
    record.repair = repair;
    Action action;
    action.isWatch = true;
    action.time = QDateTime::currentMSecsSinceEpoch();
    Problem problem = makeReady(*store, notes);
    if (!problem)
        problem = stepsToWatch(paths, m_limits.watched, action.steps);
    if (!problem)
        problem = store->begin(record, action);
    JournalResult result = without(Outcome::Applied, {}, record.number);
    if (problem) {
        result = without(Outcome::Refused, *problem);
    } else {
        removeOld(*store, record.number, m_limits);
        m_watched = store;
        m_watch = record.number;
    }
    result.notes = notes;
    return result;
}

WatchResult Journal::endWatch()
{
    WatchResult watched;
    const std::shared_ptr<Store> store = std::exchange(m_watched, nullptr);
    std::optional<Record> record = store ? store->read(m_watch) : std::nullopt;
    if (!record || !record->openAction() || !record->openAction()->isWatch) {
        watched.journal.reason = texts::tr("There is no repair %1.").arg(m_watch);
        return watched;
    }
    const Problem problem = adopt(*store, *record, watched.journal.notes);
    watched.journal.number = record->number;
    if (problem) {
        watched.journal.reason = *problem;
        return watched;
    }
    watched.journal.outcome = Outcome::Applied;
    if (record->number == 0)
        return watched;
    for (const TreeStep &step : record->actions.first().steps)
        watched.changes.append(changeOf(step));
    return watched;
}

QVector<JournalEntry> Journal::history() const
{
    Store store(m_directory);
    Problem problem;
    QVector<JournalEntry> entries;
    if (!store.open(problem))
        return entries;
    const QVector<Record> records = readAll(store);
    std::transform(records.begin(), records.end(), std::back_inserter(entries), entryOf);
    return entries;
}

QStringList Journal::recover()
{
    Store store(m_directory);
    Problem problem;
    if (!store.open(problem))
        return {};
    const QVector<Record> records = readAll(store);
    const bool isAnyOpen = std::any_of(records.begin(), records.end(),
                                       [](const Record &record) { return record.openAction(); });
    QStringList notes;
    if (isAnyOpen && !store.lock())
        recoverAll(store, notes);
    return notes;
}

} // namespace doctor
