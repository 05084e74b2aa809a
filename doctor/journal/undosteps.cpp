#include "doctor/journal/undosteps.h"

#include <QFile>
#include <QSet>

#include <algorithm>

#include "doctor/journal/applysteps.h"
#include "doctor/journal/tree/outlook.h"
#include "doctor/lines/merge.h"
#include "texts/texts.h"

namespace doctor {

namespace {

/// Takes back one value of a node: @p now as if it had never become @p to. False if it was changed
/// since.
template<typename Value>
bool takeBackValue(Value &now, const Value &from, const Value &to)
{
    if (from == to || now == from)
        return true;
    if (now != to)
        return false;
    now = from;
    return true;
}

bool takeBackAttributes(Node &now, const Node &from, const Node &to)
{
    if (!now.attributes || !from.attributes || !to.attributes)
        return true;
    QSet<QByteArray> names;
    for (const auto &attributes : {*from.attributes, *to.attributes}) {
        const QList<QByteArray> keys = attributes.keys();
        names.unite(QSet<QByteArray>(keys.begin(), keys.end()));
    }
    return std::all_of(names.begin(), names.end(), [&](const QByteArray &name) {
        const auto at = [&name](const Node &node) {
            return node.attributes->contains(name)
                       ? std::make_optional(node.attributes->value(name))
                       : std::nullopt;
        };
        std::optional<QByteArray> value = at(now);
        if (!takeBackValue(value, at(from), at(to)))
            return false;
        if (value)
            now.attributes->insert(name, *value);
        else
            now.attributes->remove(name);
        return true;
    });
}

bool takeBackRights(Node &now, const Node &from, const Node &to)
{
    return takeBackValue(now.mode, from.mode, to.mode) &&
           takeBackValue(now.owner, from.owner, to.owner) &&
           takeBackValue(now.group, from.group, to.group);
}

class UndoPlanner
{
public:
    UndoPlanner(const Record &record, const QVector<Record> &all) : m_record(record), m_all(all) {}

    UndoPlan plan()
    {
        const QVector<TreeStep> &steps = m_record.actions.first().steps;
        std::for_each(steps.rbegin(), steps.rend(), [this](const TreeStep &step) {
            if (!m_plan.problem || m_plan.isConflict)
                takeBack(step);
        });
        if (m_plan.problem) {
            m_plan.steps.clear();
            m_plan.kept = m_conflicts;
        }
        m_plan.kept.removeDuplicates();
        return m_plan;
    }

private:
    void takeBack(const TreeStep &step)
    {
        if (step.kind == TreeStep::Kind::Move) {
            moveBack(step);
            return;
        }
        TreeStep undo;
        undo.kind = step.kind;
        undo.path = step.path;
        const bool isRights = step.kind == TreeStep::Kind::Rights;
        if (!look(step.path, isRights ? Depth::Rights : Depth::Everything, undo.from))
            return;
        undo.to = undo.from;
        if (isRights)
            rightsBack(step, undo);
        else
            replaceBack(step, undo);
    }

    void moveBack(const TreeStep &step)
    {
        TreeStep undo;
        undo.kind = TreeStep::Kind::Move;
        undo.path = step.target;
        undo.target = step.path;
        Node old;
        if (!look(step.target, Depth::Rights, undo.from) || !look(step.path, Depth::Rights, old))
            return;
        if (old.kind != Node::Kind::Absent)
            addConflict(step.path, texts::tr("%1 is there again. What was there before is %2.")
                                       .arg(shown(step.path), shown(step.target)));
        else if (undo.from.kind == Node::Kind::Absent)
            addConflict(step.target,
                        texts::tr("%1 is not there any more.").arg(shown(step.target)));
        else
            append(undo);
    }

    void rightsBack(const TreeStep &step, TreeStep &undo)
    {
        if (undo.from.kind != step.to.kind || !takeBackRights(undo.to, step.from, step.to))
            addConflict(
                step.path,
                texts::tr("The rights of %1 were changed after the repair.").arg(shown(step.path)));
        else
            append(undo);
    }

    void replaceBack(const TreeStep &step, TreeStep &undo)
    {
        if (areSame(undo.from, step.from))
            return;
        if (step.from.kind == Node::Kind::Absent)
            createdBack(step, undo);
        else if (step.to.kind == Node::Kind::Absent)
            removedBack(step, undo);
        else
            contentBack(step, undo);
    }

