#include <QFile>

#include <sys/statvfs.h>

#include "doctor/machine/mounts.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

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

Observed lookAtMount(const Arguments &arguments, const Looking &looking)
{
    const QString path = arguments.text("mount");
    const MountTable mounts(looking.machine);
    const Mount *mount = mounts.reachedBy(path);
    if (mount == nullptr)
        return {{}, texts::tr("the kernel does not tell where %1 is mounted").arg(path)};
    Observation seen;
    seen.where.append({path, 0, 0});
    seen.values = {
        {QStringLiteral("path"), Value::ofText(path)},
        {QStringLiteral("point"), Value::ofText(mount->point)},
        {QStringLiteral("type"), Value::ofText(mount->type)},
        {QStringLiteral("source"), Value::ofText(mount->source)},
        {QStringLiteral("options"), Value::ofText(mount->options.join(QLatin1Char(',')))},
        {QStringLiteral("readOnly"), Value::ofFlag(mount->options.contains(QLatin1String("ro")))},
        {QStringLiteral("noExec"), Value::ofFlag(mount->options.contains(QLatin1String("noexec")))},
        {QStringLiteral("near"), Value::ofFlag(mounts.isNear(*mount))},
    };
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
    {"noExec", ValueType::Flag}, {"near", ValueType::Flag},
};

} // namespace

const ProbeKind diskSpaceKind{"diskSpace", spaceParameters, spaceValues, &lookAtDiskSpace};
const ProbeKind mountKind{"mount", mountParameters, mountValues, &lookAtMount};

} // namespace doctor
