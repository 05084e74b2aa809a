#include "doctor/why/denied/credentials.h"

#include <algorithm>
#include <array>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestTable = 64 * 1024;

QByteArray kernelFile(const char *path)
{
    return readFile(QLatin1String(path), largestTable).content.value_or(QByteArray());
}

/// See user_namespaces(7): first id inside, first id outside, how many.
IdMap idMap(const char *mapFile, const char *overflowFile)
{
    IdMap map;
    for (const QByteArray &line : kernelFile(mapFile).split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() == 3)
            map.ranges.append({fields[0].toUInt(), fields[2].toULongLong()});
    }
    bool isNumber = false;
    const id_t overflow = kernelFile(overflowFile).trimmed().toUInt(&isNumber);
    if (isNumber)
        map.overflow = overflow;
    return map;
}

QVector<gid_t> ownGroups()
{
    QVector<gid_t> groups(std::max(0, ::getgroups(0, nullptr)));
    groups.resize(std::max(0, ::getgroups(groups.size(), groups.data())));
    groups.prepend(::getegid());
    return groups;
}

bool isEffective(const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> &sets,
                 unsigned capability)
{
    return (sets[CAP_TO_INDEX(capability)].effective & CAP_TO_MASK(capability)) != 0;
}

} // namespace

bool IdMap::isUnknown(id_t id) const
{
    return id == overflow && std::none_of(ranges.begin(), ranges.end(), [id](const Range &range) {
               return id >= range.first && id - range.first < range.count;
           });
}

Credentials ownCredentials()
{
    Credentials own;
    own.user = ::geteuid();
    own.groups = ownGroups();
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    if (::syscall(SYS_capget, &header, sets.data()) == 0) {
        own.overridesAll = isEffective(sets, CAP_DAC_OVERRIDE);
        own.overridesReading = isEffective(sets, CAP_DAC_READ_SEARCH);
        own.usesReserve = isEffective(sets, CAP_SYS_RESOURCE);
    }
    own.users = idMap("/proc/self/uid_map", "/proc/sys/kernel/overflowuid");
    own.groupIds = idMap("/proc/self/gid_map", "/proc/sys/kernel/overflowgid");
    own.protectsLinks = kernelFile("/proc/sys/fs/protected_symlinks").trimmed() == "1";
    return own;
}

} // namespace doctor