    /// What the repair made goes again, unless somebody has put something into it.
    void createdBack(const TreeStep &step, TreeStep &undo)
    {
        const bool isDirectory = undo.from.kind == Node::Kind::Directory;
        if (undo.from.kind != step.to.kind ||
            (!isDirectory && undo.from.content->hash != step.to.content->hash)) {
            addConflict(
                step.path,
                texts::tr("%1, which the repair made, was changed later.").arg(shown(step.path)));
        } else if (isDirectory && !m_outlook.isEmptyDirectory(step.path)) {
            m_plan.kept.append(shown(step.path));
        } else {
            undo.to = Node();
            append(undo);
        }
    }

    void removedBack(const TreeStep &step, TreeStep &undo)
    {
        if (undo.from.kind != Node::Kind::Absent) {
            addConflict(step.path, texts::tr("%1 is there again.").arg(shown(step.path)));
            return;
        }
        undo.to = step.from;
        append(undo);
    }

    void contentBack(const TreeStep &step, TreeStep &undo)
    {
        if (undo.from.kind != step.to.kind) {
            addConflict(step.path, texts::tr("%1 is not there any more.").arg(shown(step.path)));
            return;
        }
        const bool areRightsBack = takeBackRights(undo.to, step.from, step.to) &&
                                   takeBackAttributes(undo.to, step.from, step.to);
        std::optional<QByteArray> content;
        if (undo.from.content->hash == step.to.content->hash)
            content = step.from.content->bytes;
        else
            content = mergedLines(step.to.content->bytes, undo.from.content->bytes,
                                  step.from.content->bytes);
        if (!areRightsBack || !content) {
            addConflict(step.path,
                        texts::tr("%1 was changed later in the same place.").arg(shown(step.path)));
            return;
        }
        undo.to.content = Content(*content);
        undo.to.times = timesOf(step, undo.to.content->hash);
        if (undo.to.content->hash != step.from.content->hash)
            m_plan.kept.append(shown(step.path));
        append(undo);
    }

    /// When the file had this content last: other repairs may have been undone before.
    std::optional<Times> timesOf(const TreeStep &step, const QByteArray &hash) const
    {
        if (hash == step.from.content->hash)
            return step.from.times;
        for (const Record &record : m_all) {
            for (const Action &action : record.actions) {
                for (const TreeStep &other : action.steps) {
                    const bool isIt = other.path == step.path && other.from.content &&
                                      other.from.content->hash == hash;
                    if (isIt && other.from.times)
                        return other.from.times;
                }
            }
        }
        return {};
    }

    bool look(const QByteArray &path, Depth depth, Node &node)
    {
        Problem problem = m_outlook.look(path, depth, node);
        if (problem && !m_plan.isConflict)
            m_plan.problem = problem;
        return !problem;
    }

    void addConflict(const QByteArray &path, const QString &message)
    {
        m_conflicts.append(shown(path));
        if (m_plan.isConflict)
            return;
        m_plan.isConflict = true;
        const int later = laterRepair(path);
        m_plan.problem = later == 0
                             ? message
                             : texts::tr("%1 was changed by the later repair %2. Undo that first.")
                                   .arg(shown(path), QString::number(later));
    }

    /// The last repair in force that changed the same path; 0 if there is none.
    int laterRepair(const QByteArray &path) const
    {
        int number = 0;
        for (const Record &record : m_all) {
            if (record.number <= m_record.number || !record.isApplied())
                continue;
            for (const TreeStep &step : record.actions.first().steps) {
                if (step.path == path || step.target == path)
                    number = record.number;
            }
        }
        return number;
    }

    void append(TreeStep &step)
    {
        if (step.kind != TreeStep::Kind::Move && areSame(step.from, step.to))
            return;
        if (step.kind == TreeStep::Kind::Replace)
            step.temporary = temporaryName();
        m_outlook.expect(step);
        m_plan.steps.append(step);
    }

    static QString shown(const QByteArray &path) { return QFile::decodeName(path); }

    const Record &m_record;
    const QVector<Record> &m_all;
    Outlook m_outlook;
    UndoPlan m_plan;
    QStringList m_conflicts;
};

} // namespace

UndoPlan planUndo(const Record &record, const QVector<Record> &all)
{
    return UndoPlanner(record, all).plan();
}

} // namespace doctor
