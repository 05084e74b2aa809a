#include "doctor/why/input/plugin.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include "doctor/editors/keyeditor.h"
#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestPlugin = 16 * 1024 * 1024;
constexpr qint64 largestList = 1024 * 1024;
constexpr int mostPlugins = 1000;
constexpr int elfHeader = 20;

QString directoryOf(const QString &path)
{
    return path.section(QLatin1Char('/'), 0, -2);
}

QString fileIn(const InputProcess &process, const QString &path)
{
    return process.root + path;
}

/// Both frameworks of that name answer to either.
QString stemOf(const QByteArray &module)
{
    return module.startsWith("fcitx") ? QStringLiteral("fcitx") : QString::fromLatin1(module);
}

void addPaths(const QByteArray &list, const QString &folder, QStringList &directories)
{
    for (const QByteArray &one : list.split(':')) {
        if (one.startsWith('/'))
            directories.append(QFile::decodeName(one) + folder);
    }
}

/// Of the file qt.conf beside the program; empty if there is none.
QString configuredPlugins(const InputProcess &process)
{
    const QString beside = directoryOf(process.program);
    const FileContent file =
        readFile(fileIn(process, beside + QStringLiteral("/qt.conf")), largestList);
    if (!file.content)
        return {};
    const auto value = [&file](const char *key) {
        const std::optional<FoundKey> found =
            keyEditor(Format::Ini)
                .find(*file.content, {QStringLiteral("Paths"), QLatin1String(key)});
        return found ? found->value : QString();
    };
    QString prefix = value("Prefix");
    if (!prefix.startsWith(QLatin1Char('/')))
        prefix = beside + QLatin1Char('/') + prefix;
    QString plugins = value("Plugins");
    if (plugins.startsWith(QLatin1Char('/')))
        return plugins;
    return prefix + QLatin1Char('/') + (plugins.isEmpty() ? QStringLiteral("plugins") : plugins);
}

/// Where Qt was built to look; where it is not known exactly, wherever it could be.
QStringList builtInPlugins(const Toolkit &toolkit)
{
    const QString libraries = directoryOf(toolkit.library);
    return {libraries + QStringLiteral("/qt%1/plugins").arg(toolkit.major),
            libraries + QStringLiteral("/qt/plugins"), libraries + QStringLiteral("/../plugins"),
            libraries + QStringLiteral("/plugins")};
}

QStringList qtDirectories(const InputProcess &process, const Toolkit &toolkit)
{
    const QString folder = toolkit.major == 4 ? QStringLiteral("/inputmethods")
                                              : QStringLiteral("/platforminputcontexts");
    QStringList directories;
    addPaths(process.environment.value("QT_PLUGIN_PATH"), folder, directories);
    const QString configured = configuredPlugins(process);
    const QStringList usual =
        configured.isEmpty() ? builtInPlugins(toolkit) : QStringList{configured};
    for (const QString &directory : usual)
        directories.append(directory + folder);
    directories.append(directoryOf(process.program) + folder);
    return directories;
}

QString gtkFolder(const Toolkit &toolkit)
{
    const QString binary =
        toolkit.major == 2 ? QStringLiteral("2.10.0") : QStringLiteral("%1.0.0").arg(toolkit.major);
    return QStringLiteral("/gtk-%1.0/%2/").arg(toolkit.major).arg(binary);
}

QStringList gtkDirectories(const InputProcess &process, const Toolkit &toolkit)
{
    QStringList directories;
    addPaths(process.environment.value("GTK_PATH"), QStringLiteral("/immodules"), directories);
    directories.append(directoryOf(toolkit.library) + gtkFolder(toolkit) +
                       QStringLiteral("immodules"));
    return directories;
}

QString gtkList(const InputProcess &process, const Toolkit &toolkit)
{
    const QByteArray own = process.environment.value("GTK_IM_MODULE_FILE");
    return own.isEmpty() ? directoryOf(toolkit.library) + gtkFolder(toolkit) +
                               QStringLiteral("immodules.cache")
                         : QFile::decodeName(own);
}

/// The lines of GTK's list that describe @p module.
QList<QByteArray> listed(const InputProcess &process, const Toolkit &toolkit,
                         const QByteArray &module)
{
    QList<QByteArray> lines;
    const QByteArray list = readFile(fileIn(process, gtkList(process, toolkit)), largestList)
                                .content.value_or(QByteArray());
    for (const QByteArray &line : list.split('\n')) {
        if (line.startsWith('"' + module + '"'))
            lines.append(line);
    }
    return lines;
}

bool isSameArchitecture(const QByteArray &one, const QByteArray &other)
{
    // Class and byte order, then the machine.
    return one.mid(4, 2) == other.mid(4, 2) && one.mid(18, 2) == other.mid(18, 2);
}

QByteArray headerOf(const QString &path)
{
    const QByteArray header = readPart(path, 0, elfHeader).content.value_or(QByteArray());
    return header.startsWith("\177ELF") && header.size() == elfHeader ? header : QByteArray();
}

/// The newest Qt whose symbols the plug-in needs: of "Qt_5.15" the 15.
int neededMinor(const QByteArray &content, int major)
{
    const QByteArray beginning = "Qt_" + QByteArray::number(major) + '.';
    int newest = -1;
    for (int at = content.indexOf(beginning); at >= 0; at = content.indexOf(beginning, at + 1)) {
        const QByteArray rest = content.mid(at + beginning.size(), 4);
        const auto end =
            std::find_if(rest.begin(), rest.end(), [](char c) { return c < '0' || c > '9'; });
        newest = std::max(newest, rest.left(static_cast<int>(end - rest.begin())).toInt());
    }
    return newest;
}

