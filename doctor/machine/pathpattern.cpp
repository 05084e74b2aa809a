#include "doctor/machine/pathpattern.h"

#include <QFile>

#include <algorithm>

#include <fnmatch.h>
#include <sys/stat.h>

#include "doctor/machine/filereading.h"
#include "doctor/machine/mounts.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int longestPath = 4096;
constexpr int mostMatches = 1000;
constexpr int mostNames = 50000;

QString unescaped(const QString &name)
{
    QString plain;
    for (int i = 0; i < name.size(); ++i) {
        if (name[i] == QLatin1Char('\\') && i + 1 < name.size())
            ++i;
        plain += name[i];
    }
    return plain;
}

bool isThere(const QString &path)
{
    struct stat state;
    return lstat(QFile::encodeName(path).constData(), &state) == 0;
}

/// The points of mounts that must not be touched without need.
QStringList pointsThatMayHang(const Machine &machine)
{
    QStringList points;
    const QVector<Mount> mounts = mountsOf(machine);
    for (const Mount &mount : mounts) {
        if (mount.mayHang())
            points.append(mount.point);
    }
    return points;
}

} // namespace

QString escapedForPattern(const QString &text)
{
    QString escaped;
    for (const QChar character : text) {
        if (QStringLiteral("*?[\\").contains(character))
            escaped += QLatin1Char('\\');
        escaped += character;
    }
    return escaped;
}

bool isPlainPath(const QString &pattern)
{
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == QLatin1Char('\\'))
            ++i;
        else if (QStringLiteral("*?[").contains(pattern[i]))
            return false;
    }
    return true;
}

QString pathProblem(const QString &path)
{
    if (!path.startsWith(QLatin1Char('/')))
        return texts::tr("\"%1\" is not an absolute path").arg(path.left(200));
    if (path.size() > longestPath)
        return texts::tr("a path is longer than %1 characters").arg(longestPath);
    if (path.split(QLatin1Char('/')).contains(QStringLiteral("..")))
        return texts::tr("\"%1\" contains \"..\"").arg(path.left(200));
    const auto isControl = [](QChar character) { return character.unicode() < 0x20; };
    if (std::any_of(path.begin(), path.end(), isControl))
        return texts::tr("a path contains a control character");
    return {};
}

MatchedPaths matchedPaths(const Machine &machine, const QString &pattern, const Deadline &deadline)
{
    const QString problem = pathProblem(pattern);
    if (!problem.isEmpty())
        return {{}, problem};
    if (isPlainPath(pattern))
        return {{unescaped(pattern)}, {}};
    QStringList found{QString()};
    const QStringList avoided = pointsThatMayHang(machine);
    int namesSeen = 0;
    const QStringList parts = pattern.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        QStringList next;
        const QByteArray wanted = QFile::encodeName(part);
        for (const QString &directory : qAsConst(found)) {
            if (isPlainPath(part)) {
                next.append(directory + QLatin1Char('/') + unescaped(part));
                continue;
            }
            const QString place = machine.located(directory + QLatin1Char('/'));
            const QStringList names = namesIn(place, mostNames + 1).value_or(QStringList());
            namesSeen += names.size();
            if (namesSeen > mostNames || deadline.isOver())
                return {{}, texts::tr("too many files to look through for %1").arg(pattern)};
            for (const QString &name : names) {
                const QString path = directory + QLatin1Char('/') + name;
                if (fnmatch(wanted.constData(), QFile::encodeName(name).constData(), FNM_PERIOD) ==
                        0 &&
                    !avoided.contains(path))
                    next.append(path);
            }
        }
        if (next.size() > mostMatches)
            return {{}, texts::tr("more than %1 files match %2").arg(mostMatches).arg(pattern)};
        found = next;
    }
    const auto isMissing = [&machine](const QString &path) {
        return !isThere(machine.located(path));
    };
    found.erase(std::remove_if(found.begin(), found.end(), isMissing), found.end());
    return {found, {}};
}

} // namespace doctor
