#include <QDateTime>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/processfiles.h"
#include "doctor/machine/processview.h"
#include "doctor/probes/facts.h"
#include "doctor/probes/kinds.h"

namespace doctor {

namespace {

constexpr int mostProcesses = 100000;
constexpr qint64 largestEntry = 1024 * 1024;
constexpr int stateField = 3;
constexpr int startField = 22;

std::optional<RunningProcess> processIn(const Machine &machine, const QString &entry)
{
    RunningProcess process;
    bool isNumber = false;
    process.id = entry.toLongLong(&isNumber);
    const QString directory = machine.located(QStringLiteral("/proc/") + entry);
    struct stat state;
    if (!isNumber || stat(QFile::encodeName(directory).constData(), &state) != 0)
        return std::nullopt;
    const std::optional<ProcessStat> line = processStat(machine, process.id);
    if (!line)
        return std::nullopt;
    process.user = state.st_uid;
    process.start = line->field(startField).toULongLong();
    process.program = programPath(machine, process.id);
    process.name = process.program.section(QLatin1Char('/'), -1);
    if (process.name.isEmpty())
        process.name = QString::fromUtf8(line->name);
    return process;
}

/// Those of a name: the user's own, or everybody's. Own ones work with the user's home.
QVector<RunningProcess> named(const QString &name, bool ofAnybody, const Looking &looking)
{
    QVector<RunningProcess> found;
    for (const RunningProcess &process : looking.facts.processes(looking.machine)) {
        const bool isOwn = process.user == looking.machine.user;
        if (process.name == name && (ofAnybody || (isOwn && seesHome(looking.machine, process.id))))
            found.append(process);
    }
    return found;
}

/// When the machine was started, in seconds since 1970; 0 if that is unknown.
double bootTime(const Machine &machine)
{
    const FileContent file = readFile(machine.located(QStringLiteral("/proc/stat")), largestEntry);
    const QByteArray content = file.content.value_or(QByteArray());
    for (const QByteArray &line : content.split('\n')) {
        if (line.startsWith("btime "))
            return line.mid(6).toDouble();
    }
    return 0;
}

/// "running", "stopped" (by a signal or a debugger), "waiting" (for a disk or network that does not
/// answer) or "ended"; see proc(5).
QString stateOf(const Machine &machine, qint64 process)
{
    const std::optional<ProcessStat> line = processStat(machine, process);
    const QByteArray letter = line ? line->field(stateField) : QByteArray();
    if (letter == "T" || letter == "t")
        return QStringLiteral("stopped");
    if (letter == "D")
        return QStringLiteral("waiting");
    return letter == "Z" || letter == "X" || letter.isEmpty() ? QStringLiteral("ended")
                                                              : QStringLiteral("running");
}

QString argumentsOf(const Machine &machine, qint64 process)
{
    const QString path = machine.located(QStringLiteral("/proc/%1/cmdline").arg(process));
    QByteArray content = readFile(path, largestEntry).content.value_or(QByteArray());
    return QString::fromLocal8Bit(content.replace('\0', ' ')).trimmed();
}

Value memoryOf(const Machine &machine, qint64 process)
{
    const QString path = machine.located(QStringLiteral("/proc/%1/statm").arg(process));
    const QByteArray content = readFile(path, largestEntry).content.value_or(QByteArray());
    const double pages = content.split(' ').value(1).toDouble();
    return Value::ofSize(pages * static_cast<double>(sysconf(_SC_PAGESIZE)));
}

Observed lookAtProcess(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("process");
    Observed observed;
    const double boot = bootTime(looking.machine);
    const double ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    for (const RunningProcess &process : named(name, arguments.flag("ofAnybody"), looking)) {
        Observation seen;
        seen.where.append({process.program, 0, process.id});
        Values &values = seen.values;
        values.insert(QStringLiteral("running"), Value::ofFlag(true));
        values.insert(QStringLiteral("name"), Value::ofText(name));
        values.insert(QStringLiteral("pid"), Value::ofNumber(static_cast<double>(process.id)));
        values.insert(QStringLiteral("programPath"), Value::ofText(process.program));
        values.insert(QStringLiteral("user"),
                      Value::ofText(accountOf(looking.machine, process.user).name));
        values.insert(QStringLiteral("memory"), memoryOf(looking.machine, process.id));
        values.insert(QStringLiteral("state"), Value::ofText(stateOf(looking.machine, process.id)));
        values.insert(QStringLiteral("arguments"),
                      Value::ofText(argumentsOf(looking.machine, process.id)));
        const double now = static_cast<double>(QDateTime::currentSecsSinceEpoch());
        values.insert(QStringLiteral("age"),
                      Value::ofAge(now - boot - static_cast<double>(process.start) / ticks));
        observed.seen.append(seen);
    }
    if (observed.seen.isEmpty()) {
        Observation none;
        none.values.insert(QStringLiteral("running"), Value::ofFlag(false));
        none.values.insert(QStringLiteral("name"), Value::ofText(name));
        observed.seen.append(none);
    }
    return observed;
}

Observed lookAtProcessEnvironment(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("processEnvironment");
    const QByteArray beginning = arguments.text("variable").toLocal8Bit() + '=';
    Observed observed;
    for (const RunningProcess &process : named(name, false, looking)) {
        const QString path = QStringLiteral("/proc/%1/environ").arg(process.id);
        const FileContent file = readFile(looking.machine.located(path), largestEntry);
        if (!file.content)
            continue;
        Observation seen;
        seen.where.append({process.program, 0, process.id});
        seen.values.insert(QStringLiteral("pid"), Value::ofNumber(static_cast<double>(process.id)));
        seen.values.insert(QStringLiteral("name"), Value::ofText(name));
        seen.values.insert(QStringLiteral("present"), Value::ofFlag(false));
        seen.values.insert(QStringLiteral("value"), Value::ofText(QString()));
        for (const QByteArray &entry : file.content->split('\0')) {
            if (!entry.startsWith(beginning))
                continue;
            seen.values[QStringLiteral("present")] = Value::ofFlag(true);
            seen.values[QStringLiteral("value")] =
                Value::ofText(QString::fromLocal8Bit(entry.mid(beginning.size())));
            break;
        }
        observed.seen.append(seen);
    }
    return observed;
}

Observed lookAtEnvironment(const Arguments &arguments, const Looking &looking)
{
    const QString name = arguments.text("environment");
    const QHash<QString, QString> &environment = looking.machine.environment;
    Observation seen;
    seen.values.insert(QStringLiteral("name"), Value::ofText(name));
    seen.values.insert(QStringLiteral("present"), Value::ofFlag(environment.contains(name)));
    seen.values.insert(QStringLiteral("value"), Value::ofText(environment.value(name)));
    return {{seen}, {}};
}

constexpr Parameter processParameters[] = {{"process", ParameterType::Text, true},
                                           {"ofAnybody", ParameterType::Flag}};
constexpr ProbeValue processValues[] = {
    {"running", ValueType::Flag},     {"name", ValueType::Text},  {"pid", ValueType::Number},
    {"programPath", ValueType::Text}, {"user", ValueType::Text},  {"age", ValueType::Age},
    {"memory", ValueType::Size},      {"state", ValueType::Text}, {"arguments", ValueType::Text},
};
constexpr Parameter processEnvironmentParameters[] = {
    {"processEnvironment", ParameterType::Text, true}, {"variable", ParameterType::Text, true}};
constexpr ProbeValue processEnvironmentValues[] = {{"pid", ValueType::Number},
                                                   {"name", ValueType::Text},
                                                   {"present", ValueType::Flag},
                                                   {"value", ValueType::Text}};
constexpr Parameter environmentParameters[] = {{"environment", ParameterType::Text, true}};
constexpr ProbeValue environmentValues[] = {
    {"name", ValueType::Text}, {"present", ValueType::Flag}, {"value", ValueType::Text}};

} // namespace

const QVector<RunningProcess> &Facts::processes(const Machine &machine)
{
    std::call_once(m_processesRead, [this, &machine] {
        const QStringList entries = namesIn(machine.located(QStringLiteral("/proc")), mostProcesses)
                                        .value_or(QStringList());
        for (const QString &entry : entries) {
            if (const std::optional<RunningProcess> process = processIn(machine, entry))
                m_processes.append(*process);
        }
    });
    return m_processes;
}

const ProbeKind processKind{"process", processParameters, processValues, &lookAtProcess};
const ProbeKind processEnvironmentKind{"processEnvironment", processEnvironmentParameters,
                                       processEnvironmentValues, &lookAtProcessEnvironment};
const ProbeKind environmentKind{"environment", environmentParameters, environmentValues,
                                &lookAtEnvironment};

} // namespace doctor
