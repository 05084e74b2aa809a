#include "helio/opening/openingsuite.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <array>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/open.h"
#include "doctor/why/open/places.h"
#include "helio/suite/statejson.h"

namespace helio {

namespace {

constexpr char ownId[] = "own";
constexpr char settingsFile[] = "/Orvane/Office.conf";
constexpr char modeKey[] = "6.0/vyroffice/Application Settings/AppComponentMode";
constexpr char separateMode[] = "helio_independ";
constexpr char integratedMode[] = "helio_fushion";
constexpr char integratedEntry[] = "vyr-office-tessaly.desktop";
constexpr char ownTypes[] = "application/vyr-office";
constexpr char ownProgram[] = "/opt/orvane/office/vyr";

/// What the desktop calls a file that it does not know, or of which it only knows the container.
constexpr std::array<const char *, 6> vagueTypes{
    "application/octet-stream", "application/x-ole-storage", "application/zip",
    "application/x-zerosize",   "application/xml",           "text/plain"};

struct Program
{
    const char *own;
    /// Of LibreOffice.
    const char *counterpart;
};
constexpr std::array<Program, 3> programs{{{"vyr-office-vyr.desktop", "writer"},
                                           {"vyr-office-tbl.desktop", "calc"},
                                           {"vyr-office-shw.desktop", "impress"}}};

QString directory(const doctor::Machine &machine, const char *variable)
{
    return machine.variable(QLatin1String(variable)).value_or(QString());
}

bool works(const doctor::DesktopEntries &entries, const QString &name)
{
    return entries.entry(name).state == doctor::EntryState::Works;
}

QString ownEntry(const Program &program, bool isIntegrated)
{
    return QLatin1String(isIntegrated ? integratedEntry : program.own);
}

OpeningSuite ownSuite(const doctor::Machine &machine, const doctor::DesktopEntries &entries)
{
    const bool isIntegrated = componentMode(machine) == QLatin1String(integratedMode);
    const QString shipped = directory(machine, "SUITE_ROOT") + QStringLiteral("/desktops/");
    OpeningSuite suite;
    suite.id = QLatin1String(ownId);
    for (const Program &program : programs) {
        const QString entry = ownEntry(program, isIntegrated);
        const QString file = machine.located(shipped + entry);
        suite.entries.insert(QLatin1String(program.own), QStringList(entry));
        if (!works(entries, entry) && QFileInfo::exists(file) && !suite.unregistered.contains(file))
            suite.unregistered.append(file);
    }
    return suite;
}

bool isOwnRegistered(const doctor::DesktopEntries &entries)
{
    return works(entries, QLatin1String(integratedEntry)) ||
           std::any_of(programs.begin(), programs.end(), [&entries](const Program &program) {
               return works(entries, QLatin1String(program.own));
           });
}

/// The names that desktop entries have, the likeliest for this installation first.
QStringList likelyEntries(const suites::Installation &installation, const QString &program)
{
    const QString version = installation.version.section(QLatin1Char('.'), 0, 1);
    QStringList names{QStringLiteral("libreoffice-%1.desktop").arg(program),
                      QStringLiteral("libreoffice%1-%2.desktop").arg(version, program),
                      QStringLiteral("org.libreoffice.LibreOffice.%1.desktop").arg(program),
                      QStringLiteral("libreoffice_%1.desktop").arg(program)};
    int first = 0;
    if (installation.source == QLatin1String("folder"))
        first = 1;
    else if (installation.source == QLatin1String("flatpak"))
        first = 2;
    else if (installation.source == QLatin1String("snap"))
        first = 3;
    names.move(first, 0);
    return names;
}

QStringList workingEntries(const suites::Installation &installation, const QString &program,
                           const doctor::DesktopEntries &entries)
{
    // One that opens whatever it is given is better than none.
    const QStringList names = likelyEntries(installation, program) +
                              likelyEntries(installation, QStringLiteral("startcenter"));
    QStringList found;
    std::copy_if(names.begin(), names.end(), std::back_inserter(found),
                 [&entries](const QString &name) { return works(entries, name); });
    return found;
}

} // namespace

QVector<DocumentKind> documentKinds()
{
    QVector<DocumentKind> kinds;
    for (const QString &suffix : doctor::OpenQuestion::suffixes())
        kinds.append({suffix, doctor::OpenQuestion::entryOf(suffix)});
    return kinds;
}

bool OpeningSuite::isOwn() const
{
    return id == QLatin1String(ownId);
}

bool OpeningSuite::knows(const QString &type) const
{
    if (isOwn())
        return type.startsWith(QLatin1String(ownTypes));
    return !type.isEmpty() &&
           std::none_of(vagueTypes.begin(), vagueTypes.end(),
                        [&type](const char *vague) { return type == QLatin1String(vague); });
}

bool OpeningSuite::opensWith(const DocumentKind &kind, const QString &entry) const
{
    if (!isOwn())
        return entries.value(kind.entry).contains(entry);
    // Each of this suite's programs opens the documents of the others.
    return std::any_of(entries.begin(), entries.end(),
                       [&entry](const QStringList &own) { return own.contains(entry); });
}

OpeningSuite openingSuite(const doctor::Machine &machine)
{
    const doctor::DesktopEntries entries(doctor::openPlaces(machine));
    const bool isOwnThere =
        isOwnRegistered(entries) || QFileInfo::exists(machine.located(QLatin1String(ownProgram)));
    if (isOwnThere)
        return ownSuite(machine, entries);
    const auto chosen = suites::chosen(allInstallations(machine), machine);
    if (!chosen)
        return {};
    OpeningSuite suite;
    suite.id = chosen->suite;
    suite.name = chosen->name;
    for (const Program &program : programs) {
        const QStringList working =
            workingEntries(*chosen, QLatin1String(program.counterpart), entries);
        // Without an entry of its own it opens documents through those of this suite.
        if (working.isEmpty())
            return ownSuite(machine, entries);
        suite.entries.insert(QLatin1String(program.own), working);
    }
    return suite;
}

QString componentMode(const doctor::Machine &machine)
{
    const QSettings settings(
        machine.located(directory(machine, "XDG_CONFIG_HOME") + QLatin1String(settingsFile)),
        QSettings::IniFormat);
    const QString mode = settings.value(QLatin1String(modeKey)).toString();
    return mode.isEmpty() ? QLatin1String(separateMode) : mode;
}

} // namespace helio
