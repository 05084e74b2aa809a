#include <QFile>
#include <QFileInfo>

#include <sys/statvfs.h>

#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char mountTable[] = "/proc/self/mountinfo";
constexpr qint64 largestTable = 4 * 1024 * 1024;

double percent(double part, double whole)
{
    return whole > 0 ? qRound(part / whole * 100) : 0;
}

Observed lookAtDiskSpace(const Arguments &arguments, const Looking &looking)
{
    const QString path = arguments.text("diskSpace");
    struct statvfs state;
    if (statvfs(QFile::encodeName(looking.machine.located(path)).constData(), &state) != 0)
        return {{}, texts::tr("the disk of %1 cannot be asked").arg(path)};
    const double block = static_cast<double>(state.f_frsize);
    const double total = static_cast<double>(state.f_blocks);
    const double free = static_cast<double>(state.f_bavail);
    const double inodes = static_cast<double>(state.f_files);
    const double inodesFree = static_cast<double>(state.f_favail);
    Observation seen;
    seen.where.append({path, 0, 0});
    seen.values = {
        {QStringLiteral("path"), Value::ofText(path)},
        {QStringLiteral("free"), Value::ofSize(free * block)},
        {QStringLiteral("total"), Value::ofSize(total * block)},
        {QStringLiteral("freePercent"), Value::ofNumber(percent(free, total))},
        {QStringLiteral("readOnly"), Value::ofFlag((state.f_flag & ST_RDONLY) != 0)},
    };
    // Some file systems do not count inodes.
    if (inodes > 0) {
        seen.values.insert(QStringLiteral("inodesFree"), Value::ofNumber(inodesFree));
        seen.values.insert(QStringLiteral("inodesFreePercent"),
                           Value::ofNumber(percent(inodesFree, inodes)));
    }
    return {{seen}, {}};
}

/// Blanks stand as "\040" in the table.
QString unescaped(const QByteArray &text)
{
    QByteArray plain = text;
    plain.replace("\\040", " ")
        .replace("\\011", "\t")
        .replace("\\012", "\n")
        .replace("\\134", "\\");
    return QFile::decodeName(plain);
}

bool isBelow(const QString &path, const QString &point)
{
    return point == QLatin1String("/") ||
           (path + QLatin1Char('/')).startsWith(point + QLatin1Char('/'));
}

Observed lookAtMount(const Arguments &arguments, const Looking &looking)
{
    const QString path = arguments.text("mount");
    const QString canonical = QFileInfo(looking.machine.located(path)).canonicalFilePath();
    const QString wanted =
        canonical.isEmpty() || !looking.machine.root.isEmpty() ? path : canonical;
    const FileContent table =
        readFile(looking.machine.located(QLatin1String(mountTable)), largestTable);
    Observation seen;
    seen.where.append({path, 0, 0});
    QString longest;
    for (const QByteArray &line : table.content.value_or(QByteArray()).split('\n')) {
        // See proc(5): ID, parent, device, root, point, options, optional fields, "-", type,
        // source.
        const QList<QByteArray> fields = line.split(' ');
        const int dash = fields.indexOf("-");
        const QString point = unescaped(fields.value(4));
        // Of mounts on one point the last is seen.
        if (dash < 6 || point.size() < longest.size() || !isBelow(wanted, point))
            continue;
        longest = point;
        const QList<QByteArray> options = fields.value(5).split(',');
        seen.values = {
            {QStringLiteral("path"), Value::ofText(path)},
            {QStringLiteral("point"), Value::ofText(point)},
            {QStringLiteral("type"), Value::ofText(QString::fromUtf8(fields.value(dash + 1)))},
            {QStringLiteral("source"), Value::ofText(unescaped(fields.value(dash + 2)))},
            {QStringLiteral("options"), Value::ofText(QString::fromUtf8(fields.value(5)))},
            {QStringLiteral("readOnly"), Value::ofFlag(options.contains("ro"))},
            {QStringLiteral("noExec"), Value::ofFlag(options.contains("noexec"))},
        };
    }
    if (longest.isEmpty())
        return {{}, texts::tr("the kernel does not tell where %1 is mounted").arg(path)};
    return {{seen}, {}};
}

constexpr Parameter spaceParameters[] = {{"diskSpace", ParameterType::Path, true}};
constexpr ProbeValue spaceValues[] = {
    {"path", ValueType::Text},         {"free", ValueType::Size},
    {"total", ValueType::Size},        {"freePercent", ValueType::Number},
    {"inodesFree", ValueType::Number}, {"inodesFreePercent", ValueType::Number},
    {"readOnly", ValueType::Flag},
};
constexpr Parameter mountParameters[] = {{"mount", ParameterType::Path, true}};
constexpr ProbeValue mountValues[] = {
    {"path", ValueType::Text},   {"point", ValueType::Text},   {"type", ValueType::Text},
    {"source", ValueType::Text}, {"options", ValueType::Text}, {"readOnly", ValueType::Flag},
    {"noExec", ValueType::Flag},
};

} // namespace

const ProbeKind diskSpaceKind{"diskSpace", spaceParameters, spaceValues, &lookAtDiskSpace};
const ProbeKind mountKind{"mount", mountParameters, mountValues, &lookAtMount};

} // namespace doctor
