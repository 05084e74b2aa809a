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

/// Which of the paths that match may be touched.
class Touching
{
public:
    Touching(const Machine &machine, const QString &pattern)
        : m_home(machine.home() + QLatin1Char('/')),
          m_mounts(machine),
          m_areAll(m_mounts.areAllNear()),
          m_named(m_mounts.as(beginOf(pattern)))
    {
    }

    /// Of what is not near only the share that the pattern itself names. Links count in the home
    /// alone: elsewhere the administrator has made them, and much may stand behind one.
    bool isAllowed(const QString &path) const
    {
        if (m_areAll)
            return true;
        const Mount *mount = path.startsWith(m_home) ? m_mounts.reachedBy(path) : m_mounts.as(path);
        return mount == nullptr || mount == m_named || m_mounts.isNear(*mount);
    }

private:
    /// The directory in front of the first name that stands for others.
    static QString beginOf(const QString &pattern)
    {
        QString begin;
        for (const QString &part : pattern.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
            if (!isPlainPath(part))
                break;
            begin += QLatin1Char('/') + unescaped(part);
        }
        return begin;
    }

    const QString m_home;
    const MountTable m_mounts;
    const bool m_areAll;
    const Mount *const m_named;
};

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
    const Touching touching(machine, pattern);
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
            if (!touching.isAllowed(directory))
                continue;
            const QString place = machine.located(directory + QLatin1Char('/'));
            const QStringList names = namesIn(place, mostNames + 1).value_or(QStringList());
            namesSeen += names.size();
            if (namesSeen > mostNames || deadline.isOver())
                return {{}, texts::tr("too many files to look through for %1").arg(pattern)};
            for (const QString &name : names) {
                const QString path = directory + QLatin1Char('/') + name;
                if (fnmatch(wanted.constData(), QFile::encodeName(name).constData(), FNM_PERIOD) ==
                    0)
                    next.append(path);
            }
        }
        if (next.size() > mostMatches)
            return {{}, texts::tr("more than %1 files match %2").arg(mostMatches).arg(pattern)};
        found = next;
    }
    const auto isNone = [&machine, &touching](const QString &path) {
        return !touching.isAllowed(path) || !isThere(machine.located(path));
    };
    found.erase(std::remove_if(found.begin(), found.end(), isNone), found.end());
    return {found, {}};
}

} // namespace doctor
