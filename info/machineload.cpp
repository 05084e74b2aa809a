#include "info/machineload.h"

#include <QStringList>

#include "info/runcommand.h"

namespace OfficeAssiant {

namespace {

/// The columns of procps: 9 is the processor's share, 10 the memory's.
constexpr char processesCommand[] =
    " top -n 1 -b | sed -n '8,$p' | sort -rn -k%1 | head  -n 10 | awk -F\" \" "
    "'{print $1 \" \" $2 \" \" $10 \" \" $9 \" \" $12 \" \" $13 \" \" $14}'";
constexpr char memoryCommand[] = "free | sed -n '2,2p' | awk -F\" \" '{print $2 \" \" $3}'";
constexpr int significantDigits = 6;

QJsonArray heaviestProcesses(const QString &sortColumn)
{
    const QStringList lines =
        runCommand(QLatin1String(processesCommand).arg(sortColumn)).split(QLatin1Char('\n'));
    QJsonObject numbered;
    for (const QString &line : lines)
        numbered.insert(QString::number(numbered.size() + 1), line);
    return {numbered};
}

QString formatted(double number)
{
    return QString::number(number, 'g', significantDigits);
}

} // namespace

QJsonArray heaviestProcessesByCpu()
{
    return heaviestProcesses(QStringLiteral("9"));
}

QJsonArray heaviestProcessesByMemory()
{
    return heaviestProcesses(QStringLiteral("10"));
}

QJsonObject memoryUse()
{
    return memoryUseOf(runCommand(QLatin1String(memoryCommand)));
}

QJsonObject memoryUseOf(const QString &figures)
{
    const QStringList pieces = figures.split(QLatin1Char(' '));
    const QString total = pieces.value(0);
    const QString used = pieces.value(1);
    const double percentage = used.toDouble() / static_cast<double>(total.toLongLong()) * 100;
    return {{QStringLiteral("percentage"), formatted(percentage)},
            {QStringLiteral("all"), formatted(total.toDouble() / 1024 / 1024)}};
}

} // namespace OfficeAssiant
