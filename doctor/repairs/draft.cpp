#include "doctor/repairs/draft.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"
#include "doctor/repairs/ownership.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr mode_t usualFileMode = 0644;
constexpr int startField = 22;

QStringList asRoot(const char *program, const QStringList &arguments)
{
    return QStringList{QLatin1String(program)} + arguments;
}

QString octal(mode_t mode)
{
    return QString::number(mode, 8).rightJustified(3, QLatin1Char('0'));
}

QString needsAdministrator(const QString &path)
{
    return texts::tr("%1 is not yours to change; the administrator has to").arg(path);
}

bool makesDirectory(const QVector<Change> &changes, const QString &path)
{
    return std::any_of(changes.begin(), changes.end(), [&path](const Change &change) {
        return change.kind == Change::Kind::Create && change.entry == Change::Entry::Directory &&
               change.path == path;
    });
}

} // namespace

Draft::Draft(const Machine &machine, const QVector<Change> &earlier)
    : m_machine(machine), m_earlier(earlier)
{
    for (const Change &change : earlier)
        expect(change);
}

/// Paths of changes are where these are on the disk, as in m_later.
void Draft::expect(const Change &earlier)
{
    switch (earlier.kind) {
    case Change::Kind::Write:
    case Change::Kind::Create:
        m_later.insert(earlier.path, earlier.after.value_or(QByteArray()));
        break;
    case Change::Kind::Remove:
        m_later.insert(earlier.path, std::nullopt);
        break;
    case Change::Kind::Move:
        m_later.insert(earlier.target,
                       m_later.value(earlier.path, readFile(earlier.path, largestFile).content)
                           .value_or(QByteArray()));
        m_later.insert(earlier.path, std::nullopt);
        break;
    case Change::Kind::Rights:
    case Change::Kind::End:
    case Change::Kind::Command:
        break;
    }
}

/// A link's file is changed, not the link.
QString Draft::followed(const QString &path) const
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

std::optional<QByteArray> Draft::content(const QString &path) const
{
    const QString real = followed(m_machine.located(path));
    const auto later = m_later.constFind(real);
    return later == m_later.constEnd() ? readFile(real, largestFile).content : *later;
}

bool Draft::exists(const QString &path) const
{
    const QString located = m_machine.located(path);
    const auto later = m_later.constFind(located);
    return later == m_later.constEnd() ? stateOf(located).has_value() : later->has_value();
}

QString Draft::addWrite(const QString &path, const QByteArray &before, const QByteArray &after)
{
    m_later.insert(path, after);
    const auto isSame = [&path](const Change &change) {
        return change.path == path &&
               (change.kind == Change::Kind::Write || change.kind == Change::Kind::Create);
    };
    const auto earlier = std::find_if(m_changes.begin(), m_changes.end(), isSame);
    if (earlier != m_changes.end()) {
        earlier->after = after;
        return {};
    }
    Change change;
    change.path = path;
    change.before = before;
    change.after = after;
    m_changes.append(change);
    return {};
}

QString Draft::write(const QString &path, const QByteArray &content, std::optional<mode_t> mode)
{
    const QString real = followed(m_machine.located(path));
    const auto later = m_later.constFind(real);
    const std::optional<struct stat> state = stateOf(real);
    const bool willExist = later == m_later.constEnd() ? state.has_value() : later->has_value();
    if (!isOurs(m_machine, real) || (state && state->st_uid != geteuid() && geteuid() != 0))
        return needsAdministrator(path);
    if (willExist) {
        const std::optional<QByteArray> before = this->content(path);
        if (!before)
            return texts::tr("%1 cannot be read").arg(path);
        return *before == content ? QString() : addWrite(real, *before, content);
    }
    if (state && S_ISLNK(state->st_mode))
        return texts::tr("%1 is a link that leads nowhere").arg(path);
    Change change;
    change.kind = Change::Kind::Create;
    change.path = real;
    change.after = content;
    change.mode = mode.value_or(usualFileMode);
    m_changes.append(change);
    m_later.insert(real, content);
    return {};
}

QString Draft::remove(const QString &path)
{
    const QString located = m_machine.located(path);
    const std::optional<struct stat> state = stateOf(located);
    if (!exists(path) || !state)
        return {};
    if (!isOurs(m_machine, located)) {
        show(asRoot("rm", {QStringLiteral("--"), located}));
        return {};
    }
    Change change;
    change.kind = Change::Kind::Remove;
    change.path = located;
    change.entry = S_ISDIR(state->st_mode)   ? Change::Entry::Directory
                   : S_ISLNK(state->st_mode) ? Change::Entry::Link
                                             : Change::Entry::File;
    if (change.entry == Change::Entry::Link) {
        change.target = QFile::symLinkTarget(located);
    } else if (change.entry == Change::Entry::File) {
        change.before = content(path);
        if (!change.before)
            return texts::tr("%1 cannot be read, so it could not be brought back").arg(path);
    }
    m_changes.append(change);
    m_later.insert(located, std::nullopt);
    return {};
}

