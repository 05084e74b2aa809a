#include "suites/state/state.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/processview.h"

namespace suites {

namespace {

constexpr qint64 largestSettings = 32 << 20;
constexpr qint64 largestName = 64;
constexpr int mostProcesses = 100'000;
/// The kernel cuts names of processes.
constexpr int longestName = 15;

/// What a property of LibreOffice's settings holds. It writes an item with its property a line.
std::optional<bool> flagIn(const QByteArray &settings, const QByteArray &property)
{
    const int start = settings.indexOf("<prop oor:name=\"" + property + '"');
    if (start < 0)
        return std::nullopt;
    const QByteArray rest = settings.mid(start, 200);
    const int value = rest.indexOf("<value>");
    const int end = rest.indexOf("</prop>");
    if (value < 0 || end < value)
        return std::nullopt;
    return rest.mid(value).startsWith("<value>true<");
}

QString pluginFor(const Installation &installation, const QString &desktop)
{
    for (const Toolkit &toolkit : descriptionNamed(installation.suite)->toolkits) {
        if (!desktop.contains(QRegularExpression(toolkit.desktop)))
            continue;
        for (const QString &plugin : toolkit.plugins) {
            if (installation.plugins.contains(plugin))
                return plugin;
        }
        return {};
    }
    return {};
}

Graphics graphicsOf(const Installation &installation, const doctor::Machine &machine)
{
    Graphics graphics;
    const QString forced = machine.environment.value(QStringLiteral("SAL_USE_VCLPLUGIN")).toLower();
    graphics.isForced = !forced.isEmpty();
    graphics.plugin =
        graphics.isForced
            ? forced
            : pluginFor(installation,
                        machine.environment.value(QStringLiteral("XDG_CURRENT_DESKTOP")));
    const doctor::FileContent settings = doctor::readFile(
        machine.located(installation.profile + QStringLiteral("/registrymodifications.xcu")),
        largestSettings);
    if (settings.content) {
        graphics.skia = flagIn(*settings.content, "UseSkia");
        graphics.openCl = flagIn(*settings.content, "UseOpenCL");
    }
    return graphics;
}

bool isOf(const QString &directory, uid_t user)
{
    struct stat state;
    return ::stat(QFile::encodeName(directory).constData(), &state) == 0 && state.st_uid == user;
}

} // namespace

QVector<qint64> processesOf(const Description &description, const doctor::Machine &machine)
{
    QVector<qint64> processes;
    const QString proc = machine.located(QStringLiteral("/proc/"));
    const QByteArray wanted = description.process.left(longestName).toUtf8();
    for (const QString &entry : doctor::namesIn(proc, mostProcesses).value_or(QStringList())) {
        bool isNumber = false;
        const qint64 id = entry.toLongLong(&isNumber);
        if (isNumber && isOf(proc + entry, machine.user) &&
            doctor::readFile(proc + entry + QStringLiteral("/comm"), largestName)
                    .content.value_or(QByteArray())
                    .trimmed() == wanted &&
            doctor::seesHome(machine, id))
            processes.append(id);
    }
    std::sort(processes.begin(), processes.end());
    return processes;
}

State stateOf(const Installation &installation, const doctor::Machine &machine,
              const doctor::Deadline &deadline)
{
    State state;
    state.installation = installation;
    state.profile = profileOf(installation, machine, deadline);
    Installation located = installation;
    located.profile = machine.located(installation.profile);
    located.folder = machine.located(installation.folder);
    state.extensions = extensionsOf(located);
    state.graphics = graphicsOf(installation, machine);
    state.processes = processesOf(*descriptionNamed(installation.suite), machine);
    const QString root = QFileInfo(located.profile).path();
    state.isLocked =
        !installation.profile.isEmpty() && QFileInfo::exists(root + QStringLiteral("/.lock"));
    return state;
}

} // namespace suites
