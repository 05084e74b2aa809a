#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>

#include <sys/utsname.h>

#include "doctor/machine/filereading.h"
#include "fleet/report/groups.h"

namespace fleet {

namespace {

constexpr qint64 largestFile = 1024 * 1024;
constexpr double kibiInGibi = 1024.0 * 1024.0;
constexpr char drm[] = "/sys/class/drm";

QString contentOf(const doctor::Machine &machine, const QString &path)
{
    return QString::fromUtf8(
        doctor::readFile(machine.located(path), largestFile).content.value_or(QByteArray()));
}

/// The first line "NAME: value" or "NAME=value", without quotes.
QString field(const QString &content, const char *name)
{
    const QRegularExpression line(
        QStringLiteral("^%1\\s*[:=]\\s*\"?([^\"\\n]*)").arg(QLatin1String(name)),
        QRegularExpression::MultilineOption);
    return line.match(content).captured(1).trimmed();
}

void keep(Facts &facts, const char *name, const QString &value)
{
    if (!value.isEmpty())
        facts.insert(QLatin1String(name), value);
}

QStringList namesIn(const doctor::Machine &machine, const QString &pattern)
{
    return QDir(machine.located(QLatin1String(drm))).entryList({pattern}, QDir::AllEntries);
}

/// The graphics cards as vendor and device, with the driver of each.
QString graphics(const doctor::Machine &machine)
{
    QStringList cards;
    for (const QString &card : namesIn(machine, QStringLiteral("card?"))) {
        const QString device = QStringLiteral("%1/%2/device/").arg(QLatin1String(drm), card);
        const QString ids = contentOf(machine, device + QStringLiteral("vendor")).trimmed() +
                            QLatin1Char(':') +
                            contentOf(machine, device + QStringLiteral("device")).trimmed();
        const QString driver =
            QFileInfo(QFileInfo(machine.located(device + QStringLiteral("driver"))).symLinkTarget())
                .fileName();
        cards.append(driver.isEmpty() ? ids : ids + QLatin1Char(' ') + driver);
    }
    return cards.join(QStringLiteral(", "));
}

/// The preferred modes of the screens that are connected.
QString screens(const doctor::Machine &machine)
{
    QStringList modes;
    for (const QString &output : namesIn(machine, QStringLiteral("card?-*"))) {
        const QString folder = QStringLiteral("%1/%2/").arg(QLatin1String(drm), output);
        if (contentOf(machine, folder + QStringLiteral("status")).trimmed() ==
            QLatin1String("connected"))
            modes.append(contentOf(machine, folder + QStringLiteral("modes"))
                             .section(QLatin1Char('\n'), 0, 0));
    }
    modes.sort();
    return modes.join(QStringLiteral(", "));
}

/// In classes, since the number changes all the time.
QString roomOn(const QStorageInfo &storage)
{
    constexpr qint64 little = 500LL * 1024 * 1024;
    constexpr qint64 none = 10LL * 1024 * 1024;
    if (storage.bytesAvailable() < none)
        return QStringLiteral("none");
    return storage.bytesAvailable() < little ? QStringLiteral("little") : QStringLiteral("enough");
}

} // namespace

Facts systemFacts(const doctor::Machine &machine)
{
    Facts facts;
    const QString release = contentOf(machine, QStringLiteral("/etc/os-release"));
    keep(facts, "distribution", field(release, "PRETTY_NAME"));
    keep(facts, "distribution id", field(release, "ID"));
    keep(facts, "distribution version", field(release, "VERSION_ID"));
    utsname names{};
    if (uname(&names) == 0) {
        keep(facts, "kernel", QString::fromLatin1(names.release));
        keep(facts, "architecture", QString::fromLatin1(names.machine));
    }
    return facts;
}

Facts hardwareFacts(const doctor::Machine &machine)
{
    Facts facts;
    const QString processors = contentOf(machine, QStringLiteral("/proc/cpuinfo"));
    keep(facts, "processor", field(processors, "model name"));
    keep(facts, "processors",
         QString::number(processors.count(QRegularExpression(
             QStringLiteral("^processor\\s*:"), QRegularExpression::MultilineOption))));
    const double memory = field(contentOf(machine, QStringLiteral("/proc/meminfo")), "MemTotal")
                              .section(QLatin1Char(' '), 0, 0)
                              .toDouble();
    keep(facts, "memory", QStringLiteral("%1 GiB").arg(memory / kibiInGibi, 0, 'f', 0));
    keep(facts, "graphics", graphics(machine));
    keep(facts, "screens", screens(machine));
    keep(facts, "model",
         contentOf(machine, QStringLiteral("/sys/class/dmi/id/product_name")).trimmed());
    return facts;
}

Facts storageFacts(const doctor::Machine &machine)
{
    Facts facts;
    const QString home = machine.home();
    const QStringList places{home, QStringLiteral("/tmp")};
    for (const QString &place : places) {
        const QStorageInfo storage(machine.located(place));
        if (!storage.isValid())
            continue;
        const QString name = place == home ? QStringLiteral("home") : place;
        facts.insert(name + QStringLiteral(": file system"),
                     QString::fromLatin1(storage.fileSystemType()));
        facts.insert(name + QStringLiteral(": writable"),
                     storage.isReadOnly() ? QStringLiteral("no") : QStringLiteral("yes"));
        facts.insert(name + QStringLiteral(": room"), roomOn(storage));
    }
    return facts;
}

} // namespace fleet
