#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>

#include "doctor/machine/filereading.h"
#include "doctor/machine/secrets.h"
#include "doctor/why/input/input.h"
#include "fleet/report/groups.h"

namespace fleet {

namespace {

constexpr qint64 largestFile = 256 * 1024;

bool isLocaleVariable(const QString &name)
{
    return name == QLatin1String("LANG") || name == QLatin1String("LANGUAGE") ||
           name.startsWith(QLatin1String("LC_"));
}

/// Of one session, terminal or process: they differ on any two machines and say nothing.
bool isPassing(const QString &name)
{
    static const QRegularExpression passing(QStringLiteral(
        "\\A(_|PWD|OLDPWD|SHLVL|HOME|USER|LOGNAME|USERNAME|MAIL|HOSTNAME|HOST|LINES|COLUMNS|TERM|"
        "COLORTERM|TERM_.*|VTE_.*|WINDOWID|WINDOWPATH|TTY|GPG_.*|SSH_.*|DBUS_.*|INVOCATION_ID|"
        "JOURNAL_STREAM|MANAGERPID|SYSTEMD_.*|XDG_SESSION_ID|XDG_SEAT.*|XDG_VTNR|XDG_RUNTIME_DIR|"
        "XDG_SESSION_PATH|XAUTHORITY|ICEAUTHORITY|SESSION_MANAGER|DESKTOP_STARTUP_ID|"
        "XDG_ACTIVATION_TOKEN|STARSHIP_.*|LS_COLORS|DISPLAY|WAYLAND_DISPLAY|AT_SPI_BUS_ADDRESS|"
        "NOTIFY_SOCKET|LISTEN_.*|SUDO_.*|OFFICE_ASSISTANT_.*|PS1|PROMPT.*|HIST.*)\\z"));
    return passing.match(name).hasMatch();
}

/// Lines "name=value" of a small file, with the file's name in front.
void addSettings(const doctor::Machine &machine, const QString &path, Facts &facts)
{
    const doctor::FileContent file =
        doctor::readFile(machine.located(machine.home() + path), largestFile);
    const QStringList lines =
        QString::fromUtf8(file.content.value_or(QByteArray())).split(QLatin1Char('\n'));
    QString section;
    for (const QString &line : lines) {
        const QString name = line.section(QLatin1Char('='), 0, 0).trimmed();
        if (line.startsWith(QLatin1Char('[')))
            section = line.trimmed();
        else if (line.contains(QLatin1Char('=')) && !name.startsWith(QLatin1Char('#')))
            facts.insert(QStringLiteral("~%1 %2 %3").arg(path, section, name),
                         doctor::withoutSecret(name, line.section(QLatin1Char('='), 1).trimmed()));
    }
}

QString timeZone(const doctor::Machine &machine)
{
    const QString target =
        QFileInfo(machine.located(QStringLiteral("/etc/localtime"))).symLinkTarget();
    return target.section(QStringLiteral("/zoneinfo/"), 1);
}

} // namespace

Facts localeFacts(const doctor::Machine &machine)
{
    Facts facts;
    for (auto variable = machine.environment.begin(); variable != machine.environment.end();
         ++variable) {
        if (isLocaleVariable(variable.key()))
            facts.insert(variable.key(), variable.value());
    }
    const QString zone = timeZone(machine);
    if (!zone.isEmpty())
        facts.insert(QStringLiteral("time zone"), zone);
    const QString keyboard = QString::fromUtf8(
        doctor::readFile(machine.located(QStringLiteral("/etc/default/keyboard")), largestFile)
            .content.value_or(QByteArray()));
    static const QRegularExpression layout(QStringLiteral("^XKBLAYOUT=\"?([^\"\\n]*)"),
                                           QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = layout.match(keyboard);
    if (match.hasMatch())
        facts.insert(QStringLiteral("keyboard"), match.captured(1));
    return facts;
}

Facts environmentFacts(const doctor::Machine &machine)
{
    Facts facts;
    for (auto variable = machine.environment.begin(); variable != machine.environment.end();
         ++variable) {
        if (!isPassing(variable.key()) && !isLocaleVariable(variable.key()))
            facts.insert(variable.key(), doctor::withoutSecret(variable.key(), variable.value()));
    }
    return facts;
}

Facts desktopFacts(const doctor::Machine &machine)
{
    Facts facts;
    for (const char *path :
         {"/.config/gtk-3.0/settings.ini", "/.config/gtk-4.0/settings.ini", "/.config/kdeglobals",
          "/.config/kcmfonts", "/.config/qt5ct/qt5ct.conf", "/.config/Trolltech.conf"})
        addSettings(machine, QLatin1String(path), facts);
    const QString options = QString::fromUtf8(
        doctor::readFile(machine.located(machine.home() + QStringLiteral("/.cups/lpoptions")),
                         largestFile)
            .content.value_or(QByteArray()));
    static const QRegularExpression usual(QStringLiteral("^Default (\\S+)"),
                                          QRegularExpression::MultilineOption);
    const QRegularExpressionMatch printer = usual.match(options);
    if (printer.hasMatch())
        facts.insert(QStringLiteral("printer"), printer.captured(1));
    return facts;
}

Facts inputFacts(const doctor::Machine &machine)
{
    const doctor::InputReport report = doctor::whyInput(machine, {});
    Facts facts;
    QStringList running;
    for (const doctor::Framework &framework : report.frameworks)
        running.append(QString::fromLocal8Bit(framework.name));
    running.sort();
    facts.insert(QStringLiteral("running"), running.join(QStringLiteral(", ")));
    facts.insert(QStringLiteral("verdict"), report.text);
    for (const doctor::InputVariable &variable : report.variables) {
        if (variable.origin.state == doctor::Origin::State::Line)
            facts.insert(QString::fromLocal8Bit(variable.name) + QStringLiteral(" set in"),
                         doctor::placeText(variable.origin.lines.constFirst()));
    }
    return facts;
}

} // namespace fleet
