#include "doctor/why/denied/remedy.h"

#include <QFile>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "doctor/machine/machine.h"
#include "doctor/why/denied/mount.h"

namespace doctor {

namespace {

constexpr mode_t modeBits = 07777;
constexpr int ownerShift = 6;
constexpr std::array<const char *, 5> readOnlyTypes{"cramfs", "erofs", "iso9660", "romfs",
                                                    "squashfs"};

QString letters(unsigned rights, const char *missing)
{
    QString text;
    for (const auto &[right, letter] :
         {std::pair(readRight, "r"), std::pair(writeRight, "w"), std::pair(runRight, "x")})
        text += QLatin1String((rights & right) != 0 ? letter : missing);
    return text;
}

/// Whether the path still leads to the component, also as text.
bool isNamed(const Component &component)
{
    struct statx state = {};
    return component.path.startsWith('/') &&
           QFile::encodeName(QFile::decodeName(component.path)) == component.path &&
           ::statx(AT_FDCWD, component.path.constData(), AT_SYMLINK_NOFOLLOW, STATX_INO, &state) ==
               0 &&
           state.stx_ino == component.inode &&
           makedev(state.stx_dev_major, state.stx_dev_minor) == component.device;
}

Remedy forAdministrator(const Component &component, const QStringList &command)
{
    Remedy remedy;
    remedy.change.kind = Change::Kind::Command;
    remedy.change.path = QFile::decodeName(component.path);
    remedy.change.command = command;
    remedy.command = command;
    return remedy;
}

Remedy byOwner(const Component &component)
{
    const QString path = QFile::decodeName(component.path);
    Remedy remedy;
    remedy.change.kind = Change::Kind::Rights;
    remedy.change.entry =
        S_ISDIR(component.guard.mode) ? Change::Entry::Directory : Change::Entry::File;
    remedy.change.path = path;
    remedy.change.resolved = path;
    remedy.change.mode = (component.guard.mode & modeBits) | component.needed << ownerShift;
    const unsigned missing = component.needed & ~(component.guard.mode >> ownerShift);
    remedy.command =
        QStringList({QStringLiteral("chmod"), QStringLiteral("u+") + letters(missing, ""), path});
    return remedy;
}

/// A name of digits could be taken for a number.
QString idText(const QString &name, id_t id)
{
    return name.isEmpty() || name.at(0).isDigit() ? QString::number(id) : name;
}

/// As setfacl(1) reads it.
QString entryText(const AclEntry &entry)
{
    const QString rights = QLatin1Char(':') + letters(entry.rights, "-");
    switch (entry.tag) {
    case AclEntry::User:
        return QStringLiteral("u:") + idText(accountOf({}, entry.id).name, entry.id) + rights;
    case AclEntry::Group:
        return QStringLiteral("g:") + idText(groupName({}, entry.id), entry.id) + rights;
    case AclEntry::OwningGroup:
        return QStringLiteral("g:") + rights;
    default:
        return QStringLiteral("m:") + rights;
    }
}

bool isIn(const Acl &acl, const AclEntry &wanted)
{
    return std::any_of(acl.begin(), acl.end(), [&wanted](const AclEntry &entry) {
        return entry.tag == wanted.tag && entry.id == wanted.id && entry.rights == wanted.rights;
    });
}

std::optional<Remedy> byAcl(const Component &component, const Credentials &who)
{
    const Acl opened = openedFor(component.guard, component.needed, who);
    if (!component.takesAcl || opened.isEmpty())
        return std::nullopt;
    const Acl before = aclOf(component.guard);
    QStringList entries;
    for (const AclEntry &entry : opened) {
        if (!isIn(before, entry))
            entries.append(entryText(entry));
    }
    // Else setfacl makes the mask wide enough for every entry, and opens more than ours.
    Remedy remedy = forAdministrator(
        component, {QStringLiteral("setfacl"), QStringLiteral("-n"), QStringLiteral("-m"),
                    entries.join(QLatin1Char(',')), QFile::decodeName(component.path)});
    remedy.acl = opened;
    return remedy;
}

std::optional<Remedy> forRights(const Component &component, const Decision &decision,
                                const Credentials &who)
{
    if (decision.unknownIds || !isNamed(component))
        return std::nullopt;
    return decision.by == Decision::By::Owner ? byOwner(component) : byAcl(component, who);
}

std::optional<Remedy> forMount(const Component &component, const char *from, const char *to)
{
    const NumberedMount mount = mountNumbered(component.mount);
    const QString point = QFile::decodeName(mount.point);
    const bool isWhole = mount.fileSystemOptions.contains(from);
    const bool isFixed =
        std::find(readOnlyTypes.begin(), readOnlyTypes.end(), mount.type) != readOnlyTypes.end();
    if (point.isEmpty() || QFile::encodeName(point) != mount.point || (isWhole && isFixed) ||
        (!isWhole && !mount.options.contains(from)))
        return std::nullopt;
    QStringList options{QStringLiteral("remount")};
    if (!isWhole)
        options.append(QStringLiteral("bind"));
    // The kernel takes away every option that is not named again.
    for (const QByteArray &option : mount.options)
        options.append(QLatin1String(option == from ? QByteArray(to) : option));
    options.removeAll(QStringLiteral("idmapped"));
    if (!options.contains(QLatin1String(to)))
        options.append(QLatin1String(to));
    return forAdministrator(component, {QStringLiteral("mount"), QStringLiteral("-o"),
                                        options.join(QLatin1Char(',')), point});
}

std::optional<Remedy> forAttribute(const Component &component, const char *option)
{
    if (!isNamed(component))
        return std::nullopt;
    return forAdministrator(component, {QStringLiteral("chattr"), QLatin1String(option),
                                        QFile::decodeName(component.path)});
}

} // namespace

std::optional<Remedy> remedyFor(const Passage &passage, const Credentials &who)
{
    if (passage.obstacle == Obstacle::None)
        return std::nullopt;
    const Component &blocker = passage.chain.at(passage.blocker);
    switch (passage.obstacle) {
    case Obstacle::Rights:
        return forRights(blocker, passage.decision, who);
    case Obstacle::ReadOnlyFileSystem:
    case Obstacle::ReadOnlyMount:
        return forMount(blocker, "ro", "rw");
    case Obstacle::NoExecMount:
        return forMount(blocker, "noexec", "exec");
    case Obstacle::Immutable:
        return forAttribute(blocker, "-i");
    case Obstacle::AppendOnly:
        return forAttribute(blocker, "-a");
    default:
        return std::nullopt;
    }
}

} // namespace doctor
