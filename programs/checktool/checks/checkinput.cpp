#include <QFileInfo>

#include <algorithm>
#include <array>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/libraries/libraryclosure.h"
#include "programs/checktool/machine/inputplugins.h"
#include "programs/checktool/machine/runningprograms.h"
#include "texts/texts.h"

namespace programs {

namespace {

const QString qtVariable = QStringLiteral("QT_IM_MODULE");
const QString gtkVariable = QStringLiteral("GTK_IM_MODULE");
const QString x11Variable = QStringLiteral("XMODIFIERS");
const QString x11Beginning = QStringLiteral("@im=");

/// An input method with a program of its own.
struct Framework
{
    const char *name; ///< value of the variables
    const char *package;
    std::array<const char *, 2> programs; ///< one of them is enough
    const char *start;
};

constexpr std::array<Framework, 3> frameworks = {
    {{"fcitx5", "fcitx5-frontend-qt5", {"fcitx5", "fcitx5"}, "fcitx5 -d"},
     {"fcitx", "fcitx5-frontend-qt5", {"fcitx5", "fcitx"}, "fcitx5 -d"},
     {"ibus", "libqt5gui5", {"ibus-daemon", "ibus-daemon"}, "ibus-daemon -drx"}}};

const Framework *frameworkOf(const QString &name)
{
    const auto found =
        std::find_if(frameworks.begin(), frameworks.end(),
                     [&](const Framework &each) { return name == QLatin1String(each.name); });
    return found == frameworks.end() ? nullptr : &*found;
}

/// fcitx5 also accepts the name of its predecessor.
QString family(const QString &name)
{
    return name == QLatin1String("fcitx5") ? QStringLiteral("fcitx") : name;
}

struct Setting
{
    QString variable;
    QString name;
};

QList<Setting> settingsOf(const Machine &machine)
{
    QString x11 = machine.environment.value(x11Variable);
    x11 = x11.startsWith(x11Beginning) ? x11.mid(x11Beginning.size()) : QString();
    QList<Setting> settings;
    for (const Setting &setting : {Setting{qtVariable, machine.environment.value(qtVariable)},
                                   Setting{gtkVariable, machine.environment.value(gtkVariable)},
                                   Setting{x11Variable, x11}}) {
        if (!setting.name.isEmpty())
            settings.append({setting.variable, setting.name.toLower()});
    }
    return settings;
}

/// Whether all variables name the same input method, as they must.
void checkAgreement(const QList<Setting> &settings, Findings &findings)
{
    const Setting &first = settings.first();
    for (const Setting &setting : settings) {
        // "xim" hands input to the method that XMODIFIERS names.
        if (family(setting.name) != family(first.name) && first.name != QLatin1String("xim") &&
            setting.name != QLatin1String("xim"))
            findings.problem(
                texts::tr("%1 names the input method “%2”, but %3 names “%4”.")
                    .arg(first.variable, first.name, setting.variable, setting.name),
                texts::tr(
                    "Set both to the same one, with “im-config” or in the desktop's settings, "
                    "and log in again."));
    }
}

void checkModuleLibraries(const Machine &machine, const QString &path, Findings &findings)
{
    LibraryClosure closure(LibrarySearch::of(machine));
    const ElfFile module = closure.add(path);
    const QStringList unusable = closure.unusable();
    if (module.state != ElfFile::State::Good)
        findings.problem(texts::tr("The input-method module %1 is damaged.").arg(path),
                         texts::tr("Install its package again."));
    else if (!unusable.isEmpty())
        findings.problem(
            texts::tr("The input-method module %1 cannot be loaded, because these libraries are "
                      "missing, damaged or too old: %2.")
                .arg(path, unusable.join(QStringLiteral(", "))),
            texts::tr("Install the packages that have them."));
    else
        findings.fine(texts::tr("The input-method module %1 can be loaded.").arg(path));
}

void checkModule(const Machine &machine, const QString &name, Findings &findings)
{
    const InputPlugins plugins = InputPlugins::of(machine);
    const QString path = plugins.paths.value(name);
    if (!path.isEmpty()) {
        checkModuleLibraries(machine, path, findings);
        return;
    }
    const Framework *framework = frameworkOf(name);
    const QString remedy =
        framework
            ? texts::tr("Install the package %1.").arg(QString::fromLatin1(framework->package))
            : texts::tr("Choose one of these: %1.")
                  .arg(QStringList(plugins.paths.keys()).join(QStringLiteral(", ")));
    findings.problem(texts::tr("There is no module for the input method “%1” in %2.")
                         .arg(name, plugins.directories.join(QStringLiteral(", "))),
                     remedy);
}

/// The program of the framework that runs; empty if none does.
QString runningProgramOf(const Framework &framework, const QSet<QString> &running)
{
    const auto found =
        std::find_if(framework.programs.begin(), framework.programs.end(),
                     [&](const char *each) { return running.contains(QLatin1String(each)); });
    return found == framework.programs.end() ? QString() : QString::fromLatin1(*found);
}

/// The first framework that runs, or none.
const Framework *runningFramework(const Machine &machine)
{
    const QSet<QString> running = runningPrograms(machine);
    const auto found =
        std::find_if(frameworks.begin(), frameworks.end(), [&](const Framework &framework) {
            return !runningProgramOf(framework, running).isEmpty();
        });
    return found == frameworks.end() ? nullptr : &*found;
}

/// Chinese, Japanese and Korean cannot be typed without an input method.
bool languageNeedsOne(const Machine &machine)
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const QString locale = machine.environment.value(QLatin1String(name));
        if (!locale.isEmpty())
            return QStringList{QStringLiteral("zh"), QStringLiteral("ja"), QStringLiteral("ko")}
                .contains(locale.left(2));
    }
    return false;
}

