#include "helio/doctor/commands/commandrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

#include "doctor/why/open/open.h"

namespace helio {

namespace {

using doctor::Change;
using doctor::Machine;

/// Those that plugin/config/recovericon.sh puts in place or removes.
constexpr std::array<const char *, 8> separateShortcuts{
    "vyr-office-vyr.desktop",   "vyr-office-tbl.desktop",   "vyr-office-shw.desktop",
    "vyr-office-pdf.desktop",   "vyr-office-fixed.desktop", "vyr-office-chart.desktop",
    "vyr-office-board.desktop", "vyr-office-docket.desktop"};
constexpr char integratedShortcut[] = "vyr-office-tessaly.desktop";

constexpr std::array<const char *, 12> typeFiles{
    "XMLnamespaces", "aliases",    "generic-icons", "globs",     "globs2", "icons",
    "magic",         "mime.cache", "subclasses",    "treemagic", "types",  "version"};

constexpr qint64 largestShortcut = 1 << 20;

std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestShortcut)
        return std::nullopt;
    return file.readAll();
}

QString directory(const Machine &machine, const char *variable)
{
    return machine.variable(QLatin1String(variable)).value_or(QString());
}

Change removal(const QString &path)
{
    Change change;
    change.kind = Change::Kind::Remove;
    change.path = path;
    return change;
}

/// Nothing if the copy is there already.
std::optional<Change> copying(const QString &source, const QString &target)
{
    Change change;
    change.kind = QFileInfo::exists(target) ? Change::Kind::Write : Change::Kind::Create;
    change.path = target;
    change.before = contentOf(target);
    change.after = contentOf(source);
    if (change.before == change.after)
        return std::nullopt;
    return change;
}

CommandRepair restoring(const Machine &machine, bool isIntegrated)
{
    const QString source = directory(machine, "SUITE_ROOT") + QStringLiteral("/desktops/");
    const QString desktop = desktopFolder(machine) + QLatin1Char('/');
    CommandRepair repair;
    repair.checks = QStringList{isIntegrated ? QStringLiteral("shortcuts.integrated-missing")
                                             : QStringLiteral("shortcuts.missing")};
    const auto add = [&](const char *shortcut, bool isWanted) {
        const QString name = QLatin1String(shortcut);
        const QString target = desktop + name;
        repair.paths.append(target);
        std::optional<Change> change;
        if (isWanted && QFileInfo::exists(source + name))
            change = copying(source + name, target);
        else if (QFileInfo::exists(source) && QFileInfo::exists(target))
            change = removal(target);
        if (change)
            repair.changes.append(*change);
    };
    for (const char *shortcut : separateShortcuts)
        add(shortcut, !isIntegrated);
    add(integratedShortcut, isIntegrated);
    return repair;
}

CommandRepair restoringSeparate(const Machine &machine)
{
    return restoring(machine, false);
}

CommandRepair restoringIntegrated(const Machine &machine)
{
    return restoring(machine, true);
}

/// What update-mime-database(1) makes of the package of the suite's types.
QStringList typeDatabase(const QString &folder)
{
    QStringList files;
    for (const char *name : typeFiles)
        files.append(folder + QLatin1Char('/') + QLatin1String(name));
    for (const QString &suffix : doctor::OpenQuestion::suffixes())
        files.append(folder + QStringLiteral("/application/vyr-office.%1.xml").arg(suffix));
    return files;
}

/// The window's task for some kinds: others may remain.
CommandRepair associating(const Machine &machine)
{
    // The command goes by the home, and the window's task by the session's variable.
    const QString usual = machine.home() + QStringLiteral("/.local/share");
    const QString data = directory(machine, "XDG_DATA_HOME");
    CommandRepair repair;
    repair.paths =
        QStringList{directory(machine, "XDG_CONFIG_HOME") + QStringLiteral("/mimeapps.list")};
    for (const QString &folder : data == usual ? QStringList{usual} : QStringList{usual, data}) {
        repair.paths.append(folder + QStringLiteral("/mime/packages/Override.xml"));
        repair.derived += typeDatabase(folder + QStringLiteral("/mime"));
    }
    for (const QString &name : QStringList{
             QStringLiteral("vyr-office-vyr.desktop"), QStringLiteral("vyr-office-tbl.desktop"),
             QStringLiteral("vyr-office-shw.desktop"), QLatin1String(integratedShortcut)})
        repair.derived.append(data + QStringLiteral("/applications/") + name);
    return repair;
}

