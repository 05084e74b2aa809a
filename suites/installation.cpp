#include "suites/installation.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

#include "doctor/conditions/units.h"
#include "doctor/machine/filereading.h"
#include "doctor/machine/pathpattern.h"

namespace suites {

namespace {

constexpr qint64 largestFile = 1024 * 1024;
constexpr char choiceDirectory[] = "/office-assistant/suites/";

QString entryValue(const Entry &entry, const QString &folder, const doctor::Machine &machine)
{
    const QString path = machine.located(folder + QLatin1Char('/') + entry.file);
    const QByteArray content = doctor::readFile(path, largestFile).content.value_or(QByteArray());
    const QRegularExpression pattern(entry.pattern, QRegularExpression::MultilineOption);
    return pattern.match(QString::fromUtf8(content)).captured(1);
}

/// The directory that an address of the bootstrap file means; empty for one with other variables.
QString profileOf(QString address, const Place &place, const QString &folder,
                  const doctor::Machine &machine)
{
    const QString configuration =
        place.configuration.isEmpty()
            ? machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString())
            : machine.home() + place.configuration;
    const QString programs = folder + QStringLiteral("/program");
    address.replace(QLatin1String("$SYSUSERCONFIG"), configuration)
        .replace(QLatin1String("${ORIGIN}"), programs)
        .replace(QLatin1String("$ORIGIN"), programs)
        .replace(QLatin1String("$SYSUSERHOME"), machine.home())
        .replace(QLatin1String("$HOME"), machine.home());
    if (address.startsWith(QLatin1String("file:")))
        address = QUrl(address).toLocalFile();
    const bool isPath = address.startsWith(QLatin1Char('/')) && !address.contains(QLatin1Char('$'));
    return isPath ? QDir::cleanPath(address) : QString();
}

/// What "*" stands for in each path that matches.
QStringList namesFor(const QString &pattern, const QString &folder, const doctor::Machine &machine,
                     const doctor::Deadline &deadline)
{
    const int star = pattern.indexOf(QLatin1Char('*'));
    const int before = folder.size() + 1 + star;
    const int after = pattern.size() - star - 1;
    QStringList names;
    const QString whole = doctor::escapedForPattern(folder) + QLatin1Char('/') + pattern;
    for (const QString &path : doctor::matchedPaths(machine, whole, deadline).paths)
        names.append(path.mid(before, path.size() - before - after));
    return names;
}

Installation described(const Description &description, const Place &place, const QString &folder,
                       const doctor::Machine &machine, const doctor::Deadline &deadline)
{
    Installation installation;
    installation.suite = description.id;
    installation.name = description.name;
    installation.version = entryValue(description.version, folder, machine);
    installation.source = place.source;
    installation.folder = folder;
    installation.command = place.command.isEmpty()
                               ? QStringList(folder + QLatin1Char('/') + description.program)
                               : place.command;
    installation.entries = place.entries;
    installation.entries.replace(QLatin1String("%1"), folder.section(QLatin1Char('/'), -1));
    const QString directory =
        profileOf(entryValue(description.profile, folder, machine), place, folder, machine);
    if (!directory.isEmpty())
        installation.profile = directory + QLatin1Char('/') + description.profilePart;
    for (auto part = description.components.begin(); part != description.components.end(); ++part) {
        if (QFileInfo::exists(machine.located(folder + QLatin1Char('/') + *part)))
            installation.components.append(part.key());
    }
    installation.plugins = namesFor(description.plugins, folder, machine, deadline);
    installation.languages = namesFor(description.languages, folder, machine, deadline);
    return installation;
}

} // namespace

QVector<Installation> installations(const Description &description, const doctor::Machine &machine,
                                    const doctor::Deadline &deadline)
{
    QVector<Installation> all;
    for (const Place &place : description.places) {
        QString pattern = place.folder;
        if (pattern.startsWith(QLatin1Char('~')))
            pattern.replace(0, 1, doctor::escapedForPattern(machine.home()));
        QVector<Installation> here;
        for (const QString &folder : doctor::matchedPaths(machine, pattern, deadline).paths) {
            const Installation found = described(description, place, folder, machine, deadline);
            if (!found.version.isEmpty())
                here.append(found);
        }
        std::stable_sort(here.begin(), here.end(), [](const auto &one, const auto &other) {
            return doctor::compareVersions(one.version, other.version) > 0;
        });
        all += here;
    }
    return all;
}

QStringList chosenEntries(const doctor::Machine &machine, const doctor::Deadline &deadline)
{
    QStringList all;
    for (const Description &description : descriptions()) {
        const auto used = chosen(installations(description, machine, deadline), machine);
        if (used && !used->entries.isEmpty())
            all.append(used->entries);
    }
    return all;
}

QString choiceFile(const QString &suite, const doctor::Machine &machine)
{
    return machine.located(machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString()) +
                           QLatin1String(choiceDirectory) + suite);
}

std::optional<Installation> keptChoice(const QVector<Installation> &found,
                                       const doctor::Machine &machine)
{
    if (found.isEmpty())
        return std::nullopt;
    const doctor::FileContent file =
        doctor::readFile(choiceFile(found.first().suite, machine), largestFile);
    const QString kept = QString::fromUtf8(file.content.value_or(QByteArray())).trimmed();
    const auto same = std::find_if(found.begin(), found.end(), [&kept](const Installation &known) {
        return known.folder == kept;
    });
    return same == found.end() ? std::nullopt : std::make_optional(*same);
}

std::optional<Installation> chosen(const QVector<Installation> &found,
                                   const doctor::Machine &machine)
{
    const std::optional<Installation> kept = keptChoice(found, machine);
    return kept || found.isEmpty() ? kept : found.first();
}

QString keepChoice(const Installation &installation, const doctor::Machine &machine)
{
    const QString path = choiceFile(installation.suite, machine);
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const bool isKept = file.open(QIODevice::WriteOnly) &&
                        file.write(installation.folder.toUtf8() + '\n') > 0 && file.commit();
    return isKept ? QString() : file.errorString();
}

} // namespace suites
