#include "doctor/why/input/process.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <array>
#include <climits>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr int mostProcesses = 100000;
constexpr qint64 largestEntry = 4 * 1024 * 1024;
constexpr qint64 largestMaps = 16 * 1024 * 1024;
constexpr int mostAncestors = 8;
/// Of the fields in stat behind the name.
constexpr int parentField = 1;
constexpr int startField = 19;

/// The innermost come first: what they have, the programs of the session have.
constexpr std::array<const char *, 22> sessionPrograms{
    "gnome-shell",  "plasmashell",   "cinnamon",        "xfce4-panel",  "mate-panel",  "lxqt-panel",
    "lxpanel",      "kwin_wayland",  "kwin_x11",        "ukui-panel",   "dde-desktop", "sway",
    "weston",       "labwc",         "xfce4-session",   "mate-session", "i3",          "openbox",
    "lxqt-session", "gnome-session", "gnome-session-b", "ukui-session"};

QString pathOf(const Machine &machine, qint64 id, const char *name)
{
    return machine.located(QStringLiteral("/proc/%1/").arg(id) + QLatin1String(name));
}

QByteArray contentOf(const Machine &machine, qint64 id, const char *name)
{
    return readFile(pathOf(machine, id, name), largestEntry).content.value_or(QByteArray());
}

QString linkOf(const QString &path)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t size = ::readlink(QFile::encodeName(path).constData(), target.data(),
                                    static_cast<std::size_t>(target.size()));
    QString text = QFile::decodeName(target.left(static_cast<int>(std::max<ssize_t>(0, size))));
    if (text.endsWith(QLatin1String(" (deleted)")))
        text.chop(10);
    return text;
}

Environment parsedEnvironment(const QByteArray &content)
{
    Environment environment;
    for (const QByteArray &entry : content.split('\0')) {
        const int equals = entry.indexOf('=');
        // Of several, programs take the first.
        if (equals > 0 && !environment.contains(entry.left(equals)))
            environment.insert(entry.left(equals), entry.mid(equals + 1));
    }
    return environment;
}

DisplayManager displayManagerOf(const QVector<ProcessEntry> &all)
{
    for (const ProcessEntry &one : all) {
        if (one.name == "gdm" || one.name == "gdm3")
            return DisplayManager::Gdm;
        if (one.name == "lightdm")
            return DisplayManager::LightDm;
        if (one.name == "sddm")
            return DisplayManager::Sddm;
    }
    return DisplayManager::Unknown;
}

/// A script that a shell runs; empty for anything else.
QString scriptOf(const Machine &machine, const ProcessEntry &process)
{
    const bool isShell = process.name == "sh" || process.name == "bash" || process.name == "dash";
    const QList<QByteArray> words = contentOf(machine, process.id, "cmdline").split('\0');
    const QByteArray script = words.value(1);
    // The kernel gives a script's own name to the process that interprets it.
    const bool isNamed = process.name == script.mid(script.lastIndexOf('/') + 1).left(15);
    const QString path = QFile::decodeName(script);
    const bool isFile = script.startsWith('/') && QFileInfo(machine.located(path)).isFile();
    return (isShell || isNamed) && isFile ? path : QString();
}

/// The desktop entry that a process or one of its parents was started from.
QString entryOf(const Environment &environment, const QVector<qint64> &family)
{
    const qint64 started = environment.value("GIO_LAUNCHED_DESKTOP_FILE_PID").toLongLong();
    const QByteArray entry = environment.value("GIO_LAUNCHED_DESKTOP_FILE");
    return entry.startsWith('/') && family.contains(started) ? QFile::decodeName(entry) : QString();
}

Launch launchOf(const Machine &machine, const InputProcess &process,
                const QVector<ProcessEntry> &all)
{
    Launch launch;
    QVector<qint64> family{process.entry.id};
    qint64 parent = process.entry.parent;
    for (int i = 0; i < mostAncestors && parent > 1; ++i) {
        const auto found = std::find_if(
            all.begin(), all.end(), [parent](const ProcessEntry &one) { return one.id == parent; });
        if (found == all.end() || found->user != process.entry.user)
            break;
        const QString script = scriptOf(machine, *found);
        if (script.isEmpty())
            break;
        if (!launch.scripts.contains(script))
            launch.scripts.prepend(script);
        family.append(parent);
        parent = found->parent;
    }
    launch.entry = entryOf(process.environment, family);
    return launch;
}

QString sandboxOf(const InputProcess &process, const QString &root)
{
    if (process.environment.contains("FLATPAK_ID") ||
        QFile::exists(root + QStringLiteral("/.flatpak-info")))
        return QStringLiteral("Flatpak");
    return process.environment.contains("SNAP_NAME") ? QStringLiteral("Snap") : QString();
}

