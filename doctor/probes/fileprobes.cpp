#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "doctor/conditions/pattern.h"
#include "doctor/machine/filereading.h"
#include "doctor/probes/kinds.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 largestHashedFile = 64 * 1024 * 1024;
constexpr qint64 largestLock = 4096;
constexpr unsigned rightsMask = 07777;

QString kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return QStringLiteral("file");
    case S_IFDIR:
        return QStringLiteral("directory");
    case S_IFIFO:
        return QStringLiteral("pipe");
    case S_IFSOCK:
        return QStringLiteral("socket");
    default:
        return QStringLiteral("device");
    }
}

double ageOfFile(const struct stat &state)
{
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000;
    return std::max(0.0, now - static_cast<double>(state.st_mtim.tv_sec));
}

bool isAllowed(const QByteArray &path, int access)
{
    return faccessat(AT_FDCWD, path.constData(), access, AT_EACCESS) == 0;
}

void addState(Values &values, const QString &located, const struct stat &state,
              const Machine &machine)
{
    const QByteArray name = QFile::encodeName(located);
    const QString owner = accountOf(machine, state.st_uid).name;
    values.insert(QStringLiteral("kind"), Value::ofText(kindOf(state.st_mode)));
    values.insert(QStringLiteral("owner"),
                  Value::ofText(owner.isEmpty() ? QString::number(state.st_uid) : owner));
    values.insert(QStringLiteral("ownerKnown"), Value::ofFlag(!owner.isEmpty()));
    values.insert(QStringLiteral("own"), Value::ofFlag(state.st_uid == machine.user));
    values.insert(QStringLiteral("group"), Value::ofText(groupName(machine, state.st_gid)));
    values.insert(QStringLiteral("mode"), Value::ofMode(state.st_mode & rightsMask));
    values.insert(QStringLiteral("size"), Value::ofSize(static_cast<double>(state.st_size)));
    values.insert(QStringLiteral("age"), Value::ofAge(ageOfFile(state)));
    values.insert(QStringLiteral("readable"), Value::ofFlag(isAllowed(name, R_OK)));
    values.insert(QStringLiteral("writable"), Value::ofFlag(isAllowed(name, W_OK)));
    values.insert(QStringLiteral("executable"), Value::ofFlag(isAllowed(name, X_OK)));
}

Observation observedFile(const QString &path, const Machine &machine)
{
    const QString located = machine.located(path);
    const QByteArray name = QFile::encodeName(located);
    Observation seen;
    seen.where.append({path, 0, 0});
    Values &values = seen.values;
    values.insert(QStringLiteral("path"), Value::ofText(path));
    values.insert(QStringLiteral("name"), Value::ofText(path.section(QLatin1Char('/'), -1)));
    values.insert(QStringLiteral("folder"), Value::ofText(path.section(QLatin1Char('/'), 0, -2)));
    struct stat own;
    const bool isThere = lstat(name.constData(), &own) == 0;
    const bool isLink = isThere && S_ISLNK(own.st_mode);
    struct stat state;
    const bool leadsSomewhere = isThere && stat(name.constData(), &state) == 0;
    values.insert(QStringLiteral("exists"), Value::ofFlag(isThere));
    values.insert(QStringLiteral("link"), Value::ofFlag(isLink));
    values.insert(QStringLiteral("broken"), Value::ofFlag(isThere && !leadsSomewhere));
    if (isLink)
        values.insert(QStringLiteral("target"), Value::ofText(QFile::symLinkTarget(located)));
    if (leadsSomewhere)
        addState(values, located, state, machine);
    return seen;
}

Observed lookAtFile(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "file", looking, true);
    Observed observed;
    observed.problem = meant.problem;
    for (const QString &path : meant.paths)
        observed.seen.append(observedFile(path, looking.machine));
    return observed;
}

/// One observation of all files together.
Observed lookAtFiles(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "files", looking, false);
    if (!meant.problem.isEmpty())
        return {{}, meant.problem};
    const Pattern pattern(arguments.text("named"));
    Observation seen;
    QStringList names;
    double size = 0;
    double newest = -1;
    double oldest = 0;
    for (const QString &path : meant.paths) {
        struct stat state;
        const QByteArray name = QFile::encodeName(looking.machine.located(path));
        const PatternMatch match = pattern.match(path.section(QLatin1Char('/'), -1));
        if (match.hasGivenUp)
            return {{}, texts::tr("the pattern needs too many steps for %1").arg(path)};
        if (!match.hasMatched || lstat(name.constData(), &state) != 0)
            continue;
        seen.where.append({path, 0, 0});
        names.append(path.section(QLatin1Char('/'), -1));
        size += static_cast<double>(state.st_size);
        newest = newest < 0 ? ageOfFile(state) : std::min(newest, ageOfFile(state));
        oldest = std::max(oldest, ageOfFile(state));
    }
    constexpr int mostNames = 6;
    QString shown = names.mid(0, mostNames).join(QStringLiteral(", "));
    if (names.size() > mostNames)
        shown += QStringLiteral(" …");
    seen.values.insert(QStringLiteral("count"), Value::ofNumber(names.size()));
    seen.values.insert(QStringLiteral("names"), Value::ofText(shown));
    seen.values.insert(QStringLiteral("size"), Value::ofSize(size));
    if (!names.isEmpty()) {
        seen.values.insert(QStringLiteral("newest"), Value::ofAge(newest));
        seen.values.insert(QStringLiteral("oldest"), Value::ofAge(oldest));
    }
    return {{seen}, {}};
}

