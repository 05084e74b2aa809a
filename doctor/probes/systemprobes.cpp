#include <QFile>
#include <QHash>

#include <grp.h>
#include <sys/resource.h>
#include <sys/utsname.h>

#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 1024 * 1024;
constexpr double kibi = 1024;

QByteArray contentOf(const Machine &machine, const QString &path)
{
    return readFile(machine.located(path), largestFile).content.value_or(QByteArray());
}

Observed one(const Values &values)
{
    return {{Observation{values, {}}}, {}};
}

Observed lookAtKernel(const Arguments &, const Looking &looking)
{
    utsname names;
    if (uname(&names) != 0)
        return {{}, texts::tr("the kernel does not tell its name")};
    const QByteArray uptime = contentOf(looking.machine, QStringLiteral("/proc/uptime"));
    return one({{QStringLiteral("release"), Value::ofVersion(QString::fromLatin1(names.release))},
                {QStringLiteral("machine"), Value::ofText(QString::fromLatin1(names.machine))},
                {QStringLiteral("uptime"), Value::ofAge(uptime.split(' ').value(0).toDouble())}});
}

Observed lookAtDistribution(const Arguments &, const Looking &looking)
{
    QHash<QByteArray, QString> fields;
    for (const QByteArray &line :
         contentOf(looking.machine, QStringLiteral("/etc/os-release")).split('\n')) {
        QByteArray value = line.mid(line.indexOf('=') + 1);
        if (value.size() > 1 && value.startsWith('"') && value.endsWith('"'))
            value = value.mid(1, value.size() - 2);
        fields.insert(line.left(line.indexOf('=')), QString::fromUtf8(value));
    }
    return one({{QStringLiteral("id"), Value::ofText(fields.value("ID"))},
                {QStringLiteral("like"), Value::ofText(fields.value("ID_LIKE"))},
                {QStringLiteral("name"), Value::ofText(fields.value("PRETTY_NAME"))},
                {QStringLiteral("version"), Value::ofVersion(fields.value("VERSION_ID"))}});
}

Observed lookAtSession(const Arguments &, const Looking &looking)
{
    const auto variable = [&looking](const char *name) {
        return Value::ofText(looking.machine.environment.value(QLatin1String(name)));
    };
    const bool hasDisplay =
        !variable("DISPLAY").text.isEmpty() || !variable("WAYLAND_DISPLAY").text.isEmpty();
    return one({{QStringLiteral("desktop"), variable("XDG_CURRENT_DESKTOP")},
                {QStringLiteral("type"), variable("XDG_SESSION_TYPE")},
                {QStringLiteral("display"), Value::ofFlag(hasDisplay)}});
}

Observed lookAtMemory(const Arguments &, const Looking &looking)
{
    QHash<QByteArray, double> sizes;
    for (const QByteArray &line :
         contentOf(looking.machine, QStringLiteral("/proc/meminfo")).split('\n')) {
        const QByteArray number = line.mid(line.indexOf(':') + 1).simplified().split(' ').value(0);
        sizes.insert(line.left(line.indexOf(':')), number.toDouble() * kibi);
    }
    const double total = sizes.value("MemTotal");
    if (total <= 0 || !sizes.contains("MemAvailable"))
        return {{}, texts::tr("the kernel does not tell how much memory is in use")};
    const double available = sizes.value("MemAvailable");
    return one(
        {{QStringLiteral("total"), Value::ofSize(total)},
         {QStringLiteral("available"), Value::ofSize(available)},
         {QStringLiteral("used"), Value::ofNumber(qRound((total - available) / total * 100))},
         {QStringLiteral("swapFree"), Value::ofSize(sizes.value("SwapFree"))}});
}

Observed lookAtAccount(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("account");
    const std::optional<uid_t> user = userNamed(looking.machine, name);
    Values values{{QStringLiteral("name"), Value::ofText(name)},
                  {QStringLiteral("exists"), Value::ofFlag(user.has_value())}};
    if (user) {
        values.insert(QStringLiteral("id"), Value::ofNumber(*user));
        values.insert(QStringLiteral("administrator"), Value::ofFlag(*user == 0));
        values.insert(QStringLiteral("own"), Value::ofFlag(*user == looking.machine.user));
        values.insert(QStringLiteral("home"),
                      Value::ofText(accountOf(looking.machine, *user).home));
    }
    return one(values);
}

/// The members that /etc/group lists; somebody's main group has them only if it names them.
Observed lookAtMembership(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("membership");
    const QString user = looking.machine.variable(QStringLiteral("USER")).value_or(QString());
    bool exists = false;
    bool isMember = false;
    for (const QByteArray &line :
         contentOf(looking.machine, QStringLiteral("/etc/group")).split('\n')) {
        const QStringList fields = QString::fromUtf8(line).split(QLatin1Char(':'));
        if (fields.value(0) != name)
            continue;
        exists = true;
        const gid_t mainGroup = accountOf(looking.machine, looking.machine.user).group;
        isMember = fields.value(3).split(QLatin1Char(',')).contains(user) ||
                   fields.value(2) == QString::number(mainGroup);
    }
    return one({{QStringLiteral("name"), Value::ofText(name)},
                {QStringLiteral("exists"), Value::ofFlag(exists)},
                {QStringLiteral("member"), Value::ofFlag(isMember)}});
}

