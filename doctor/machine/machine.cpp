#include "doctor/machine/machine.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QStringList>

#include <array>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestAccountFile = 4 * 1024 * 1024;
constexpr int accountFields = 6;

struct Default
{
    const char *name;
    const char *belowHome;
};
/// As the XDG standard for base directories has them.
constexpr std::array<Default, 4> baseDirectories{{
    {"XDG_CONFIG_HOME", "/.config"},
    {"XDG_DATA_HOME", "/.local/share"},
    {"XDG_STATE_HOME", "/.local/state"},
    {"XDG_CACHE_HOME", "/.cache"},
}};

/// Of user-dirs.dirs, which xdg-user-dirs keeps.
QString desktopFolder(const Machine &machine)
{
    const QString home = machine.home();
    const QString configured =
        machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString());
    const FileContent file = readFile(
        machine.located(configured + QStringLiteral("/user-dirs.dirs")), largestAccountFile);
    const QRegularExpression entry(
        QStringLiteral("^\\s*XDG_DESKTOP_DIR=\"((?:\\$HOME)?)(/[^\"]*)\""),
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match =
        entry.match(QString::fromUtf8(file.content.value_or(QByteArray())));
    if (!match.hasMatch())
        return home + QStringLiteral("/Desktop");
    QString folder = (match.capturedLength(1) > 0 ? home : QString()) + match.captured(2);
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    return folder;
}

/// The fields of each line of a file like /etc/passwd below a test's root.
QVector<QStringList> accountLines(const Machine &machine, const char *path)
{
    QVector<QStringList> lines;
    const FileContent file = readFile(machine.located(QLatin1String(path)), largestAccountFile);
    for (const QByteArray &line : file.content.value_or(QByteArray()).split('\n'))
        lines.append(QString::fromUtf8(line).split(QLatin1Char(':')));
    return lines;
}

Account fromEntry(const passwd &entry)
{
    return {QFile::decodeName(entry.pw_name), QFile::decodeName(entry.pw_dir), entry.pw_gid,
            QFile::decodeName(entry.pw_shell)};
}

constexpr std::size_t accountBuffer = 64 * 1024;

} // namespace

std::optional<QString> Machine::variable(const QString &name) const
{
    const QString value = environment.value(name);
    if (!value.isEmpty())
        return value;
    if (name == QLatin1String("HOME"))
        return accountOf(*this, user).home;
    if (name == QLatin1String("USER"))
        return accountOf(*this, user).name;
    if (name == QLatin1String("XDG_DESKTOP_DIR"))
        return desktopFolder(*this);
    if (name == QLatin1String("SUITE_ROOT") && QCoreApplication::instance())
        return QCoreApplication::applicationDirPath().section(QLatin1Char('/'), 0, -2);
    for (const Default &directory : baseDirectories) {
        if (name == QLatin1String(directory.name))
            return home() + QLatin1String(directory.belowHome);
    }
    return std::nullopt;
}

Machine thisMachine()
{
    Machine machine;
    machine.user = geteuid();
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString &name : names)
        machine.environment.insert(name, environment.value(name));
    return machine;
}

Account accountOf(const Machine &machine, uid_t user)
{
    if (!machine.root.isEmpty()) {
        for (const QStringList &fields : accountLines(machine, "/etc/passwd")) {
            if (fields.size() >= accountFields && fields[2] == QString::number(user))
                return {fields[0], fields[5], fields[3].toUInt(), fields.value(6)};
        }
        return {};
    }
    std::vector<char> buffer(accountBuffer);
    passwd entry;
    passwd *found = nullptr;
    getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
    return found ? fromEntry(*found) : Account();
}

std::optional<uid_t> userNamed(const Machine &machine, const QString &name)
{
    if (!machine.root.isEmpty()) {
        for (const QStringList &fields : accountLines(machine, "/etc/passwd")) {
            if (fields.size() >= accountFields && fields[0] == name)
                return fields[2].toUInt();
        }
        return std::nullopt;
    }
    std::vector<char> buffer(accountBuffer);
    passwd entry;
    passwd *found = nullptr;
    getpwnam_r(QFile::encodeName(name).constData(), &entry, buffer.data(), buffer.size(), &found);
    return found ? std::optional(found->pw_uid) : std::nullopt;
}

QString groupName(const Machine &machine, gid_t group)
{
    if (!machine.root.isEmpty()) {
        for (const QStringList &fields : accountLines(machine, "/etc/group")) {
            if (fields.size() >= 3 && fields[2] == QString::number(group))
                return fields[0];
        }
        return QString::number(group);
    }
    std::vector<char> buffer(accountBuffer);
    struct group entry;
    struct group *found = nullptr;
    getgrgid_r(group, &entry, buffer.data(), buffer.size(), &found);
    return found ? QFile::decodeName(found->gr_name) : QString::number(group);
}

} // namespace doctor
