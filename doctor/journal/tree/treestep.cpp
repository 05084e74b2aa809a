#include "doctor/journal/tree/treestep.h"

#include <cerrno>

#include <fcntl.h>

#include "doctor/journal/tree/entry.h"

namespace doctor {

namespace {

Problem performAt(const Entry &entry, const TreeStep &step)
{
    const bool isRights = step.kind == TreeStep::Kind::Rights;
    Seen seen;
    if (Problem problem = entry.look(isRights ? Depth::Rights : Depth::Everything, seen))
        return problem;
    if (!areSame(seen.node, step.from))
        return changedMeanwhile(step.path);
    return isRights ? entry.dressUp(step.to) : entry.become(seen, step.to, Entry::Old::Kept);
}

Problem move(const QByteArray &from, const QByteArray &to)
{
    Spot source;
    Spot target;
    if (const int error = openSpot(from, source))
        return problemOf(error, from);
    if (const int error = openSpot(to, target))
        return problemOf(error, to);
    int error =
        renameNew(source.directory.number(), source.name, target.directory.number(), target.name);
    if (error == EEXIST)
        return changedMeanwhile(to);
    if (error == 0)
        error = syncDescriptor(target.directory.number());
    return problemOf(error != 0 ? error : syncDescriptor(source.directory.number()), from);
}

/// 0 if the entry is there, ENOENT if it or its directory is not, or another errno.
int presence(const QByteArray &path)
{
    Spot spot;
    if (const int error = openSpot(path, spot))
        return error;
    struct stat status = {};
    const int result =
        ::fstatat(spot.directory.number(), spot.name.constData(), &status, AT_SYMLINK_NOFOLLOW);
    return result == 0 ? 0 : errno;
}

/// Whether the entry cannot be reached any more because its directory went or was replaced.
bool isGone(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

Problem moveBack(const TreeStep &step, Problem &kept)
{
    const int here = presence(step.path);
    const int there = presence(step.target);
    if (isGone(here) && there == 0)
        return move(step.target, step.path);
    if (here == 0 && isGone(there))
        return {};
    for (const int error : {here, there}) {
        if (error != 0 && !isGone(error))
            return problemOf(error, step.path);
    }
    kept = keptAsIs(there == 0 ? step.path : step.target);
    return {};
}

Problem rightsBack(const Entry &entry, const TreeStep &step, Problem &kept)
{
    Seen now;
    if (Problem problem = entry.look(Depth::Rights, now))
        return problem;
    if (areSame(now.node, step.from))
        return {};
    if (isBetween(now.node, step.from, step.to))
        return entry.dressUp(step.from);
    kept = keptAsIs(step.path);
    return {};
}

/// A file that was written over has its content again, but perhaps not yet its times.
Problem timesBack(const Entry &entry, const Node &now, const Node &from)
{
    if (!now.times || !from.times || now.times->modified == from.times->modified)
        return {};
    Node times;
    times.times = from.times;
    return entry.dressUp(times);
}

Problem replaceBack(const Entry &entry, const TreeStep &step, Problem &kept)
{
    if (const int error = entry.removeNew())
        return problemOf(error, step.path);
    Seen now;
    Problem problem = entry.look(Depth::Everything, now);
    if (problem || entry.putBack(now, step.to, problem, kept))
        return problem;
    if (areSame(now.node, step.from))
        return timesBack(entry, now.node, step.from);
    if (!isBetween(now.node, step.from, step.to)) {
        kept = keptAsIs(step.path);
        return {};
    }
    return entry.become(now, step.from, Entry::Old::Dropped);
}

} // namespace

Problem perform(const TreeStep &step)
{
    if (step.kind == TreeStep::Kind::Move)
        return move(step.path, step.target);
    Entry entry(step);
    if (const int error = entry.open())
        return problemOf(error, step.path);
    return performAt(entry, step);
}

Problem takeBack(const TreeStep &step, Problem &kept)
{
    if (step.kind == TreeStep::Kind::Move)
        return moveBack(step, kept);
    Entry entry(step);
    const int error = entry.open();
    if (isGone(error)) {
        // Where nothing was, the directory may be one that was not made yet.
        if (step.from.kind != Node::Kind::Absent)
            kept = keptAsIs(step.path);
        return {};
    }
    if (error != 0)
        return problemOf(error, step.path);
    return step.kind == TreeStep::Kind::Rights ? rightsBack(entry, step, kept)
                                               : replaceBack(entry, step, kept);
}

Problem removeTemporaries(const TreeStep &step)
{
    if (step.kind != TreeStep::Kind::Replace)
        return {};
    Entry entry(step);
    const int error = entry.open();
    if (isGone(error))
        return {};
    return problemOf(error != 0 ? error : entry.removeTemporaries(), step.path);
}

} // namespace doctor
