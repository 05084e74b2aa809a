#include "programs/checktool/checks/checks.h"

#include <algorithm>

#include "texts/texts.h"

namespace programs {

std::vector<Check> checks()
{
    return {
        {QStringLiteral("libraries"), texts::tr("the libraries that the program loads"),
         texts::tr("a program or library to look into instead"), checkLibraries},
        {QStringLiteral("fonts"), texts::tr("the fonts that documents usually need"),
         texts::tr("a font family to look for"), checkFonts},
        {QStringLiteral("locale"), texts::tr("the language settings of this session"),
         texts::tr("a language setting to try, such as zh_CN.UTF-8"), checkLocale},
        {QStringLiteral("space"), texts::tr("room for documents, temporary files and settings"),
         texts::tr("a directory to look into as well"), checkSpace},
        {QStringLiteral("configuration"), texts::tr("the program's settings"),
         texts::tr("another settings file to look into"), checkConfiguration},
        {QStringLiteral("printing"), texts::tr("the printing service and its printers"),
         texts::tr("the name of a printer"), checkPrinting},
        {QStringLiteral("display"), texts::tr("windows and graphics in this session"),
         texts::tr("a display to try, such as :1 or wayland-0"), checkDisplay},
        {QStringLiteral("dbus"), texts::tr("the bus over which programs reach each other"),
         texts::tr("the address of a bus to try"), checkSessionBus},
        {QStringLiteral("input"), texts::tr("the input method of this session"),
         texts::tr("an input method to try, such as fcitx or ibus"), checkInput},
        {QStringLiteral("plugins"), texts::tr("the suite's plug-in for browsers"),
         texts::tr("a further directory where a browser looks for plug-ins"), checkPlugins},
    };
}

Findings findingsOf(const Machine &machine, const QString &name, const QString &application,
                    const QString &argument)
{
    Findings findings;
    const std::vector<Check> all = checks();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const Check &check) { return check.name == name; });
    if (found != all.end()) {
        found->run(machine, application, argument, findings);
        return findings;
    }
    QStringList names;
    for (const Check &check : all)
        names.append(check.name);
    findings.problem(texts::tr("There is no check named “%1”.").arg(name),
                     texts::tr("The checks are: %1.").arg(names.join(QStringLiteral(", "))));
    return findings;
}

} // namespace programs
