#pragma once

#include <QByteArray>
#include <QVector>

#include <functional>

#include <sys/types.h>

/// A user as the kernel knows one, for tests that root runs.
struct Actor
{
    uid_t user = 0;
    QVector<gid_t> groups;
    /// Capability numbers; all others are dropped.
    QVector<int> capabilities;
};

/// What @p work returns in a forked child that is @p actor and has @p directory as its current one.
QByteArray asActor(const Actor &actor, const QByteArray &directory,
                   const std::function<QByteArray()> &work);
