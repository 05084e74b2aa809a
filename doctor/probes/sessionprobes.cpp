#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QUuid>

#include <clocale>

#include "doctor/machine/boundedprogram.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr char systemBus[] = "unix:path=/run/dbus/system_bus_socket";

/// Empty where there is no bus: none is started for being asked.
QString busAddress(const QString &bus, const Machine &machine)
{
    if (bus == QLatin1String("system"))
        return QFile::exists(machine.located(QStringLiteral("/run/dbus/system_bus_socket")))
                   ? QLatin1String(systemBus)
                   : QString();
    QString address = machine.environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    if (!address.isEmpty())
        return address;
    const QString socket = QStringLiteral("/run/user/%1/bus").arg(machine.user);
    return QFile::exists(machine.located(socket)) ? QStringLiteral("unix:path=") + socket
                                                  : QString();
}

Observed lookAtBusName(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("busName");
    const QString address = busAddress(arguments.text("bus", "session"), looking.machine);
    Observation seen;
    Values &values = seen.values;
    values = {{QStringLiteral("name"), Value::ofText(name)},
              {QStringLiteral("connected"), Value::ofFlag(false)},
              {QStringLiteral("owned"), Value::ofFlag(false)}};
    if (address.isEmpty())
        return {{seen}, {}};
    const QString connection = QUuid::createUuid().toString();
    {
        QDBusConnection bus = QDBusConnection::connectToBus(address, connection);
        if (bus.isConnected()) {
            values[QStringLiteral("connected")] = Value::ofFlag(true);
            bus.interface()->setTimeout(static_cast<int>(looking.deadline.left().count()));
            const QDBusReply<bool> owned = bus.interface()->isServiceRegistered(name);
            values[QStringLiteral("owned")] = Value::ofFlag(owned.isValid() && owned.value());
            const QDBusReply<uint> process = bus.interface()->servicePid(name);
            if (process.isValid()) {
                values.insert(QStringLiteral("pid"), Value::ofNumber(process.value()));
                seen.where.append({{}, 0, process.value()});
            }
        }
    }
    QDBusConnection::disconnectFromBus(connection);
    return {{seen}, {}};
}

QString sessionLocale(const Machine &machine)
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        QString value = machine.environment.value(QLatin1String(name));
        if (!value.isEmpty())
            return value;
    }
    return QStringLiteral("C");
}

Observed lookAtLocale(const Arguments &arguments, const Looking &looking)
{
    const QString wanted = arguments.text("locale");
    const QString name =
        wanted == QLatin1String("session") ? sessionLocale(looking.machine) : wanted;
    const locale_t found = newlocale(LC_ALL_MASK, name.toLatin1().constData(), nullptr);
    if (found)
        freelocale(found);
    const QString encoding = name.section(QLatin1Char('.'), 1)
                                 .section(QLatin1Char('@'), 0, 0)
                                 .toLower()
                                 .remove(QLatin1Char('-'));
    Observation seen;
    seen.values = {{QStringLiteral("name"), Value::ofText(name)},
                   {QStringLiteral("installed"), Value::ofFlag(found != nullptr)},
                   {QStringLiteral("utf8"), Value::ofFlag(encoding == QLatin1String("utf8"))}};
    return {{seen}, {}};
}

/// "printer NAME is idle." or "… disabled since …", as lpstat says in English.
Observed lookAtPrinter(const Arguments &arguments, const Looking &looking)
{
    const QString wanted = arguments.text("printer");
    const ProgramOutput output = runSystemProgram(
        QStringLiteral("lpstat"), {QStringLiteral("-p"), QStringLiteral("-d")}, looking.deadline);
    if (!output.output && !systemProgram(QStringLiteral("lpstat")).isEmpty())
        return {{}, output.problem};
    Observed observed;
    const QStringList lines =
        QString::fromUtf8(output.output.value_or(QByteArray())).split(QLatin1Char('\n'));
    const QStringList chosen = lines.filter(QStringLiteral("system default destination: "));
    const QString usual =
        chosen.isEmpty() ? QString() : chosen.first().section(QStringLiteral(": "), 1).trimmed();
    for (const QString &line : lines) {
        const QString name = line.section(QLatin1Char(' '), 1, 1);
        const bool isWanted = wanted == QLatin1String("*") || name == wanted ||
                              (wanted == QLatin1String("default") && name == usual);
        if (!line.startsWith(QLatin1String("printer ")) || !isWanted)
            continue;
        Observation seen;
        seen.values = {
            {QStringLiteral("name"), Value::ofText(name)},
            {QStringLiteral("exists"), Value::ofFlag(true)},
            {QStringLiteral("enabled"), Value::ofFlag(!line.contains(QLatin1String(" disabled ")))},
            {QStringLiteral("usual"), Value::ofFlag(name == usual)}};
        observed.seen.append(seen);
    }
    if (observed.seen.isEmpty()) {
        Observation none;
        none.values = {{QStringLiteral("name"), Value::ofText(wanted)},
                       {QStringLiteral("exists"), Value::ofFlag(false)}};
        observed.seen.append(none);
    }
    return observed;
}

Observed lookAtPrintService(const Arguments &, const Looking &looking)
{
    const bool isInstalled = !systemProgram(QStringLiteral("lpstat")).isEmpty();
    Observation seen;
    seen.values.insert(QStringLiteral("installed"), Value::ofFlag(isInstalled));
    if (!isInstalled)
        return {{seen}, {}};
    const ProgramOutput output =
        runSystemProgram(QStringLiteral("lpstat"), {QStringLiteral("-r")}, looking.deadline);
    if (!output.output)
        return {{}, output.problem};
    seen.values.insert(QStringLiteral("running"),
                       Value::ofFlag(output.output->contains("scheduler is running")));
    return {{seen}, {}};
}

constexpr Parameter busParameters[] = {{"busName", ParameterType::Text, true},
                                       {"bus", ParameterType::Word, false, "session|system"}};
constexpr ProbeValue busValues[] = {{"name", ValueType::Text},
                                    {"connected", ValueType::Flag},
                                    {"owned", ValueType::Flag},
                                    {"pid", ValueType::Number}};
constexpr Parameter localeParameters[] = {{"locale", ParameterType::Text, true}};
constexpr ProbeValue localeValues[] = {
    {"name", ValueType::Text}, {"installed", ValueType::Flag}, {"utf8", ValueType::Flag}};
constexpr Parameter printerParameters[] = {{"printer", ParameterType::Text, true}};
constexpr ProbeValue printerValues[] = {{"name", ValueType::Text},
                                        {"exists", ValueType::Flag},
                                        {"enabled", ValueType::Flag},
                                        {"usual", ValueType::Flag}};
constexpr Parameter serviceParameters[] = {{"printService", ParameterType::Nothing, true}};
constexpr ProbeValue serviceValues[] = {{"installed", ValueType::Flag},
                                        {"running", ValueType::Flag}};

} // namespace

const ProbeKind busNameKind{"busName", busParameters, busValues, &lookAtBusName};
const ProbeKind localeKind{"locale", localeParameters, localeValues, &lookAtLocale};
const ProbeKind printerKind{"printer", printerParameters, printerValues, &lookAtPrinter};
const ProbeKind printServiceKind{"printService", serviceParameters, serviceValues,
                                 &lookAtPrintService};

} // namespace doctor