Observed lookAtChecksum(const Arguments &arguments, const Looking &looking)
{
    const QString path = arguments.text("checksum");
    const FileContent file = readFile(looking.machine.located(path), largestHashedFile);
    Observation seen;
    seen.where.append({path, 0, 0});
    seen.values.insert(QStringLiteral("path"), Value::ofText(path));
    seen.values.insert(QStringLiteral("readable"), Value::ofFlag(file.content.has_value()));
    if (file.content) {
        const QByteArray hash = QCryptographicHash::hash(*file.content, QCryptographicHash::Sha256);
        seen.values.insert(QStringLiteral("sha256"),
                           Value::ofText(QString::fromLatin1(hash.toHex())));
    }
    return {{seen}, {}};
}

/// The process that a lock file names: its first number, as QLockFile and most programs write it.
qint64 lockingProcess(const QByteArray &content)
{
    const QByteArray first = content.split('\n').value(0).trimmed();
    bool isNumber = false;
    const qint64 process = first.toLongLong(&isNumber);
    return isNumber && process > 0 ? process : 0;
}

Observed lookAtLock(const Arguments &arguments, const Looking &looking)
{
    const MeantPaths meant = meantPaths(arguments, "lock", looking, false);
    Observed observed;
    observed.problem = meant.problem;
    for (const QString &path : meant.paths) {
        Observation seen = observedFile(path, looking.machine);
        const FileContent file = readFile(looking.machine.located(path), largestLock);
        const qint64 process = lockingProcess(file.content.value_or(QByteArray()));
        if (process > 0) {
            const QString entry = looking.machine.located(QStringLiteral("/proc/%1").arg(process));
            const bool isRunning = QFile::exists(entry);
            seen.values.insert(QStringLiteral("pid"),
                               Value::ofNumber(static_cast<double>(process)));
            seen.values.insert(QStringLiteral("stale"), Value::ofFlag(!isRunning));
        }
        observed.seen.append(seen);
    }
    return observed;
}

constexpr Parameter fileParameters[] = {{"file", ParameterType::PathPattern, true}};
constexpr ProbeValue fileValues[] = {
    {"path", ValueType::Text},       {"name", ValueType::Text},     {"folder", ValueType::Text},
    {"exists", ValueType::Flag},     {"kind", ValueType::Text},     {"link", ValueType::Flag},
    {"target", ValueType::Text},     {"broken", ValueType::Flag},   {"owner", ValueType::Text},
    {"ownerKnown", ValueType::Flag}, {"own", ValueType::Flag},      {"group", ValueType::Text},
    {"mode", ValueType::Mode},       {"size", ValueType::Size},     {"age", ValueType::Age},
    {"readable", ValueType::Flag},   {"writable", ValueType::Flag}, {"executable", ValueType::Flag},
};
constexpr Parameter filesParameters[] = {{"files", ParameterType::PathPattern, true},
                                         {"named", ParameterType::Pattern}};
constexpr ProbeValue filesValues[] = {
    {"count", ValueType::Number}, {"names", ValueType::Text}, {"size", ValueType::Size},
    {"newest", ValueType::Age},   {"oldest", ValueType::Age},
};
constexpr Parameter checksumParameters[] = {{"checksum", ParameterType::Path, true}};
constexpr ProbeValue checksumValues[] = {
    {"path", ValueType::Text}, {"readable", ValueType::Flag}, {"sha256", ValueType::Text}};
constexpr Parameter lockParameters[] = {{"lock", ParameterType::PathPattern, true}};
constexpr ProbeValue lockValues[] = {
    {"path", ValueType::Text},   {"name", ValueType::Text},  {"folder", ValueType::Text},
    {"exists", ValueType::Flag}, {"owner", ValueType::Text}, {"own", ValueType::Flag},
    {"size", ValueType::Size},   {"age", ValueType::Age},    {"pid", ValueType::Number},
    {"stale", ValueType::Flag},
};

} // namespace

const ProbeKind fileKind{"file", fileParameters, fileValues, &lookAtFile};
const ProbeKind filesKind{"files", filesParameters, filesValues, &lookAtFiles};
const ProbeKind checksumKind{"checksum", checksumParameters, checksumValues, &lookAtChecksum};
const ProbeKind lockKind{"lock", lockParameters, lockValues, &lookAtLock};

} // namespace doctor