QStringList mappedFiles(const QByteArray &maps)
{
    QSet<QByteArray> seen;
    QStringList files;
    for (const QByteArray &line : maps.split('\n')) {
        const int begin = line.indexOf('/');
        QByteArray path = begin < 0 ? QByteArray() : line.mid(begin);
        if (path.endsWith(" (deleted)"))
            path.chop(10);
        if (path.isEmpty() || seen.contains(path))
            continue;
        seen.insert(path);
        files.append(QFile::decodeName(path));
    }
    return files;
}

} // namespace

std::optional<ProcessEntry> processNumbered(const Machine &machine, qint64 id)
{
    const QString directory = machine.located(QStringLiteral("/proc/%1").arg(id));
    struct stat state = {};
    const QByteArray stat = contentOf(machine, id, "stat");
    if (stat.isEmpty() || ::stat(QFile::encodeName(directory).constData(), &state) != 0)
        return std::nullopt;
    const int open = stat.indexOf('(') + 1;
    const int close = stat.lastIndexOf(')');
    const QList<QByteArray> fields = stat.mid(close + 2).split(' ');
    // One that has ended, but was not collected yet.
    if (fields.value(0) == "Z")
        return std::nullopt;
    ProcessEntry entry;
    entry.id = id;
    entry.parent = fields.value(parentField).toLongLong();
    entry.user = state.st_uid;
    entry.name = stat.mid(open, close - open);
    entry.start = fields.value(startField).toULongLong();
    return entry;
}

QVector<ProcessEntry> allProcesses(const Machine &machine)
{
    QVector<ProcessEntry> all;
    const QStringList names =
        namesIn(machine.located(QStringLiteral("/proc")), mostProcesses).value_or(QStringList());
    for (const QString &name : names) {
        bool isNumber = false;
        const qint64 id = name.toLongLong(&isNumber);
        const std::optional<ProcessEntry> entry =
            isNumber ? processNumbered(machine, id) : std::nullopt;
        if (entry)
            all.append(*entry);
    }
    return all;
}

std::optional<Environment> environmentOf(const Machine &machine, qint64 id)
{
    const FileContent file = readFile(pathOf(machine, id, "environ"), largestEntry);
    return file.content ? std::optional(parsedEnvironment(*file.content)) : std::nullopt;
}

void readSessionKind(const Environment &environment, SessionKind &session)
{
    session.hasX11 = !environment.value("DISPLAY").isEmpty();
    session.hasWayland = !environment.value("WAYLAND_DISPLAY").isEmpty() ||
                         environment.value("XDG_SESSION_TYPE") == "wayland";
    const QByteArray desktop = environment.value("XDG_CURRENT_DESKTOP").toLower();
    session.isGnome = desktop.contains("gnome");
    session.isPlasma = desktop.contains("kde");
}

ReadProcess readProcess(const Machine &machine, qint64 id, const QVector<ProcessEntry> &all)
{
    ReadProcess read;
    const std::optional<ProcessEntry> entry = processNumbered(machine, id);
    if (!entry)
        return read;
    InputProcess &process = read.process;
    process.entry = *entry;
    const std::optional<Environment> environment = environmentOf(machine, id);
    const FileContent maps = readFile(pathOf(machine, id, "maps"), largestMaps);
    process.mapped = mappedFiles(maps.content.value_or(QByteArray()));
    process.program = linkOf(pathOf(machine, id, "exe"));
    process.environment = environment.value_or(Environment());
    const QByteArray group = contentOf(machine, id, "cgroup");
    process.launch = launchOf(machine, process, all);
    const QString root = pathOf(machine, id, "root");
    process.sandbox = sandboxOf(process, root);
    process.root = process.sandbox.isEmpty() ? machine.root : root;
    // Another process may have got the number meanwhile.
    const std::optional<ProcessEntry> now = processNumbered(machine, id);
    if (!now || now->start != entry->start)
        return read;
    read.state =
        environment && maps.content ? ReadProcess::State::Read : ReadProcess::State::Foreign;
    readSessionKind(process.environment, process.session);
    process.session.isManaged =
        group.contains("/user@" + QByteArray::number(entry->user) + ".service/");
    process.session.displayManager = displayManagerOf(all);
    return read;
}

std::optional<qint64> sessionProcess(const Machine &machine, const QVector<ProcessEntry> &all)
{
    for (const char *name : sessionPrograms) {
        for (const ProcessEntry &one : all) {
            if (one.user != machine.user || one.name != name)
                continue;
            const Environment environment = environmentOf(machine, one.id).value_or(Environment());
            // A compositor makes its displays itself.
            if (environment.contains("DISPLAY") || environment.contains("WAYLAND_DISPLAY") ||
                environment.value("XDG_SESSION_TYPE") == "wayland")
                return one.id;
        }
    }
    return std::nullopt;
}

} // namespace doctor
