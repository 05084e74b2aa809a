#include "doctor/journal/applysteps.h"

#include <QFile>
#include <QRandomGenerator>

#include <array>

#include "doctor/journal/tree/outlook.h"
#include "texts/texts.h"

namespace doctor {

namespace {

using LastLink = Outlook::LastLink;

QString changedSincePlan(const QString &path)
{
    return texts::tr("%1 was changed after this repair was planned. Check again.").arg(path);
}

Node::Kind kindOf(Change::Entry entry)
{
    constexpr std::array<Node::Kind, 3> kinds = {Node::Kind::File, Node::Kind::Directory,
                                                 Node::Kind::Link};
    return kinds[std::size_t(entry)];
}

/// One step after the other, each on what the ones before it leave.
class StepPlanner
{
public:
    Problem add(const Change &change)
    {
        switch (change.kind) {
        case Change::Kind::Write:
            return write(change);
        case Change::Kind::Create:
            return create(change);
        case Change::Kind::Remove:
            return remove(change);
        case Change::Kind::Move:
            return move(change);
        case Change::Kind::Rights:
            return changeRights(change);
        default:
            return {};
        }
    }

    QVector<TreeStep> steps;

private:
    Problem resolve(const Change &change, LastLink lastLink, TreeStep &step) const
    {
        if (Problem problem = m_outlook.resolve(change.path, lastLink, step.path))
            return problem;
        if (!change.resolved.isEmpty() && QFile::encodeName(change.resolved) != step.path)
            return texts::tr("%1 leads to %2 now, and led to %3 when this repair was planned.")
                .arg(change.path, QFile::decodeName(step.path), change.resolved);
        return {};
    }

    /// Reads what is at the change's path, and compares it with what the plan knows of it.
    Problem lookAtPlanned(const Change &change, LastLink lastLink, Depth depth,
                          TreeStep &step) const
    {
        if (Problem problem = resolve(change, lastLink, step))
            return problem;
        if (Problem problem = m_outlook.look(step.path, depth, step.from))
            return problem;
        if (step.from.kind == Node::Kind::Absent)
            return texts::tr("%1 is not there any more.").arg(change.path);
        if (change.before && (!step.from.content || step.from.content->bytes != *change.before))
            return changedSincePlan(change.path);
        return {};
    }

    Problem write(const Change &change)
    {
        TreeStep step;
        if (Problem problem = lookAtPlanned(change, LastLink::Followed, Depth::Everything, step))
            return problem;
        if (step.from.kind != Node::Kind::File || !change.before || !change.after)
            return changedSincePlan(change.path);
        step.to = step.from;
        step.to.content = Content(*change.after);
        step.to.times.reset();
        if (*change.after == *change.before)
            return {};
        return append(step, change.path);
    }

    Problem create(const Change &change)
    {
        TreeStep step;
        if (Problem problem = resolve(change, LastLink::Kept, step))
            return problem;
        if (Problem problem = m_outlook.look(step.path, Depth::Rights, step.from))
            return problem;
        if (step.from.kind != Node::Kind::Absent)
            return texts::tr("%1 is there already.").arg(change.path);
        step.to.kind = kindOf(change.entry);
        if (change.entry == Change::Entry::File)
            step.to.content = Content(change.after.value_or(QByteArray()));
        if (change.entry == Change::Entry::Link)
            step.to.content = Content(QFile::encodeName(change.target));
        else
            step.to.mode = change.mode;
        step.to.owner = change.owner;
        step.to.group = change.group;
        return append(step, change.path);
    }

    Problem remove(const Change &change)
    {
        TreeStep step;
        if (Problem problem = lookAtPlanned(change, LastLink::Kept, Depth::Everything, step))
            return problem;
        if (step.from.kind != kindOf(change.entry))
            return changedSincePlan(change.path);
        return append(step, change.path);
    }

    Problem move(const Change &change)
    {
        TreeStep step;
        step.kind = TreeStep::Kind::Move;
        const Depth depth = change.before ? Depth::Everything : Depth::Rights;
        if (Problem problem = lookAtPlanned(change, LastLink::Kept, depth, step))
            return problem;
        if (Problem problem = m_outlook.resolve(change.target, LastLink::Kept, step.target))
            return problem;
        if (step.target.startsWith(step.path + '/'))
            return texts::tr("%1 cannot be moved into itself.").arg(change.path);
        Node target;
        if (Problem problem = m_outlook.look(step.target, Depth::Rights, target))
            return problem;
        if (target.kind != Node::Kind::Absent)
            return texts::tr("%1 is there already.").arg(change.target);
        step.from.content.reset();
        step.from.attributes.reset();
        step.from.times.reset();
        return append(step, change.path);
    }

    Problem changeRights(const Change &change)
    {
        TreeStep step;
        step.kind = TreeStep::Kind::Rights;
        if (Problem problem = lookAtPlanned(change, LastLink::Followed, Depth::Rights, step))
            return problem;
        step.to = step.from;
        if (change.owner)
            step.to.owner = change.owner;
        if (change.group)
            step.to.group = change.group;
        // A program that runs with its owner's rights does not get those of another.
        const bool changesOwner =
            step.to.owner != step.from.owner || step.to.group != step.from.group;
        if (changesOwner && step.from.kind == Node::Kind::File && step.from.mode)
            step.to.mode = *step.from.mode & 01777;
        if (change.mode)
            step.to.mode = change.mode;
        if (!changesOwner && step.to.mode == step.from.mode)
            return {};
        return append(step, change.path);
    }

    Problem append(TreeStep &step, const QString &path)
    {
        if (step.to.content && step.to.content->bytes.size() > largestFile)
            return texts::tr("%1 would become too large to be written.").arg(path);
        if (step.kind == TreeStep::Kind::Replace)
            step.temporary = temporaryName();
        m_outlook.expect(step);
        steps.append(step);
        return {};
    }

    Outlook m_outlook;
};

} // namespace

Problem stepsToApply(const Plan &plan, QVector<TreeStep> &steps)
{
    StepPlanner planner;
    for (const Change &change : plan.changes) {
        if (Problem problem = planner.add(change))
            return problem;
    }
    steps = planner.steps;
    return {};
}

QByteArray temporaryName()
{
    return ".office-assistant-" + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

} // namespace doctor
