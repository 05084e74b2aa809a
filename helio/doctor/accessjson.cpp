#include "helio/doctor/accessjson.h"

#include <QFile>
#include <QJsonArray>

#include <sys/stat.h>

#include "doctor/machine/machine.h"
#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace helio {

namespace {

using doctor::Access;
using doctor::Component;
using doctor::Denial;
using doctor::Obstacle;

QString kindOf(const Component &component)
{
    if (!component.exists)
        return QStringLiteral("missing");
    switch (component.guard.mode & S_IFMT) {
    case S_IFREG:
        return QStringLiteral("file");
    case S_IFDIR:
        return QStringLiteral("directory");
    case S_IFLNK:
        return QStringLiteral("link");
    case S_IFIFO:
        return QStringLiteral("pipe");
    case S_IFSOCK:
        return QStringLiteral("socket");
    case S_IFCHR:
    case S_IFBLK:
        return QStringLiteral("device");
    default:
        return QStringLiteral("unknown");
    }
}

/// The component that blocks; empty if none does.
QString blockingPath(const doctor::Passage &passage)
{
    return passage.obstacle == Obstacle::None
               ? QString()
               : QFile::decodeName(passage.chain.at(passage.blocker).path);
}

QString nameOf(Denial::Verdict verdict)
{
    if (verdict == Denial::Verdict::Granted)
        return QStringLiteral("granted");
    return verdict == Denial::Verdict::Denied ? QStringLiteral("denied")
                                              : QStringLiteral("undecided");
}

QString nameOf(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::None:
        return {};
    case Obstacle::Rights:
        return QStringLiteral("rights");
    case Obstacle::Missing:
        return QStringLiteral("missing");
    case Obstacle::NotDirectory:
        return QStringLiteral("not-directory");
    case Obstacle::NameTooLong:
        return QStringLiteral("name-too-long");
    case Obstacle::LinkLoop:
        return QStringLiteral("link-loop");
    case Obstacle::LinkProtected:
        return QStringLiteral("link-protected");
    case Obstacle::LinksDisabled:
        return QStringLiteral("links-disabled");
    case Obstacle::ProcessPrivate:
        return QStringLiteral("process-private");
    case Obstacle::ReadOnlyFileSystem:
    case Obstacle::ReadOnlyMount:
        return QStringLiteral("read-only");
    case Obstacle::NoExecMount:
        return QStringLiteral("noexec");
    case Obstacle::NotProgram:
        return QStringLiteral("not-program");
    case Obstacle::Immutable:
        return QStringLiteral("immutable");
    case Obstacle::AppendOnly:
        return QStringLiteral("append-only");
    case Obstacle::DiskFull:
        return QStringLiteral("disk-full");
    case Obstacle::NoFreeInodes:
        return QStringLiteral("no-inodes");
    case Obstacle::Unexplained:
        return QStringLiteral("unexplained");
    case Obstacle::Undecided:
        break;
    }
    return QStringLiteral("unreadable");
}

QString nameOf(Access access)
{
    switch (access) {
    case Access::Read:
        return QStringLiteral("read");
    case Access::Write:
        return QStringLiteral("write");
    case Access::Run:
        break;
    }
    return QStringLiteral("run");
}

QJsonObject componentObject(const Component &component, const doctor::Credentials &own)
{
    QJsonObject object{{QStringLiteral("path"), QFile::decodeName(component.path)},
                       {QStringLiteral("kind"), kindOf(component)}};
    if ((component.guard.mode & S_IFMT) == 0)
        return object;
    object.insert(QStringLiteral("mode"), modeOf(component));
    object.insert(QStringLiteral("owner"), ownerOf(component));
    object.insert(QStringLiteral("group"), doctor::groupName({}, component.guard.group));
    if (S_ISLNK(component.guard.mode)) {
        object.insert(QStringLiteral("target"), QFile::decodeName(component.target));
        return object;
    }
    object.insert(QStringLiteral("accessList"), !component.guard.acl.isEmpty());
    object.insert(QStringLiteral("needs"), rightsLetters(component.needed));
    object.insert(QStringLiteral("grants"),
                  rightsLetters(doctor::singleRights(component.guard, own)));
    return object;
}

} // namespace

QString rightsLetters(unsigned rights)
{
    QString text = QStringLiteral("---");
    if ((rights & doctor::readRight) != 0)
        text[0] = QLatin1Char('r');
    if ((rights & doctor::writeRight) != 0)
        text[1] = QLatin1Char('w');
    if ((rights & doctor::runRight) != 0)
        text[2] = QLatin1Char('x');
    return text;
}

QString modeOf(const Component &component)
{
    return QStringLiteral("%1").arg(component.guard.mode & 07777, 4, 8, QLatin1Char('0'));
}

QString ownerOf(const Component &component)
{
    const QString name = doctor::accountOf({}, component.guard.owner).name;
    return name.isEmpty() ? QString::number(component.guard.owner) : name;
}

QString accessVerdict(const QString &path, Access access, Denial::Verdict verdict)
{
    const QString shown = visible(path);
    if (verdict == Denial::Verdict::Undecided)
        return texts::tr("%1: the reason is unknown").arg(shown);
    const bool isGranted = verdict == Denial::Verdict::Granted;
    switch (access) {
    case Access::Read:
        return isGranted ? texts::tr("%1: you may read it").arg(shown)
                         : texts::tr("%1: you cannot read it").arg(shown);
    case Access::Write:
        return isGranted ? texts::tr("%1: you may write to it").arg(shown)
                         : texts::tr("%1: you cannot write to it").arg(shown);
    case Access::Run:
        break;
    }
    return isGranted ? texts::tr("%1: you may run or pass through it").arg(shown)
                     : texts::tr("%1: you cannot run or pass through it").arg(shown);
}

bool isOwn(const doctor::Remedy &remedy)
{
    return remedy.change.kind == doctor::Change::Kind::Rights;
}

QString commandOf(const doctor::Remedy &remedy)
{
    doctor::Change change;
    change.command = remedy.command;
    return commandLineOf(change);
}

QJsonObject accessObject(const QString &path, Access access, const Denial &denial)
{
    const doctor::Credentials own = doctor::ownCredentials();
    QJsonArray chain;
    for (const Component &component : denial.passage.chain)
        chain.append(componentObject(component, own));
    QJsonObject line{
        {QStringLiteral("type"), QStringLiteral("why")},
        {QStringLiteral("question"), QStringLiteral("denied")},
        {QStringLiteral("subject"), path},
        {QStringLiteral("access"), nameOf(access)},
        {QStringLiteral("verdict"), nameOf(denial.verdict)},
        {QStringLiteral("text"),
         denial.text.isEmpty() ? accessVerdict(path, access, denial.verdict) : denial.text},
        {QStringLiteral("blocked"), denial.verdict == Denial::Verdict::Denied},
        {QStringLiteral("component"), blockingPath(denial.passage)},
        {QStringLiteral("reason"), nameOf(denial.passage.obstacle)},
        {QStringLiteral("remedy"), denial.remedy ? commandOf(*denial.remedy) : QString()},
        {QStringLiteral("chain"), chain}};
    if (denial.remedy)
        line.insert(QStringLiteral("needs"), isOwn(*denial.remedy)
                                                 ? QStringLiteral("user")
                                                 : QStringLiteral("administrator"));
    return line;
}

} // namespace helio
