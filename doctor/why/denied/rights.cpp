#include "doctor/why/denied/rights.h"

#include <algorithm>

#include <sys/stat.h>

namespace doctor {

namespace {

constexpr unsigned allRights = 7;
constexpr int ownerShift = 6;
constexpr int groupShift = 3;

bool grants(unsigned given, unsigned wanted)
{
    return (wanted & ~given) == 0;
}

bool isMember(const Credentials &who, gid_t group)
{
    return who.groups.contains(group);
}

Decision decided(bool granted, Decision::By by)
{
    Decision decision;
    decision.granted = granted;
    decision.by = by;
    return decision;
}

const AclEntry *entryOf(const Acl &acl, AclEntry::Tag tag)
{
    const auto found = std::find_if(acl.begin(), acl.end(),
                                    [tag](const AclEntry &entry) { return entry.tag == tag; });
    return found == acl.end() ? nullptr : &*found;
}

Decision underMask(const Acl &acl, const AclEntry &entry, unsigned rights, Decision::By by)
{
    const AclEntry *mask = entryOf(acl, AclEntry::Mask);
    const bool isMasked = mask && !grants(mask->rights, rights);
    Decision decision = decided(grants(entry.rights, rights) && !isMasked, by);
    decision.masked = isMasked && grants(entry.rights, rights);
    return decision;
}

/// The list's entries in the order of acl(5), "Access check algorithm"; the owner was seen before.
Decision decideByAcl(const Guard &guard, unsigned rights, const Credentials &who)
{
    for (const AclEntry &entry : guard.acl) {
        if (entry.tag == AclEntry::User && entry.id == who.user)
            return underMask(guard.acl, entry, rights, Decision::By::User);
    }
    bool isInGroup = false;
    for (const AclEntry &entry : guard.acl) {
        const bool isGroup =
            (entry.tag == AclEntry::OwningGroup && isMember(who, guard.group)) ||
            (entry.tag == AclEntry::Group && isMember(who, static_cast<gid_t>(entry.id)));
        isInGroup = isInGroup || isGroup;
        if (isGroup && grants(entry.rights, rights))
            return underMask(guard.acl, entry, rights, Decision::By::Group);
    }
    if (isInGroup)
        return decided(false, Decision::By::Group);
    const AclEntry *other = entryOf(guard.acl, AclEntry::Other);
    return decided(other && grants(other->rights, rights), Decision::By::Other);
}

/// The kernel skips a list where the mode gives the group nothing.
bool isAclUsed(const Guard &guard)
{
    return !guard.acl.isEmpty() && (guard.mode & S_IRWXG) != 0;
}

Decision decideByRights(const Guard &guard, unsigned rights, const Credentials &who)
{
    if (guard.owner == who.user)
        return decided(grants((guard.mode >> ownerShift) & allRights, rights), Decision::By::Owner);
    if (isAclUsed(guard))
        return decideByAcl(guard, rights, who);
    if (isMember(who, guard.group))
        return decided(grants((guard.mode >> groupShift) & allRights, rights), Decision::By::Group);
    return decided(grants(guard.mode & allRights, rights), Decision::By::Other);
}

bool isOverridden(const Guard &guard, unsigned rights, const Credentials &who)
{
    const bool isDirectory = S_ISDIR(guard.mode);
    const bool isReading = isDirectory ? (rights & writeRight) == 0 : rights == readRight;
    if (isReading && (who.overridesReading || who.overridesAll))
        return true;
    const bool canRun = isDirectory || (guard.mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    return who.overridesAll && (canRun || (rights & runRight) == 0);
}

template<typename Number>
void appendNumber(QByteArray &bytes, Number number)
{
    for (unsigned shift = 0; shift < 8 * sizeof number; shift += 8)
        bytes.append(static_cast<char>((number >> shift) & 0xff));
}

quint32 numberAt(const QByteArray &bytes, int offset, int size)
{
    quint32 number = 0;
    for (int index = size - 1; index >= 0; --index)
        number = number << 8 | static_cast<quint8>(bytes.at(offset + index));
    return number;
}

// See linux/posix_acl_xattr.h: a version, then 8 bytes an entry, all little-endian.
constexpr quint32 aclVersion = 2;
constexpr int headerSize = 4;
constexpr int entrySize = 8;

} // namespace

Acl parseAcl(const QByteArray &attribute)
{
    const int size = attribute.size() - headerSize;
    if (size < 0 || size % entrySize != 0 || numberAt(attribute, 0, headerSize) != aclVersion)
        return {};
    Acl acl;
    for (int offset = headerSize; offset < attribute.size(); offset += entrySize)
        acl.append({static_cast<quint16>(numberAt(attribute, offset, 2)),
                    numberAt(attribute, offset + 2, 2), numberAt(attribute, offset + 4, 4)});
    return acl;
}

QByteArray serialized(const Acl &acl)
{
    QByteArray bytes;
    appendNumber(bytes, aclVersion);
    for (const AclEntry &entry : acl) {
        appendNumber(bytes, entry.tag);
        appendNumber(bytes, static_cast<quint16>(entry.rights));
        appendNumber(bytes, static_cast<quint32>(entry.id));
    }
    return bytes;
}

Acl aclOf(const Guard &guard)
{
    if (!guard.acl.isEmpty())
        return guard.acl;
    return {{AclEntry::Owner, (guard.mode >> ownerShift) & allRights},
            {AclEntry::OwningGroup, (guard.mode >> groupShift) & allRights},
            {AclEntry::Other, guard.mode & allRights}};
}

Decision decide(const Guard &guard, unsigned rights, const Credentials &who)
{
    Decision decision = decideByRights(guard, rights, who);
    if (decision.granted || !isOverridden(guard, rights, who))
        return decision;
    if (who.users.isUnknown(guard.owner) || who.groupIds.isUnknown(guard.group)) {
        decision.unknownIds = true;
        return decision;
    }
    return decided(true, Decision::By::Capability);
}

unsigned singleRights(const Guard &guard, const Credentials &who)
{
    unsigned rights = 0;
    for (const unsigned right : {readRight, writeRight, runRight})
        rights |= decide(guard, right, who).granted ? right : 0;
    return rights;
}

Acl openedFor(const Guard &guard, unsigned rights, const Credentials &who)
{
    // To use a list that the kernel skips would change what those may do whom it names.
    if (!isAclUsed(guard) &&
        (entryOf(guard.acl, AclEntry::User) || entryOf(guard.acl, AclEntry::Group)))
        return {};
    Acl acl = aclOf(guard);
    if (!entryOf(acl, AclEntry::Mask))
        acl.insert(acl.size() - 1, {AclEntry::Mask, (guard.mode >> groupShift) & allRights});
    const unsigned mask = entryOf(acl, AclEntry::Mask)->rights;
    const AclEntry own{AclEntry::User, singleRights(guard, who) | rights, who.user};
    Acl opened;
    for (AclEntry entry : acl) {
        if (entry.tag == AclEntry::User && entry.id == who.user)
            continue;
        if (entry.tag == AclEntry::Mask)
            entry.rights |= own.rights;
        else if (entry.tag != AclEntry::Owner && entry.tag != AclEntry::Other)
            entry.rights &= mask;
        opened.append(entry);
    }
    const auto place = std::find_if(opened.begin(), opened.end(), [&own](const AclEntry &entry) {
        return entry.tag > own.tag || (entry.tag == own.tag && entry.id > own.id);
    });
    opened.insert(place, own);
    return opened;
}

} // namespace doctor
