#include "doctor/why/open/mimetypes.h"

#include <QFile>

#include <algorithm>

#include <fnmatch.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestList = 8 * 1024 * 1024;
constexpr int mostTypes = 1000;
constexpr char special[] = "*?[";

QByteArray read(const OpenPlaces &places, const QString &path)
{
    return readFile(places.machine.located(path), largestList).content.value_or(QByteArray());
}

/// The two words of each line.
QVector<QPair<QString, QString>> pairsIn(const QByteArray &content)
{
    QVector<QPair<QString, QString>> pairs;
    for (const QByteArray &line : content.split('\n')) {
        const int space = line.indexOf(' ');
        if (space > 0 && !line.startsWith('#'))
            pairs.append({QString::fromUtf8(line.left(space)),
                          QString::fromUtf8(line.mid(space + 1)).trimmed()});
    }
    return pairs;
}

bool isPlain(const QString &pattern)
{
    return std::none_of(std::begin(special), std::end(special) - 1,
                        [&pattern](char each) { return pattern.contains(QLatin1Char(each)); });
}

} // namespace

MimeTypes::MimeTypes(const OpenPlaces &places)
{
    for (const QString &folder : places.data)
        m_folders.append(folder + QStringLiteral("/mime"));
    // GLib passes over the others as soon as one is compiled.
    QStringList compiled = m_folders;
    compiled.erase(std::remove_if(compiled.begin(), compiled.end(),
                                  [&places](const QString &folder) {
                                      return !QFile::exists(places.machine.located(
                                          folder + QStringLiteral("/mime.cache")));
                                  }),
                   compiled.end());
    if (!compiled.isEmpty())
        m_folders = compiled;
    for (const QString &folder : qAsConst(m_folders)) {
        for (const auto &[alias, type] :
             pairsIn(read(places, folder + QStringLiteral("/aliases")))) {
            if (!m_aliases.contains(alias))
                m_aliases.insert(alias, type);
        }
        for (const auto &[type, parent] :
             pairsIn(read(places, folder + QStringLiteral("/subclasses"))))
            m_parents[type].append(parent);
        const QString patterns = folder + QStringLiteral("/globs2");
        readPatterns(patterns, read(places, patterns));
    }
}

/// Lines of "weight:type:pattern", perhaps with flags behind.
void MimeTypes::readPatterns(const QString &path, const QByteArray &content)
{
    QHash<QString, QVector<Glob>> suffixes;
    int number = 0;
    for (const QByteArray &line : content.split('\n')) {
        ++number;
        const QList<QByteArray> fields = line.split(':');
        if (fields.size() < 3 || line.startsWith('#'))
            continue;
        Glob glob;
        glob.match = {QString::fromUtf8(fields.at(1)),
                      QString::fromUtf8(fields.at(2)),
                      fields.at(0).toInt(),
                      {path, number, 0}};
        glob.isCaseSensitive = fields.value(3).split(',').contains("cs");
        const QString &pattern = glob.match.pattern;
        if (isPlain(pattern))
            m_names[pattern].append(glob);
        else if (pattern.startsWith(QLatin1Char('*')) && isPlain(pattern.mid(1)))
            suffixes[pattern.mid(1)].append(glob);
        else
            m_patterns.append(glob);
    }
    m_suffixes.append(suffixes);
}

QString MimeTypes::unaliased(const QString &type) const
{
    return m_aliases.value(type, type);
}

QStringList MimeTypes::withParents(const QString &type) const
{
    QStringList types{unaliased(type)};
    for (int index = 0; index < types.size(); ++index) {
        const QString each = unaliased(types.at(index));
        for (const QString &parent : QStringList{each} + m_parents.value(each)) {
            if (types.size() < mostTypes && !types.contains(parent))
                types.append(parent);
        }
    }
    return types;
}

QStringList MimeTypes::parents(const QString &type) const
{
    const QString each = unaliased(type);
    QStringList parents;
    for (const QString &parent : m_parents.value(each))
        parents.append(unaliased(parent));
    if (!parents.isEmpty())
        return parents;
    const QString bytes = QStringLiteral("application/octet-stream");
    const QString text = QStringLiteral("text/plain");
    if (each.startsWith(QLatin1String("text/")) && each != text)
        return {text};
    return each == bytes ? QStringList() : QStringList{bytes};
}

bool MimeTypes::isSubclass(const QString &type, const QString &base) const
{
    const QString wanted = unaliased(base);
    return (wanted == QLatin1String("text/plain") && type.startsWith(QLatin1String("text/"))) ||
           wanted == QLatin1String("application/octet-stream") ||
           withParents(type).contains(wanted);
}

QVector<NameMatch> MimeTypes::ofName(const QString &name) const
{
    QVector<NameMatch> found;
    QString lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](QChar each) {
        return each >= QLatin1Char('A') && each <= QLatin1Char('Z') ? each.toLower() : each;
    });
    const auto add = [&found](const Glob &glob, bool isExact) {
        const bool isKnown =
            std::any_of(found.begin(), found.end(),
                        [&glob](const NameMatch &match) { return match.type == glob.match.type; });
        if ((isExact || !glob.isCaseSensitive) && !isKnown)
            found.append(glob.match);
    };
    // First by the name as it is, then in small letters by patterns that allow it.
    const auto twice = [&](const auto &look) {
        look(name, true);
        if (found.size() < 2)
            look(lower, false);
    };
    twice([&](const QString &text, bool isExact) {
        for (const Glob &glob : m_names.value(text))
            add(glob, isExact);
    });
    if (!found.isEmpty())
        return found;
    twice([&](const QString &text, bool isExact) {
        for (const auto &suffixes : m_suffixes) {
            // The longest suffix of a directory counts.
            const int before = found.size();
            for (int start = 0; start < text.size() && found.size() == before; ++start) {
                for (const Glob &glob : suffixes.value(text.mid(start)))
                    add(glob, isExact);
            }
        }
    });
    twice([&](const QString &text, bool isExact) {
        for (const Glob &glob : found.size() < 2 ? m_patterns : QVector<Glob>()) {
            if (::fnmatch(QFile::encodeName(glob.match.pattern).constData(),
                          QFile::encodeName(text).constData(), 0) == 0)
                add(glob, isExact);
        }
    });
    std::stable_sort(found.begin(), found.end(), [](const NameMatch &one, const NameMatch &other) {
        return one.weight > other.weight;
    });
    return found;
}

} // namespace doctor