int resourceNamed(const QString &name)
{
    if (name == QLatin1String("core"))
        return RLIMIT_CORE;
    if (name == QLatin1String("files"))
        return RLIMIT_NOFILE;
    if (name == QLatin1String("processes"))
        return RLIMIT_NPROC;
    return name == QLatin1String("memory") ? RLIMIT_AS : RLIMIT_FSIZE;
}

Observed lookAtResourceLimit(const Arguments &arguments, const Looking &)
{
    const QString name = arguments.text("resourceLimit");
    rlimit limit;
    if (getrlimit(static_cast<__rlimit_resource>(resourceNamed(name)), &limit) != 0)
        return {{}, texts::tr("the kernel does not tell the limit")};
    const auto number = [](rlim_t value) { return Value::ofNumber(static_cast<double>(value)); };
    return one({{QStringLiteral("name"), Value::ofText(name)},
                {QStringLiteral("soft"), number(limit.rlim_cur)},
                {QStringLiteral("hard"), number(limit.rlim_max)},
                {QStringLiteral("unlimited"), Value::ofFlag(limit.rlim_cur == RLIM_INFINITY)}});
}

/// "kernel/core_pattern", as below /proc/sys.
Observed lookAtKernelSetting(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("kernelSetting");
    if (name.contains(QLatin1String("..")) || name.startsWith(QLatin1Char('/')))
        return {{}, texts::tr("\"%1\" is not the name of a kernel setting").arg(name)};
    const QString path = QStringLiteral("/proc/sys/") + name;
    const FileContent file = readFile(looking.machine.located(path), largestFile);
    Values values{{QStringLiteral("name"), Value::ofText(name)},
                  {QStringLiteral("present"), Value::ofFlag(file.content.has_value())}};
    if (file.content)
        values.insert(QStringLiteral("value"),
                      Value::ofText(QString::fromUtf8(*file.content).trimmed()));
    return {{Observation{values, {Place{path, 0, 0}}}}, {}};
}

constexpr Parameter kernelParameters[] = {{"kernel", ParameterType::Nothing, true}};
constexpr ProbeValue kernelValues[] = {
    {"release", ValueType::Version}, {"machine", ValueType::Text}, {"uptime", ValueType::Age}};
constexpr Parameter distributionParameters[] = {{"distribution", ParameterType::Nothing, true}};
constexpr ProbeValue distributionValues[] = {{"id", ValueType::Text},
                                             {"like", ValueType::Text},
                                             {"name", ValueType::Text},
                                             {"version", ValueType::Version}};
constexpr Parameter sessionParameters[] = {{"session", ParameterType::Nothing, true}};
constexpr ProbeValue sessionValues[] = {
    {"desktop", ValueType::Text}, {"type", ValueType::Text}, {"display", ValueType::Flag}};
constexpr Parameter memoryParameters[] = {{"machineMemory", ParameterType::Nothing, true}};
constexpr ProbeValue memoryValues[] = {{"total", ValueType::Size},
                                       {"available", ValueType::Size},
                                       {"used", ValueType::Number},
                                       {"swapFree", ValueType::Size}};
constexpr Parameter accountParameters[] = {{"account", ParameterType::Text, true}};
constexpr ProbeValue accountValues[] = {
    {"name", ValueType::Text}, {"exists", ValueType::Flag},        {"id", ValueType::Number},
    {"own", ValueType::Flag},  {"administrator", ValueType::Flag}, {"home", ValueType::Text}};
constexpr Parameter membershipParameters[] = {{"membership", ParameterType::Text, true}};
constexpr ProbeValue membershipValues[] = {
    {"name", ValueType::Text}, {"exists", ValueType::Flag}, {"member", ValueType::Flag}};
constexpr char resourceWords[] = "core|files|processes|memory|fileSize";
constexpr Parameter limitParameters[] = {
    {"resourceLimit", ParameterType::Word, true, resourceWords}};
constexpr ProbeValue limitValues[] = {{"name", ValueType::Text},
                                      {"soft", ValueType::Number},
                                      {"hard", ValueType::Number},
                                      {"unlimited", ValueType::Flag}};
constexpr Parameter settingParameters[] = {{"kernelSetting", ParameterType::Text, true}};
constexpr ProbeValue settingValues[] = {
    {"name", ValueType::Text}, {"present", ValueType::Flag}, {"value", ValueType::Text}};

} // namespace

const ProbeKind kernelKind{"kernel", kernelParameters, kernelValues, &lookAtKernel};
const ProbeKind distributionKind{"distribution", distributionParameters, distributionValues,
                                 &lookAtDistribution};
const ProbeKind sessionKind{"session", sessionParameters, sessionValues, &lookAtSession};
const ProbeKind machineMemoryKind{"machineMemory", memoryParameters, memoryValues, &lookAtMemory};
const ProbeKind accountKind{"account", accountParameters, accountValues, &lookAtAccount};
const ProbeKind membershipKind{"membership", membershipParameters, membershipValues,
                               &lookAtMembership};
const ProbeKind resourceLimitKind{"resourceLimit", limitParameters, limitValues,
                                  &lookAtResourceLimit};
const ProbeKind kernelSettingKind{"kernelSetting", settingParameters, settingValues,
                                  &lookAtKernelSetting};

} // namespace doctor
