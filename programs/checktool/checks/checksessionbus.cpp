#include <QFileInfo>
#include <QJsonArray>

#include <unistd.h>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/machine/facts.h"
#include "programs/checktool/machine/probe.h"
#include "texts/texts.h"

namespace programs {

namespace {

const QString addressVariable = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
const QString runtimeVariable = QStringLiteral("XDG_RUNTIME_DIR");
const QString userBus = QStringLiteral("unix:path=%1/bus");

QString remedy()
{
    return texts::tr("Log in to the desktop again, or start the suite with: dbus-run-session.");
}

/// Checks the directory of the session's sockets, the bus among them.
void checkRuntimeDirectory(const Machine &machine, Findings &findings)
{
    const QString path = machine.environment.value(runtimeVariable);
    const QFileInfo directory(path);
    if (path.isEmpty())
        findings.note(texts::tr("%1 is not set. A desktop session sets it; programs put their "
                                "sockets into the temporary directory without it.")
                          .arg(runtimeVariable));
    else if (!directory.isDir())
        findings.problem(
            texts::tr("%1 is %2, which is not a directory.").arg(runtimeVariable, path),
            texts::tr("Log in to the desktop again."));
    else if (directory.ownerId() != ::geteuid())
        findings.problem(
            texts::tr("%1 is %2, which belongs to another user.").arg(runtimeVariable, path),
            texts::tr("Start the suite in a session of your own, not with sudo or su."));
    else
        findings.fine(texts::tr("%1 is %2 and yours.").arg(runtimeVariable, path));
}

/// The address at which programs look for the bus; empty if there is none.
QString sessionAddress(const Machine &machine)
{
    QString address = machine.environment.value(addressVariable);
    if (!address.isEmpty())
        return address;
    const QString directory = machine.environment.value(runtimeVariable);
    return QFileInfo::exists(directory + QStringLiteral("/bus")) ? userBus.arg(directory)
                                                                 : QString();
}

void checkBus(const Machine &machine, const QString &address, Findings &findings)
{
    const ProbeEnd end = runProbe(machine, Probe::Bus, {address});
    if (!end.hasFacts()) {
        findings.problem(
            texts::tr("The session bus at %1 does not answer: %2.").arg(address, end.fault),
            remedy());
        return;
    }
    const QStringList names =
        end.facts.value(QLatin1String(facts::names)).toVariant().toStringList();
    int wellKnown = 0;
    for (const QString &name : names)
        wellKnown += name.startsWith(QLatin1Char(':')) ? 0 : 1;
    findings.fine(texts::tr("The session bus at %1 answers; it has %2 names.")
                      .arg(address, QString::number(wellKnown)));
}

} // namespace

void checkSessionBus(const Machine &machine, const QString &, const QString &argument,
                     Findings &findings)
{
    if (!argument.isEmpty()) {
        checkBus(machine, argument, findings);
        return;
    }
    checkRuntimeDirectory(machine, findings);
    const QString address = sessionAddress(machine);
    if (address.isEmpty())
        findings.problem(texts::tr("This session has no bus: %1 is not set, and there is no "
                                   "“bus” in %2.")
                             .arg(addressVariable, runtimeVariable),
                         remedy());
    else
        checkBus(machine, address, findings);
}

} // namespace programs