/// Whether a variable has to name what runs: a Wayland compositor needs none, and desktops start
/// ibus for everybody.
bool hasToBeNamed(const Machine &machine, const Framework &running)
{
    const bool isOnX11 =
        !machine.variable("DISPLAY").isEmpty() && machine.variable("WAYLAND_DISPLAY").isEmpty();
    const bool isMeant = languageNeedsOne(machine) || qstrcmp(running.name, "ibus") != 0;
    return isOnX11 && isMeant;
}

void checkUnset(const Machine &machine, Findings &findings)
{
    // As the doctor judges it, whose verdict the view of the input method shows.
    const Framework *running = runningFramework(machine);
    if (running && hasToBeNamed(machine, *running))
        findings.problem(
            texts::tr(
                "The input method “%1” runs, but no variable names it, so that the suite does "
                "not use it.")
                .arg(QString::fromLatin1(running->name)),
            texts::tr(
                "Choose it with “im-config” or in the desktop's settings, and log in again."));
    else if (!running && languageNeedsOne(machine))
        findings.problem(
            texts::tr("No input method is chosen or running, but the language of the session "
                      "needs one."),
            texts::tr("Install and start fcitx5 or ibus, and choose it with “im-config” or in the "
                      "desktop's settings."));
    else
        findings.note(texts::tr("No input method is chosen (%1 is not set): only what the "
                                "keyboard has can be typed. Choose one with “im-config” or in "
                                "the desktop's settings.")
                          .arg(qtVariable));
}

void checkProgram(const Machine &machine, const QString &name, Findings &findings)
{
    const Framework *framework = frameworkOf(name);
    if (!framework)
        return;
    const QString program = runningProgramOf(*framework, runningPrograms(machine));
    if (!program.isEmpty())
        findings.fine(texts::tr("The input method's program %1 runs.").arg(program));
    else
        findings.problem(
            texts::tr("The input method “%1” does not run.").arg(name),
            texts::tr("Start it with: %1.").arg(QString::fromLatin1(framework->start)));
}

} // namespace

void checkInput(const Machine &machine, const QString &, const QString &argument,
                Findings &findings)
{
    QString name = argument.toLower();
    if (name.isEmpty()) {
        const QList<Setting> settings = settingsOf(machine);
        if (settings.isEmpty()) {
            checkUnset(machine, findings);
            return;
        }
        checkAgreement(settings, findings);
        name = settings.first().name;
        if (settings.first().variable != qtVariable)
            findings.note(texts::tr("%1 is not set, so that the suite itself decides about the "
                                    "input method; %2 names “%3”.")
                              .arg(qtVariable, settings.first().variable, name));
    }
    // Built into the display server or the suite: no module or program to check.
    if (name == QLatin1String("xim") || name == QLatin1String("none") ||
        name == QLatin1String("simple")) {
        findings.fine(texts::tr("The input method “%1” needs no module.").arg(name));
        return;
    }
    checkModule(machine, name, findings);
    checkProgram(machine, name, findings);
}

} // namespace programs
