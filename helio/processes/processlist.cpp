#include "helio/processes/processlist.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <array>

#include <sys/stat.h>
#include <unistd.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/processfiles.h"

namespace helio {

namespace {

constexpr int mostProcesses = 100000;
constexpr qint64 largestEntry = 1024 * 1024;
constexpr int longestCommand = 4096;
/// What the kernel keeps of a name, see PR_SET_NAME in prctl(2).
constexpr int shortName = 15;
/// PF_KTHREAD of the kernel.
constexpr quint64 kernelThread = 0x00200000;
/// Fields of /proc/PID/stat by their number in proc(5).
enum Field {
    parentField = 4,
    flagsField = 9,
    userTimeField = 14,
    systemTimeField = 15,
    startField = 22
};

QByteArray contentOf(const doctor::Machine &machine, const QString &path)
{
    return doctor::readFile(machine.located(path), largestEntry).content.value_or(QByteArray());
}

bool isInterpreter(const QString &file)
{
    static const std::array<QLatin1String, 7> begin{QLatin1String("python"), QLatin1String("perl"),
                                                    QLatin1String("ruby"),   QLatin1String("node"),
                                                    QLatin1String("bash"),   QLatin1String("dash"),
                                                    QLatin1String("gjs")};
    return std::any_of(begin.begin(), begin.end(),
                       [&file](QLatin1String name) { return file.startsWith(name); });
}

QString programName(const QString &file, const QString &kernelName)
{
    // A script's process has the name of the script.
    const bool isScript = isInterpreter(file) && file.left(shortName) != kernelName;
    return file.isEmpty() || isScript ? kernelName : file;
}

std::optional<ListedProcess> processIn(const doctor::Machine &machine, const QString &entry)
{
    ListedProcess process;
    bool isNumber = false;
    process.id = entry.toLongLong(&isNumber);
    const QString path = QStringLiteral("/proc/") + entry;
    const QString directory = machine.located(path);
    struct stat state;
    if (!isNumber || stat(QFile::encodeName(directory).constData(), &state) != 0)
        return std::nullopt;
    const std::optional<doctor::ProcessStat> line = doctor::processStat(machine, process.id);
    if (!line || (line->field(flagsField).toULongLong() & kernelThread) != 0)
        return std::nullopt;
    process.parent = line->field(parentField).toLongLong();
    process.start = line->field(startField).toULongLong();
    process.user = state.st_uid;
    const qint64 ticks =
        line->field(userTimeField).toLongLong() + line->field(systemTimeField).toLongLong();
    process.processorTime = ticks * 1000 / sysconf(_SC_CLK_TCK);
    const QList<QByteArray> pages = contentOf(machine, path + QStringLiteral("/statm")).split(' ');
    process.memory =
        std::max(0LL, pages.value(1).toLongLong() - pages.value(2).trimmed().toLongLong()) *
        sysconf(_SC_PAGESIZE);
    const QString kernelName = QString::fromUtf8(line->name);
    const QString file = doctor::programPath(machine, process.id).section(QLatin1Char('/'), -1);
    process.program = programName(file, kernelName);
    const QByteArray arguments = contentOf(machine, path + QStringLiteral("/cmdline"));
    process.command = QString::fromLocal8Bit(arguments.left(longestCommand).replace('\0', ' '));
    process.command = process.command.trimmed();
    if (process.command.isEmpty())
        process.command = kernelName;
    return process;
}

QJsonObject memoryOf(const doctor::Machine &machine)
{
    static const QHash<QByteArray, QString> names{
        {"MemTotal", QStringLiteral("total")},
        {"MemAvailable", QStringLiteral("available")},
        {"SwapTotal", QStringLiteral("swapTotal")},
        {"SwapFree", QStringLiteral("swapFree")},
    };
    QJsonObject memory;
    const QList<QByteArray> lines = contentOf(machine, QStringLiteral("/proc/meminfo")).split('\n');
    for (const QByteArray &line : lines) {
        const auto name = names.find(line.left(line.indexOf(':')));
        if (name == names.end())
            continue;
        const double kibibytes =
            line.mid(line.indexOf(':') + 1).simplified().split(' ')[0].toDouble();
        memory.insert(*name, kibibytes * 1024);
    }
    return memory;
}

/// The averages of the line "some avg10=0.00 avg60=0.00 avg300=0.00 total=0".
QJsonArray pressureOf(const doctor::Machine &machine, const QString &resource)
{
    QJsonArray averages;
    const QByteArray content = contentOf(machine, QStringLiteral("/proc/pressure/") + resource);
    const QList<QByteArray> words = content.left(content.indexOf('\n')).split(' ');
    for (const QByteArray &word : words) {
        if (word.startsWith("avg"))
            averages.append(word.mid(word.indexOf('=') + 1).toDouble());
    }
    return averages;
}

} // namespace

QVector<ListedProcess> readProcesses(const doctor::Machine &machine)
{
    QVector<ListedProcess> processes;
    const QStringList entries =
        doctor::namesIn(machine.located(QStringLiteral("/proc")), mostProcesses)
            .value_or(QStringList());
    for (const QString &entry : entries) {
        if (const std::optional<ListedProcess> process = processIn(machine, entry))
            processes.append(*process);
    }
    return processes;
}

QVector<qint64> familyOf(qint64 process, const QVector<ListedProcess> &processes)
{
    QMultiHash<qint64, qint64> children;
    for (const ListedProcess &one : processes)
        children.insert(one.parent, one.id);
    QSet<qint64> known{process};
    QVector<qint64> family{process};
    for (int at = 0; at < family.size(); ++at) {
        for (const qint64 child : children.values(family.at(at))) {
            if (!known.contains(child)) {
                known.insert(child);
                family.append(child);
            }
        }
    }
    return family;
}

QJsonObject machineLoad(const doctor::Machine &machine)
{
    QJsonArray averages;
    const QList<QByteArray> numbers =
        contentOf(machine, QStringLiteral("/proc/loadavg")).split(' ').mid(0, 3);
    for (const QByteArray &number : numbers)
        averages.append(number.toDouble());
    QJsonObject pressure;
    for (const char *resource : {"cpu", "memory", "io"}) {
        const QJsonArray waited = pressureOf(machine, QLatin1String(resource));
        if (!waited.isEmpty())
            pressure.insert(QLatin1String(resource), waited);
    }
    return {{QStringLiteral("memory"), memoryOf(machine)},
            {QStringLiteral("load"), averages},
            {QStringLiteral("pressure"), pressure},
            {QStringLiteral("processors"), static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN))}};
}

} // namespace helio
