#include "doctor/why/input/framework.h"

#include <QFile>

#include <array>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 64 * 1024;

struct KnownFramework
{
    const char *process;
    const char *name;
    const char *module;
};
constexpr std::array<KnownFramework, 3> knownFrameworks{{
    {"fcitx5", "fcitx5", "fcitx"},
    {"fcitx", "fcitx", "fcitx"},
    {"ibus-daemon", "ibus", "ibus"},
}};

QByteArray firstLine(const Machine &machine, const char *path)
{
    const FileContent file = readFile(machine.located(QLatin1String(path)), largestFile);
    return file.content.value_or(QByteArray()).split('\n').constFirst();
}

/// The "1" of ":1.0".
QByteArray displayNumber(const QByteArray &display)
{
    return display.mid(display.indexOf(':') + 1).split('.').constFirst();
}

} // namespace

QVector<Framework> runningFrameworks(const Machine &machine, const QVector<ProcessEntry> &all)
{
    QVector<Framework> running;
    for (const KnownFramework &known : knownFrameworks) {
        for (const ProcessEntry &one : all) {
            if (one.user == machine.user && one.name == known.process) {
                running.append({known.name, known.module, one.id});
                break;
            }
        }
    }
    return running;
}

QByteArray busAddress(const Environment &environment, uid_t user)
{
    const QByteArray address =
        environment.value("DBUS_SESSION_BUS_ADDRESS").split(';').constFirst();
    if (address.isEmpty())
        return "unix:path=/run/user/" + QByteArray::number(user) + "/bus";
    const int guid = address.indexOf(",guid=");
    return guid < 0 ? address : address.left(guid);
}

IbusAddress ibusAddress(const Machine &machine, const Environment &environment)
{
    IbusAddress address;
    QByteArray id = firstLine(machine, "/etc/machine-id");
    if (id.isEmpty())
        id = firstLine(machine, "/var/lib/dbus/machine-id");
    QString configuration = QFile::decodeName(environment.value("XDG_CONFIG_HOME"));
    if (configuration.isEmpty())
        configuration = machine.home() + QStringLiteral("/.config");
    const QString beginning = configuration + QStringLiteral("/ibus/bus/") +
                              QString::fromLatin1(id) + QStringLiteral("-unix-");
    for (const QByteArray &display :
         {environment.value("WAYLAND_DISPLAY"), displayNumber(environment.value("DISPLAY"))}) {
        if (!display.isEmpty())
            address.files.append(beginning + QFile::decodeName(display));
    }
    for (const QString &path : qAsConst(address.files)) {
        const FileContent file = readFile(machine.located(path), largestFile);
        for (const QByteArray &line : file.content.value_or(QByteArray()).split('\n')) {
            address.isFound = address.isFound || line.startsWith("IBUS_ADDRESS=");
            const QByteArray process = line.startsWith("IBUS_DAEMON_PID=") ? line.mid(16) : "";
            if (!process.isEmpty() && processNumbered(machine, process.toLongLong()))
                address.isAlive = true;
        }
    }
    return address;
}

} // namespace doctor
