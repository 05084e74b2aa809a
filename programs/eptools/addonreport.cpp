#include "programs/eptools/addonreport.h"

#include <cstdio>

#include "programs/component/suiteprograms.h"
#include "suites/addons/addons.h"
#include "texts/texts.h"

namespace tools {

namespace {

QString ownerText(const QString &owner)
{
    if (owner == QLatin1String("user"))
        return texts::tr("installed by you");
    return owner == QLatin1String("shared") ? texts::tr("installed for all users")
                                            : texts::tr("comes with LibreOffice");
}

ReportEntry entryOf(const suites::Addon &addon)
{
    ReportEntry entry;
    const QString name = (addon.name + QLatin1Char(' ') + addon.version).trimmed();
    entry.heading = QStringLiteral("%1 (%2)").arg(name, ownerText(addon.owner));
    entry.lines.append(addon.path);
    entry.lines += addon.uses;
    for (const QString &fault : addon.faults)
        entry.lines.append(texts::tr("Fault: %1").arg(fault));
    entry.hasFault = !addon.faults.isEmpty();
    return entry;
}

/// What fails comes first.
ReportSection section(const QString &title, const QVector<suites::Addon> &addons)
{
    ReportSection result{title, {}};
    for (const bool isFaulty : {true, false}) {
        for (const suites::Addon &addon : addons) {
            if (addon.faults.isEmpty() != isFaulty)
                result.entries.append(entryOf(addon));
        }
    }
    return result;
}

} // namespace

QVector<ReportSection> addonReport()
{
    const std::optional<suites::Installation> office = programs::suiteInstead();
    if (!office)
        return {};
    const suites::Addons addons = suites::addonsOf(*office);
    ReportSection log{texts::tr("Log of the extension manager"), {}};
    for (const QString &line : addons.log)
        log.entries.append({line, {}, false});
    return {section(texts::tr("Extensions"), addons.extensions),
            section(texts::tr("Macros"), addons.macros),
            section(texts::tr("Events that start a macro"), addons.events), log};
}

int printAddonReport()
{
    const QVector<ReportSection> sections = addonReport();
    if (sections.isEmpty())
        std::fprintf(
            stderr, "%s\n",
            texts::tr("No office suite is installed. Install LibreOffice.").toUtf8().constData());
    const auto print = [](int indent, const QString &line) {
        std::printf("%*s%s\n", indent, "", line.toUtf8().constData());
    };
    for (const ReportSection &part : sections) {
        print(0, part.title);
        if (part.entries.isEmpty())
            print(2, texts::tr("none"));
        for (const ReportEntry &entry : part.entries) {
            print(2, entry.heading);
            for (const QString &line : entry.lines)
                print(6, line);
        }
    }
    return sections.isEmpty() ? 1 : 0;
}

} // namespace tools