/// What a plug-in was built for if that is not the toolkit; empty otherwise.
QString otherToolkit(const QByteArray &content, const Toolkit &toolkit)
{
    const bool isQt = toolkit.kind == Toolkit::Kind::Qt;
    const QVector<QPair<int, QByteArray>> libraries =
        isQt ? QVector<QPair<int, QByteArray>>{{4, "libQtCore.so.4"},
                                               {5, "libQt5Core.so.5"},
                                               {6, "libQt6Core.so.6"}}
             : QVector<QPair<int, QByteArray>>{
                   {2, "libgtk-x11-2.0.so.0"}, {3, "libgtk-3.so.0"}, {4, "libgtk-4.so.1"}};
    const QString family = isQt ? QStringLiteral("Qt %1") : QStringLiteral("GTK %1");
    for (const auto &[major, library] : libraries) {
        if (major != toolkit.major && content.contains(library))
            return family.arg(major);
    }
    const int needed = isQt ? neededMinor(content, toolkit.major) : -1;
    return needed > toolkit.minor ? QStringLiteral("Qt %1.%2").arg(toolkit.major).arg(needed)
                                  : QString();
}

Plugin judged(const InputProcess &process, const Toolkit &toolkit, const QString &path)
{
    const QByteArray own = headerOf(fileIn(process, toolkit.library));
    const FileContent file = readFile(fileIn(process, path), largestPlugin);
    const QByteArray header = headerOf(fileIn(process, path));
    if (!file.content || own.isEmpty())
        return {Plugin::State::Unknown, path, {}};
    if (header.isEmpty() || !isSameArchitecture(header, own))
        return {Plugin::State::WrongArchitecture, path, {}};
    const QString other = otherToolkit(*file.content, toolkit);
    if (!other.isEmpty())
        return {Plugin::State::WrongToolkit, path, other};
    return {Plugin::State::Fine, path, {}};
}

/// The first plug-in that can be used; otherwise the first at all.
Plugin searched(const InputProcess &process, const Toolkit &toolkit, const QString &stem)
{
    const QStringList directories = toolkit.kind == Toolkit::Kind::Qt
                                        ? qtDirectories(process, toolkit)
                                        : gtkDirectories(process, toolkit);
    Plugin best{Plugin::State::Missing, {}, {}};
    for (const QString &directory : directories) {
        const QStringList names =
            namesIn(fileIn(process, directory), mostPlugins).value_or(QStringList());
        for (const QString &name : names) {
            if (!name.contains(stem) || !name.endsWith(QLatin1String(".so")))
                continue;
            Plugin plugin = judged(process, toolkit, directory + QLatin1Char('/') + name);
            if (plugin.state == Plugin::State::Fine)
                return plugin;
            if (best.state == Plugin::State::Missing)
                best = plugin;
        }
    }
    return best;
}

} // namespace

Plugin pluginOf(const InputProcess &process, const Toolkit &toolkit, const QByteArray &module)
{
    const QString stem = stemOf(module);
    for (const QString &path : toolkit.plugins) {
        if (path.section(QLatin1Char('/'), -1).contains(stem))
            return {Plugin::State::Loaded, path, {}};
    }
    if (!QFileInfo(fileIn(process, directoryOf(toolkit.library))).isReadable())
        return {};
    Plugin plugin = searched(process, toolkit, stem);
    const bool hasList = toolkit.kind == Toolkit::Kind::Gtk && toolkit.major < 4;
    if (plugin.state == Plugin::State::Fine && hasList &&
        listed(process, toolkit, module).isEmpty())
        return {Plugin::State::NotRegistered, plugin.path, gtkList(process, toolkit)};
    return plugin;
}

QByteArray gtkModuleOfSettings(const InputProcess &process, const Toolkit &toolkit,
                               const QString &home)
{
    const QString name = QStringLiteral("/gtk-%1.0/settings.ini").arg(toolkit.major);
    for (const QString &path :
         {home + QStringLiteral("/.config") + name, QStringLiteral("/etc") + name}) {
        const FileContent file = readFile(fileIn(process, path), largestList);
        const std::optional<FoundKey> found =
            keyEditor(Format::Ini)
                .find(file.content.value_or(QByteArray()),
                      {QStringLiteral("Settings"), QStringLiteral("gtk-im-module")});
        if (found)
            return found->value.toUtf8();
    }
    return {};
}

bool isUsualModule(const InputProcess &process, const Toolkit &toolkit, const QByteArray &module,
                   const QByteArray &locale)
{
    // GTK 4 takes any that is installed.
    if (toolkit.major >= 4) {
        const Plugin::State state = pluginOf(process, toolkit, module).state;
        return state == Plugin::State::Fine || state == Plugin::State::Loaded;
    }
    const QByteArray language = locale.left(2);
    for (const QByteArray &line : listed(process, toolkit, module)) {
        // "ja:ko:zh:*", the last of five fields.
        const QByteArray languages = line.split('"').value(9);
        for (const QByteArray &one : languages.split(':')) {
            if (one == "*" || (!language.isEmpty() && one.left(2) == language))
                return true;
        }
    }
    return false;
}

} // namespace doctor