CommandRepair associatingAll(const Machine &machine)
{
    CommandRepair repair = associating(machine);
    repair.checks = QStringList{
        QStringLiteral("associations.writer"), QStringLiteral("associations.spreadsheet"),
        QStringLiteral("associations.presentation"), QStringLiteral("associations.types")};
    return repair;
}

CommandRepair forgettingDumps(const Machine &machine)
{
    CommandRepair repair;
    repair.paths =
        QStringList{directory(machine, "XDG_CONFIG_HOME") + QStringLiteral("/Orvane/Office.conf")};
    return repair;
}

CommandRepair keepingDumps(const Machine &machine)
{
    CommandRepair repair = forgettingDumps(machine);
    repair.checks = QStringList{QStringLiteral("crash.dumps-off")};
    return repair;
}

CommandRepair clearingDumps(const Machine &machine)
{
    const QString suite = machine.variable(QStringLiteral("HELIO_SUITE_HOME"))
                              .value_or(machine.home() + QStringLiteral("/.local/share/Orvane"));
    CommandRepair repair;
    const QFileInfoList dumps =
        QDir(suite + QStringLiteral("/tmp/dump")).entryInfoList(QDir::Files);
    for (const QFileInfo &dump : dumps) {
        repair.paths.append(dump.filePath());
        repair.changes.append(removal(dump.filePath()));
    }
    repair.checks = QStringList{QStringLiteral("crash.dumps-there")};
    return repair;
}

struct Known
{
    const char *command;
    const char *subject;
    CommandRepair (*repair)(const Machine &machine);
};
constexpr std::array<Known, 7> knownRepairs{{
    {"fixfouricon", "shortcuts", restoringSeparate},
    {"fixoneicon", "shortcuts", restoringIntegrated},
    {"fileassorepair", "associations", associatingAll},
    {"associate", "associations", associating},
    {"startDump", "crash", keepingDumps},
    {"stopDump", "crash", forgettingDumps},
    {"cleardumpdir", "crash", clearingDumps},
}};

} // namespace

QString desktopFolder(doctor::Machine machine)
{
    const QString user = machine.variable(QStringLiteral("USER")).value_or(QString());
    const QString home =
        user == QLatin1String("root") ? QStringLiteral("/root") : QStringLiteral("/home/") + user;
    const QString configuration = home + QStringLiteral("/.config");
    const QDir homeDirectory(QDir::cleanPath(home));
    if (QFileInfo::exists(configuration + QStringLiteral("/user-dirs.dirs"))) {
        machine.environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configuration);
        machine.environment.remove(QStringLiteral("XDG_DESKTOP_DIR"));
        QString folder = machine.variable(QStringLiteral("XDG_DESKTOP_DIR")).value_or(QString());
        if (folder.startsWith(home + QLatin1Char('/')))
            folder.remove(0, home.size());
        return QDir::cleanPath(homeDirectory.path() + QLatin1Char('/') + folder);
    }
    for (const QString &name : {QStringLiteral("桌面"), QStringLiteral("Desktop")}) {
        if (homeDirectory.exists(name))
            return homeDirectory.filePath(name);
    }
    return homeDirectory.filePath(QStringLiteral("桌面"));
}

std::optional<CommandRepair> commandRepair(const QString &command, const Machine &machine)
{
    const auto *const known =
        std::find_if(knownRepairs.begin(), knownRepairs.end(), [&command](const Known &one) {
            return command == QLatin1String(one.command);
        });
    if (known == knownRepairs.end())
        return std::nullopt;
    CommandRepair repair = known->repair(machine);
    repair.command = command;
    repair.subject = QLatin1String(known->subject);
    return repair;
}

} // namespace helio
