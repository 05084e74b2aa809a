#include <QFile>
#include <QFileInfo>

#include <cstring>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/machine.h"
#include "doctor/why/denied/denied.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 longestLabel = 4096;

QString pathOf(const Component &component)
{
    return QFile::decodeName(component.path);
}

QString ownerOf(const Component &component)
{
    const QString name = accountOf({}, component.guard.owner).name;
    return name.isEmpty() ? QString::number(component.guard.owner) : name;
}

QString modeOf(const Component &component)
{
    return QStringLiteral("%1").arg(component.guard.mode & 07777, 4, 8, QLatin1Char('0'));
}

/// What is not allowed, after "to".
QString deedOf(const Component &component)
{
    const bool isDirectory = S_ISDIR(component.guard.mode);
    if ((component.needed & writeRight) != 0)
        return isDirectory ? texts::tr("change what is in it") : texts::tr("write to it");
    if ((component.needed & readRight) != 0)
        return isDirectory ? texts::tr("list it") : texts::tr("read it");
    return isDirectory ? texts::tr("pass through it") : texts::tr("run it");
}

QString rightsText(const Component &component, const Decision &decision)
{
    const QString path = pathOf(component);
    const QString deed = deedOf(component);
    if (decision.unknownIds)
        return texts::tr("%1 belongs to a user or group that is unknown in this container, so even "
                         "its root has no right to %2.")
            .arg(path, deed);
    if (decision.masked)
        return texts::tr("The access list of %1 would let you %2, but its mask takes that away.")
            .arg(path, deed);
    switch (decision.by) {
    case Decision::By::Owner:
        return texts::tr("%1 is yours, but its mode %2 does not let its owner %3.")
            .arg(path, modeOf(component), deed);
    case Decision::By::User:
        return texts::tr("The access list of %1 names you, but does not let you %2.")
            .arg(path, deed);
    case Decision::By::Group:
        if (!component.guard.acl.isEmpty())
            return texts::tr("The access list of %1 does not let your groups %2.").arg(path, deed);
        return texts::tr("%1 belongs to %2. Its mode %3 does not let the group %4, to which you "
                         "belong, %5.")
            .arg(path, ownerOf(component), modeOf(component), groupName({}, component.guard.group),
                 deed);
    case Decision::By::Other:
    case Decision::By::Capability:
        break;
    }
    return texts::tr("%1 belongs to %2. Its mode %3 does not let other users %4.")
        .arg(path, ownerOf(component), modeOf(component), deed);
}

/// What else may refuse an access to this program. Only what is known to be in force.
QString confinement()
{
    if (QFileInfo::exists(QStringLiteral("/.flatpak-info")))
        return texts::tr("This program runs in a Flatpak sandbox, which shows and allows only what "
                         "it was given.");
    QByteArray label = readFile(QStringLiteral("/proc/self/attr/current"), longestLabel)
                           .content.value_or(QByteArray());
    label.replace('\0', QByteArray());
    label = label.trimmed();
    if (label.endsWith("(enforce)"))
        return texts::tr("This program runs under the AppArmor profile %1, which may be why.")
            .arg(QString::fromUtf8(label));
    const FileContent enforced = readFile(QStringLiteral("/sys/fs/selinux/enforce"), longestLabel);
    if (enforced.content.value_or(QByteArray()).trimmed() == "1")
        return texts::tr("This program runs in the SELinux context %1, which may be why.")
            .arg(QString::fromUtf8(label));
    return {};
}

QString followedBy(const QString &text, const QString &more)
{
    return more.isEmpty() ? text : text + QLatin1Char(' ') + more;
}

/// Ways that lead nowhere.
QString wayText(const Passage &passage, const Component &blocker)
{
    const QString path = pathOf(blocker);
    switch (passage.obstacle) {
    case Obstacle::Missing:
        return followedBy(texts::tr("%1 does not exist.").arg(path), confinement());
    case Obstacle::NotDirectory:
        return texts::tr("%1 is not a directory, but the path leads on through it.").arg(path);
    case Obstacle::NameTooLong:
        return texts::tr("The path, or a name in it, is longer than the system allows.");
    case Obstacle::LinkLoop:
        return texts::tr("%1 is a link in a loop, or behind more than 40 links.").arg(path);
    case Obstacle::LinkProtected:
        return texts::tr("%1 is a link of the user %2 in a directory that all may write to. The "
                         "system does not follow it for others.")
            .arg(path, ownerOf(blocker));
    case Obstacle::LinksDisabled:
        return texts::tr("%1 is a link, and its file system is mounted without links.").arg(path);
    case Obstacle::ProcessPrivate:
        return texts::tr("%1 belongs to a process that you may not look into.").arg(path);
    default:
        return {};
    }
}

QString endText(Obstacle obstacle, const QString &path)
{
    switch (obstacle) {
    case Obstacle::ReadOnlyFileSystem:
    case Obstacle::ReadOnlyMount:
        return texts::tr("%1 is on a disk that can only be read.").arg(path);
    case Obstacle::NoExecMount:
        return texts::tr("%1 is on a disk from which no programs may be run.").arg(path);
    case Obstacle::NotProgram:
        return texts::tr("%1 is neither a file nor a directory.").arg(path);
    case Obstacle::Immutable:
        return texts::tr("%1 is protected against every change (lsattr shows it).").arg(path);
    case Obstacle::AppendOnly:
        return texts::tr("%1 can only be appended to (lsattr shows it).").arg(path);
    case Obstacle::DiskFull:
        return texts::tr("The disk that %1 is on is full.").arg(path);
    case Obstacle::NoFreeInodes:
        return texts::tr("The disk that %1 is on has no room for another file.").arg(path);
    default:
        return {};
    }
}

} // namespace

QString explanation(const Passage &passage)
{
    if (passage.obstacle == Obstacle::None)
        return {};
    const Component &blocker = passage.chain.at(passage.blocker);
    const QString path = pathOf(blocker);
    if (passage.obstacle == Obstacle::Rights)
        return rightsText(blocker, passage.decision);
    if (passage.obstacle == Obstacle::Unexplained)
        return followedBy(
            texts::tr("The system refuses %1, and neither rights nor mounts explain it.").arg(path),
            confinement());
    if (passage.obstacle == Obstacle::Undecided)
        return texts::tr("%1 cannot be looked at: %2.")
            .arg(path, QString::fromLocal8Bit(std::strerror(passage.error)));
    const QString text = wayText(passage, blocker);
    return text.isEmpty() ? endText(passage.obstacle, path) : text;
}

} // namespace doctor