QString Draft::move(const QString &path, const QString &target)
{
    const QString located = m_machine.located(path);
    if (!exists(path))
        return texts::tr("%1 is not there").arg(path);
    if (exists(target))
        return texts::tr("%1 is there already").arg(target);
    const QString there = m_machine.located(target);
    if (!isOurs(m_machine, located) || !isOurs(m_machine, there)) {
        show(asRoot("mv", {QStringLiteral("-n"), QStringLiteral("--"), located, there}));
        return {};
    }
    Change change;
    change.kind = Change::Kind::Move;
    change.path = located;
    change.target = there;
    m_later.insert(there, content(path).value_or(QByteArray()));
    m_later.insert(located, std::nullopt);
    m_changes.append(change);
    return {};
}

bool Draft::isDirectoryPlanned(const QString &located) const
{
    return makesDirectory(m_changes, located) || makesDirectory(m_earlier, located);
}

QString Draft::makeDirectory(const QString &path, mode_t mode)
{
    const QString located = m_machine.located(path);
    if (isDirectoryPlanned(located))
        return {};
    if (exists(path))
        return QFileInfo(located).isDir() ? QString()
                                          : texts::tr("%1 is not a directory").arg(path);
    if (!isOurs(m_machine, located)) {
        show(asRoot("mkdir", {QStringLiteral("-m"), octal(mode), QStringLiteral("--"), located}));
        return {};
    }
    Change change;
    change.kind = Change::Kind::Create;
    change.entry = Change::Entry::Directory;
    change.path = located;
    change.mode = mode;
    m_changes.append(change);
    m_later.insert(located, QByteArray());
    return {};
}

QString Draft::makeLink(const QString &path, const QString &target)
{
    const QString located = m_machine.located(path);
    if (exists(path))
        return texts::tr("%1 is there already").arg(path);
    if (!isOurs(m_machine, located)) {
        show(asRoot("ln", {QStringLiteral("-s"), QStringLiteral("--"), target, located}));
        return {};
    }
    Change change;
    change.kind = Change::Kind::Create;
    change.entry = Change::Entry::Link;
    change.path = located;
    change.target = target;
    m_changes.append(change);
    m_later.insert(located, QByteArray());
    return {};
}

QString Draft::changeRights(const QString &path, std::optional<mode_t> mode,
                            std::optional<uid_t> owner, std::optional<gid_t> group)
{
    const QString real = followed(m_machine.located(path));
    const std::optional<struct stat> state = stateOf(real);
    if (!state)
        return texts::tr("%1 is not there").arg(path);
    if (mode == (state->st_mode & 07777U))
        mode.reset();
    if (owner == state->st_uid)
        owner.reset();
    if (group == state->st_gid)
        group.reset();
    const bool isAdministrator = geteuid() == 0;
    const bool mayChangeMode = isAdministrator || state->st_uid == geteuid();
    if ((owner || group) && !isAdministrator) {
        const QString names = (owner ? QString::number(*owner) : QString()) +
                              (group ? QLatin1Char(':') + QString::number(*group) : QString());
        show(asRoot("chown", {names, QStringLiteral("--"), real}));
    }
    if (mode && !mayChangeMode)
        show(asRoot("chmod", {octal(*mode), QStringLiteral("--"), real}));
    Change change;
    change.kind = Change::Kind::Rights;
    change.path = real;
    if (mayChangeMode)
        change.mode = mode;
    if (isAdministrator) {
        change.owner = owner;
        change.group = group;
    }
    if (change.mode || change.owner || change.group)
        m_changes.append(change);
    return {};
}

QString Draft::end(qint64 process)
{
    const QString directory = m_machine.located(QStringLiteral("/proc/%1").arg(process));
    const std::optional<struct stat> state = stateOf(directory);
    const FileContent stat = readFile(directory + QStringLiteral("/stat"), largestFile);
    if (process <= 1 || !state || !stat.content)
        return texts::tr("process %1 has ended already").arg(process);
    if (state->st_uid != geteuid() && geteuid() != 0) {
        show(asRoot("kill", {QString::number(process)}));
        return {};
    }
    const QByteArray fields = stat.content->mid(stat.content->lastIndexOf(')') + 2);
    Change change;
    change.kind = Change::Kind::End;
    change.process = process;
    change.processStart = fields.simplified().split(' ').value(startField - 3).toULongLong();
    m_changes.append(change);
    return {};
}

void Draft::show(const QStringList &command)
{
    Change change;
    change.kind = Change::Kind::Command;
    change.command = command;
    m_changes.append(change);
}

} // namespace doctor
