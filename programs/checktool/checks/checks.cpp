#include "programs/checktool/checks/checks.h"

#include <algorithm>

#include "programs/checktool/machine/words.h"

namespace standin {

std::vector<Check> checks()
{
    return {
        {QStringLiteral("libraries"), Words::tr("the libraries that the program loads"),
         Words::tr("a program or library to look into instead"), checkLibraries},
        {QStringLiteral("fonts"), Words::tr("the fonts that documents usually need"),
         Words::tr("a font family to look for"), checkFonts},
        {QStringLiteral("locale"), Words::tr("the language settings of this session"),
         Words::tr("a language setting to try, such as zh_CN.UTF-8"), checkLocale},
        {QStringLiteral("space"), Words::tr("room for documents, temporary files and settings"),
         Words::tr("a directory to look into as well"), checkSpace},
        {QStringLiteral("configuration"), Words::tr("the program's settings"),
         Words::tr("another settings file to look into"), checkConfiguration},
        {QStringLiteral("printing"), Words::tr("the printing service and its printers"),
         Words::tr("the name of a printer"), checkPrinting},
        {QStringLiteral("display"), Words::tr("windows and graphics in this session"),
         Words::tr("a display to try, such as :1 or wayland-0"), checkDisplay},
        {QStringLiteral("dbus"), Words::tr("the bus over which programs reach each other"),
         Words::tr("the address of a bus to try"), checkSessionBus},
        {QStringLiteral("input"), Words::tr("the input method of this session"),
         Words::tr("an input method to try, such as fcitx or ibus"), checkInput},
        {QStringLiteral("plugins"), Words::tr("the suite's plug-in for browsers"),
         Words::tr("a further directory where a browser looks for plug-ins"), checkPlugins},
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
    findings.problem(Words::tr("There is no check named “%1”.").arg(name),
                     Words::tr("The checks are: %1.").arg(names.join(QStringLiteral(", "))));
    return findings;
}

} // namespace standin
