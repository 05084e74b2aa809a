#include "doctor/journal/watch.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include "doctor/journal/applysteps.h"
#include "doctor/journal/tree/outlook.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// Many more than any command of the suite changes.
constexpr int mostPaths = 2000;
/// Nobody reads a longer change.
constexpr int mostShown = 256 << 10;

class WatchPlanner
{
public:
    explicit WatchPlanner(qint64 most) : m_room(most) {}

    Problem add(const QString &path)
    {
        QByteArray resolved;
        if (Problem problem = addEntry(path, resolved))
            return problem;
        const QFileInfo entry(path);
        if (!entry.isSymLink() || !entry.exists())
            return {};
        if (Problem problem = m_outlook.resolve(path, Outlook::LastLink::Followed, resolved))
            return problem;
        return append(resolved);
    }

    QVector<TreeStep> steps;

private:
    Problem addEntry(const QString &path, QByteArray &resolved)
    {
        const QFileInfo above(QFileInfo(path).path());
        if (above.exists() || above.isSymLink()) {
            Problem problem = m_outlook.resolve(path, Outlook::LastLink::Kept, resolved);
            return problem ? problem : append(resolved);
        }
        if (Problem problem = addEntry(above.filePath(), resolved))
            return problem;
        resolved += '/' + QFile::encodeName(QFileInfo(path).fileName());
        return append(resolved);
    }

    Problem append(const QByteArray &resolved)
    {
        const auto isIt = [&resolved](const TreeStep &step) { return step.path == resolved; };
        if (std::any_of(steps.begin(), steps.end(), isIt))
            return {};
        TreeStep step;
        step.path = resolved;
        step.temporary = temporaryName();
        if (Problem problem = m_outlook.look(resolved, Depth::Everything, step.from))
            return problem;
        m_room -= step.from.content ? step.from.content->bytes.size() : 0;
        if (m_room < 0 || steps.size() >= mostPaths)
            return texts::tr("The files are too many or too large to be kept for undo.");
        step.to = step.from;
        steps.append(step);
        return {};
    }

    Outlook m_outlook;
    qint64 m_room;
};

/// Reads what is there now, and the content from before where it has changed.
Problem readChange(const Store &store, int number, TreeStep &step)
{
    if (Problem problem = Outlook().look(step.path, Depth::Everything, step.to))
        return problem;
    if (areSame(step.from, step.to))
        return {};
    Action before;
    before.steps.resize(1);
    before.steps.first().from = step.from;
    if (Problem problem = store.load(number, before))
        return problem;
    step.from = before.steps.first().from;
    return {};
}

std::optional<QByteArray> shownContent(const Node &node)
{
    return node.kind == Node::Kind::File && node.content && node.content->bytes.size() <= mostShown
               ? std::make_optional(node.content->bytes)
               : std::nullopt;
}

} // namespace

Problem stepsToWatch(const QStringList &paths, qint64 most, QVector<TreeStep> &steps)
{
    WatchPlanner planner(most);
    for (const QString &path : paths) {
        if (Problem problem = planner.add(path))
            return problem;
    }
    steps = planner.steps;
    return {};
}

Problem adopt(Store &store, Record &record, QStringList &notes)
{
    Action adopted;
    adopted.time = record.actions.first().time;
    adopted.end = Action::End::Clean;
    bool isComplete = true;
    for (TreeStep step : qAsConst(record.actions.first().steps)) {
        const Problem problem = readChange(store, record.number, step);
        if (problem) {
            isComplete = false;
            notes.append(texts::tr("What %1 is now cannot be undone: %2")
                             .arg(QFile::decodeName(step.path), *problem));
        } else if (!areSame(step.from, step.to)) {
            adopted.steps.append(step);
        }
    }
    if (adopted.steps.isEmpty() && isComplete) {
        Problem problem = store.remove(record.number);
        record.number = 0;
        return problem;
    }
    adopted.reached = adopted.steps.size();
    record.actions = {adopted};
    return store.begin(record, adopted);
}

Change changeOf(const TreeStep &step)
{
    using Kind = Change::Kind;
    Change change;
    change.path = QFile::decodeName(step.path);
    const bool isSameContent = step.from.kind == step.to.kind && step.from.content &&
                               step.from.content->hash == step.to.content->hash;
    if (step.from.kind == Node::Kind::Absent)
        change.kind = Kind::Create;
    else if (step.to.kind == Node::Kind::Absent)
        change.kind = Kind::Remove;
    else if (isSameContent)
        change.kind = Kind::Rights;
    if (change.kind == Kind::Rights) {
        change.mode = step.to.mode;
        return change;
    }
    change.before = shownContent(step.from);
    change.after = shownContent(step.to);
    if (step.to.kind == Node::Kind::Link)
        change.target = QFile::decodeName(step.to.content->bytes);
    return change;
}

} // namespace doctor
