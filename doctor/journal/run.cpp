#include "doctor/journal/run.h"

#include "doctor/journal/ending.h"
#include "doctor/journal/watch.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// A directory goes only when it is empty: what earlier steps keep in it goes first, and would come
/// back out of the journal.
Problem makeRemovable(const Action &action, const TreeStep &removal)
{
    for (const TreeStep &step : action.steps) {
        if (&step == &removal)
            break;
        const int slash = step.path.lastIndexOf('/');
        if (step.path.left(slash) != removal.path)
            continue;
        if (Problem problem = removeTemporaries(step))
            return problem;
    }
    return {};
}

Problem performAll(Store &store, int number, Action &action)
{
    for (const TreeStep &step : qAsConst(action.steps)) {
        if (Problem problem = store.add(number, reachedLine(action.reached + 1)))
            return problem;
        ++action.reached;
        const bool removesDirectory = step.kind == TreeStep::Kind::Replace &&
                                      step.from.kind == Node::Kind::Directory &&
                                      step.to.kind == Node::Kind::Absent;
        Problem problem = removesDirectory ? makeRemovable(action, step) : Problem();
        if (!problem)
            problem = perform(step);
        if (problem)
            return problem;
    }
    return {};
}

Problem endAll(const QVector<Change> &endings, std::chrono::milliseconds patience)
{
    for (const Change &change : endings) {
        if (Problem problem = endProcess({change.process, change.processStart}, patience))
            return problem;
    }
    return {};
}

/// From the last step that was reached. Stops where one cannot be taken back: those before it may
/// be of the same path.
Problem takeBackAll(Store &store, int number, Action &action, QStringList &notes)
{
    while (action.reached > 0) {
        Problem kept;
        if (Problem problem = takeBack(action.steps[action.reached - 1], kept))
            return problem;
        if (kept)
            notes.append(*kept);
        --action.reached;
        if (Problem problem = store.add(number, reachedLine(action.reached)))
            return problem;
    }
    return store.add(number, endLine(Action::End::Back));
}

Problem tidyUp(Store &store, int number, const Action &action)
{
    for (const TreeStep &step : action.steps) {
        if (Problem problem = removeTemporaries(step))
            return problem;
    }
    return store.add(number, endLine(Action::End::Clean));
}

Problem recoverWatch(Store &store, Record record, QStringList &notes)
{
    const QString name = record.repair;
    if (Problem problem = adopt(store, record, notes))
        return problem;
    notes.append(
        record.number == 0
            ? texts::tr("\"%1\" was interrupted before it changed anything.").arg(name)
            : texts::tr("\"%1\" was interrupted; what it changed can be undone as repair %2.")
                  .arg(name, QString::number(record.number)));
    return {};
}

Problem recover(Store &store, const Record &record, QStringList &notes)
{
    Action action = *record.openAction();
    if (action.isWatch)
        return recoverWatch(store, record, notes);
    const QString number = QString::number(record.number);
    if (action.end == Action::End::Done) {
        const QString done =
            action.isUndo ? texts::tr("Undoing repair %1 (%2) was interrupted when it was done; "
                                      "its temporary files were removed.")
                          : texts::tr("Repair %1 (%2) was interrupted when it was done; its "
                                      "temporary files were removed.");
        notes.append(done.arg(number, record.repair));
        return tidyUp(store, record.number, action);
    }
    Problem problem = store.load(record.number, action);
    if (!problem)
        problem = takeBackAll(store, record.number, action, notes);
    if (problem)
        notes.append(texts::tr("Repair %1 (%2) was interrupted and could not be taken back yet: %3")
                         .arg(number, record.repair, *problem));
    else if (action.isUndo)
        notes.append(
            texts::tr("Undoing repair %1 (%2) was interrupted; the repair is in force again.")
                .arg(number, record.repair));
    else
        notes.append(texts::tr("Repair %1 (%2) was interrupted; it has been taken back.")
                         .arg(number, record.repair));
    return problem;
}

} // namespace

Problem runAction(Store &store, Record &record, Action action, const QVector<Change> &endings,
                  std::chrono::milliseconds patience, QStringList &notes)
{
    if (Problem problem = store.begin(record, action))
        return problem;
    Problem problem = performAll(store, record.number, action);
    if (!problem)
        problem = endAll(endings, patience);
    if (!problem)
        problem = store.add(record.number, endLine(Action::End::Done));
    if (problem) {
        if (Problem failure = takeBackAll(store, record.number, action, notes))
            notes.append(
                texts::tr("Not all could be taken back: %1 This is tried again at the next start.")
                    .arg(*failure));
        return problem;
    }
    // What stays now is removed at the next start.
    tidyUp(store, record.number, action);
    return {};
}

Problem recoverAll(Store &store, QStringList &notes)
{
    Problem failure;
    const QVector<int> numbers = store.numbers();
    for (const int number : numbers) {
        const std::optional<Record> record = store.read(number);
        Problem problem;
        if (!record)
            problem = store.remove(number);
        else if (record->openAction())
            problem = recover(store, *record, notes);
        if (problem && !failure)
            failure = problem;
    }
    return failure;
}

} // namespace doctor
