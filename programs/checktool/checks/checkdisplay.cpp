#include <QJsonArray>

#include <algorithm>
#include <array>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/facts.h"
#include "programs/checktool/machine/probe.h"
#include "texts/texts.h"

namespace programs {

namespace {

const QString platformVariable = QStringLiteral("QT_QPA_PLATFORM");
const QString x11Variable = QStringLiteral("DISPLAY");
const QString waylandVariable = QStringLiteral("WAYLAND_DISPLAY");

/// Qt's platforms that show no window.
constexpr std::array<const char *, 3> unseenPlatforms = {"offscreen", "minimal", "vnc"};
/// Names of renderers that work without a graphics card.
constexpr std::array<const char *, 3> softwareRenderers = {"llvmpipe", "softpipe",
                                                           "Software Rasterizer"};

/// The machine with @p display as the only display of the session.
Machine withDisplay(Machine machine, const QString &display)
{
    const bool isX11 = display.contains(QLatin1Char(':'));
    machine.environment.remove(isX11 ? waylandVariable : x11Variable);
    machine.environment.insert(isX11 ? x11Variable : waylandVariable, display);
    machine.environment.insert(platformVariable,
                               isX11 ? QStringLiteral("xcb") : QStringLiteral("wayland"));
    return machine;
}

QString displayOf(const Machine &machine)
{
    QStringList set;
    for (const QString &name : {waylandVariable, x11Variable, platformVariable}) {
        const QString value = machine.environment.value(name);
        if (!value.isEmpty())
            set.append(name + QLatin1Char('=') + value);
    }
    return set.join(QStringLiteral(", "));
}

void reportWindows(const QJsonObject &found, Findings &findings)
{
    const QString platform = found.value(QLatin1String(facts::platform)).toString();
    const QStringList screens =
        found.value(QLatin1String(facts::screens)).toVariant().toStringList();
    if (std::any_of(unseenPlatforms.begin(), unseenPlatforms.end(),
                    [&](const char *name) { return platform == QLatin1String(name); }))
        findings.problem(texts::tr("Windows are opened, but nobody sees them: the display is “%1”.")
                             .arg(platform),
                         texts::tr("Remove the variable %1 from where the session sets it.")
                             .arg(platformVariable));
    else if (screens.isEmpty())
        findings.problem(texts::tr("The display (%1) has no screen.").arg(platform),
                         texts::tr("Connect a screen, or turn it on in the display settings."));
    else
        findings.fine(texts::tr("Windows can be opened (%1); the screens are %2.")
                          .arg(platform, screens.join(QStringLiteral(", "))));
}

void reportOpenGl(const ProbeEnd &openGl, Findings &findings)
{
    if (!openGl.hasFacts()) {
        findings.note(texts::tr("OpenGL cannot be used, so that slide transitions and charts are "
                                "drawn slowly: %1. Install the driver of the graphics card.")
                          .arg(openGl.fault));
        return;
    }
    const QString renderer = openGl.facts.value(QLatin1String(facts::renderer)).toString();
    const QString version = openGl.facts.value(QLatin1String(facts::version)).toString();
    if (std::any_of(softwareRenderers.begin(), softwareRenderers.end(),
                    [&](const char *name) { return renderer.contains(QLatin1String(name)); }))
        findings.note(texts::tr("OpenGL %1 is drawn by the processor (%2), which is slow. Install "
                                "the driver of the graphics card, if there is one.")
                          .arg(version, renderer));
    else
        findings.fine(texts::tr("OpenGL %1 is drawn by %2.").arg(version, renderer));
}

} // namespace

void checkDisplay(const Machine &machine, const QString &, const QString &argument,
                  Findings &findings)
{
    const Machine tried = argument.isEmpty() ? machine : withDisplay(machine, argument);
    const QString display = displayOf(tried);
    if (display.isEmpty()) {
        findings.problem(texts::tr("This session has no display: neither %1 nor %2 is set.")
                             .arg(waylandVariable, x11Variable),
                         texts::tr("Start the suite from the desktop; over a network, log in with "
                                   "“ssh -X”."));
        return;
    }
    const ProbeEnd windows = runProbe(tried, Probe::Display);
    if (!windows.hasFacts()) {
        findings.problem(
            texts::tr("No window can be opened on %1: %2.").arg(display, windows.fault),
            texts::tr("Log in to the desktop again; as another user, start the suite from that "
                      "user's own session."));
        return;
    }
    reportWindows(windows.facts, findings);
    reportOpenGl(runProbe(tried, Probe::OpenGl), findings);
}

} // namespace programs
