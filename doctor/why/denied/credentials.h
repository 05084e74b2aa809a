#pragma once

#include <QVector>

#include <sys/types.h>

namespace doctor {

/// Ids that a user namespace knows, as in /proc/self/uid_map.
struct IdMap
{
    struct Range
    {
        id_t first = 0;
        quint64 count = 0;
    };

    QVector<Range> ranges;
    /// What stat(2) shows for an id that the namespace does not know.
    id_t overflow = 65534;

    /// Whether @p id, as stat(2) shows it, stands for one that this namespace does not know.
    bool isUnknown(id_t id) const;
};

/// What the kernel asks about a process when it opens a path; see credentials(7).
struct Credentials
{
    uid_t user = 0;
    /// The effective group and the supplementary ones.
    QVector<gid_t> groups;
    /// CAP_DAC_OVERRIDE and CAP_DAC_READ_SEARCH.
    bool overridesAll = false;
    bool overridesReading = false;
    /// CAP_SYS_RESOURCE: may use the blocks that a file system reserves.
    bool usesReserve = false;
    IdMap users;
    IdMap groupIds;
    /// fs.protected_symlinks, see proc(5).
    bool protectsLinks = false;
};

/// The effective ones of this process.
Credentials ownCredentials();

} // namespace doctor
