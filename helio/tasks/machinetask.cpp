#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <QSet>
#include <QStorageInfo>

#include "doctor/machine/filereading.h"
#include "doctor/machine/machine.h"
#include "doctor/machine/mounts.h"
#include "helio/processes/processlist.h"
#include "helio/tasks/tasks.h"

namespace helio {

namespace {

constexpr qint64 largestFile = 8 * 1024 * 1024;
constexpr char drm[] = "/sys/class/drm";

QByteArray contentOf(const doctor::Machine &machine, const QString &path)
{
    return doctor::readFile(machine.located(path), largestFile).content.value_or(QByteArray());
}

QString lineOf(const doctor::Machine &machine, const QString &path)
{
    return QString::fromUtf8(contentOf(machine, path)).trimmed();
}

/// The value of NAME="value" in os-release(5).
QString field(const QString &content, const QString &name)
{
    const QRegularExpression line(QStringLiteral("^%1=\"?([^\"\\n]*)").arg(name),
                                  QRegularExpression::MultilineOption);
    return line.match(content).captured(1).trimmed();
}

/// The type of the session, also where no session manager has set it.
QString sessionOf(const doctor::Machine &machine)
{
    const auto variable = [&machine](const char *name) {
        return machine.variable(QLatin1String(name)).value_or(QString());
    };
    const QString type = variable("XDG_SESSION_TYPE");
    if (type == QLatin1String("wayland") || type == QLatin1String("x11"))
        return type;
    if (!variable("WAYLAND_DISPLAY").isEmpty())
        return QStringLiteral("wayland");
    return variable("DISPLAY").isEmpty() ? QString() : QStringLiteral("x11");
}

/// The file systems of disks, each once. Others are not asked: a share may not answer.
QJsonArray disksOf(const doctor::Machine &machine)
{
    QJsonArray disks;
    QSet<QByteArray> seen;
    const QList<QByteArray> lines =
        contentOf(machine, QStringLiteral("/proc/self/mounts")).split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> parts = line.split(' ');
        const QByteArray &device = parts.first();
        const bool isDisk = parts.size() > 3 && device.startsWith("/dev/") &&
                            !device.startsWith("/dev/loop") && !seen.contains(device);
        if (!isDisk)
            continue;
        const QString place = QFile::decodeName(doctor::mountField(parts.at(1)));
        const QStorageInfo storage(machine.located(place));
        if (storage.bytesTotal() <= 0)
            continue;
        seen.insert(device);
        disks.append(QJsonObject{{QStringLiteral("place"), place},
                                 {QStringLiteral("type"), QString::fromUtf8(parts.at(2))},
                                 {QStringLiteral("total"), double(storage.bytesTotal())},
                                 {QStringLiteral("free"), double(storage.bytesAvailable())},
                                 {QStringLiteral("isReadOnly"), storage.isReadOnly()}});
    }
    return disks;
}

/// Vendor and device by their numbers "0x8086", from the table that hwdata and pciutils install.
QString cardName(const doctor::Machine &machine, const QString &vendor, const QString &device)
{
    for (const char *table : {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"}) {
        const QByteArray names = '\n' + contentOf(machine, QLatin1String(table));
        const int start = names.indexOf("\n" + vendor.mid(2).toLatin1() + "  ");
        if (start < 0)
            continue;
        static const QRegularExpression next(QStringLiteral("\n[0-9a-fA-C]"));
        const QString block = QString::fromUtf8(names.mid(start + 1, largestFile));
        const QString own = block.left(block.indexOf(next));
        const QString vendorName = own.section(QLatin1Char('\n'), 0, 0).mid(6);
        const QRegularExpression line(QStringLiteral("\n\t%1  ([^\n]*)").arg(device.mid(2)));
        return (vendorName + QLatin1Char(' ') + line.match(own).captured(1)).trimmed();
    }
    return vendor + QLatin1Char(':') + device;
}

QJsonArray graphicsOf(const doctor::Machine &machine)
{
    QJsonArray cards;
    const QStringList names = QDir(machine.located(QLatin1String(drm)))
                                  .entryList({QStringLiteral("card?")}, QDir::AllEntries);
    for (const QString &card : names) {
        const QString folder = QStringLiteral("%1/%2/device/").arg(QLatin1String(drm), card);
        const QString vendor = lineOf(machine, folder + QStringLiteral("vendor"));
        const QString device = lineOf(machine, folder + QStringLiteral("device"));
        const QFileInfo driver(machine.located(folder + QStringLiteral("driver")));
        cards.append(
            QJsonObject{{QStringLiteral("name"),
                         vendor.isEmpty() ? QString() : cardName(machine, vendor, device)},
                        {QStringLiteral("driver"), QFileInfo(driver.symLinkTarget()).fileName()}});
    }
    return cards;
}

/// The name that a screen tells of itself; empty if it tells none. See the EDID standard.
QString screenName(const QByteArray &identification)
{
    constexpr int first = 54;
    constexpr int length = 18;
    constexpr int header = 5;
    for (int start = first; start + length <= identification.size() && start < 126;
         start += length) {
        const QByteArray descriptor = identification.mid(start, length);
        if (descriptor.startsWith(QByteArray("\0\0\0\xFC\0", header)))
            return QString::fromLatin1(descriptor.mid(header))
                .section(QLatin1Char('\n'), 0, 0)
                .trimmed();
    }
    return {};
}

QJsonArray screensOf(const doctor::Machine &machine)
{
    QJsonArray screens;
    const QStringList outputs = QDir(machine.located(QLatin1String(drm)))
                                    .entryList({QStringLiteral("card?-*")}, QDir::AllEntries);
    for (const QString &output : outputs) {
        const QString folder = QStringLiteral("%1/%2/").arg(QLatin1String(drm), output);
        if (lineOf(machine, folder + QStringLiteral("status")) != QLatin1String("connected"))
            continue;
        screens.append(QJsonObject{
            {QStringLiteral("name"),
             screenName(contentOf(machine, folder + QStringLiteral("edid")))},
            {QStringLiteral("output"), output.section(QLatin1Char('-'), 1)},
            {QStringLiteral("mode"),
             lineOf(machine, folder + QStringLiteral("modes")).section(QLatin1Char('\n'), 0, 0)}});
    }
    return screens;
}

/// Such as "zh_CN", the wanted one first.
QJsonArray languagesOf(const doctor::Machine &machine)
{
    QStringList wanted =
        machine.variable(QStringLiteral("LANGUAGE")).value_or(QString()).split(QLatin1Char(':'));
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        wanted.append(machine.variable(QLatin1String(name)).value_or(QString()));
    QJsonArray languages;
    for (const QString &one : qAsConst(wanted)) {
        static const QRegularExpression encoding(QStringLiteral("[.@].*$"));
        const QString language = QString(one).remove(encoding);
        if (!language.isEmpty() && !languages.contains(language))
            languages.append(language);
    }
    return languages;
}

} // namespace

QJsonObject machinePicture(const doctor::Machine &machine)
{
    const QString release =
        QString::fromUtf8(contentOf(machine, QStringLiteral("/etc/os-release")));
    const QString identity = QStringLiteral("/sys/class/dmi/id/");
    const QString model = lineOf(machine, identity + QStringLiteral("sys_vendor")) +
                          QLatin1Char(' ') +
                          lineOf(machine, identity + QStringLiteral("product_name"));
    return {{QStringLiteral("distribution"), field(release, QStringLiteral("PRETTY_NAME"))},
            {QStringLiteral("model"), model.trimmed()},
            {QStringLiteral("desktop"),
             machine.variable(QStringLiteral("XDG_CURRENT_DESKTOP")).value_or(QString())},
            {QStringLiteral("session"), sessionOf(machine)},
            {QStringLiteral("memory"), machineLoad(machine).value(QStringLiteral("memory"))},
            {QStringLiteral("disks"), disksOf(machine)},
            {QStringLiteral("graphics"), graphicsOf(machine)},
            {QStringLiteral("screens"), screensOf(machine)},
            {QStringLiteral("languages"), languagesOf(machine)}};
}

TaskEnd tasks::describeMachine(const TaskRun & /*run*/)
{
    TaskEnd end;
    end.answer.insert(QStringLiteral("machine"), machinePicture(doctor::thisMachine()));
    return end;
}

} // namespace helio
