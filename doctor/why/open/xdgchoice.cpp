#include "doctor/why/open/xdgchoice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

#include <unistd.h>

#include "doctor/machine/filereading.h"
#include "doctor/why/open/keyfile.h"

namespace doctor {

namespace {

constexpr qint64 largestEntry = 1024 * 1024;
constexpr qint64 largestCache = 4 * 1024 * 1024;
constexpr int mostEntries = 50000;
constexpr int deepest = 8;

/// Calls @p take with each line and its number from 1 until it returns true.
template<typename Take>
void eachLine(const QByteArray &content, const Take &take)
{
    int number = 0;
    for (int start = 0; start < content.size();) {
        const int feed = content.indexOf('\n', start);
        const int end = feed < 0 ? content.size() : feed;
        if (take(QByteArray::fromRawData(content.constData() + start, end - start), ++number))
            return;
        start = end + 1;
    }
}

/// The first place of @p behind with the type before it, which the script takes for a basic regular
/// expression; -1 if there is none.
int placeBehindType(const QByteArray &text, const QByteArray &type, char behind, int from = 0)
{
    const auto fits = [](char wanted, char each) { return wanted == '.' || wanted == each; };
    for (int place = text.indexOf(behind, from); place >= 0;
         place = text.indexOf(behind, place + 1)) {
        const char *start = text.constData() + place - type.size();
        if (place - from >= type.size() && std::equal(type.begin(), type.end(), start, fits))
            return place;
    }
    return -1;
}

bool isReadable(const QString &path)
{
    return ::access(QFile::encodeName(path).constData(), R_OK) == 0;
}

QByteArray before(const QByteArray &text, char end)
{
    const int position = text.indexOf(end);
    return position < 0 ? text : text.left(position);
}

/// As the shell splits text.
QStringList words(const QByteArray &text)
{
    return QString::fromUtf8(text).split(QRegularExpression(QStringLiteral("[ \\t\\n]+")),
                                         Qt::SkipEmptyParts);
}

/// As the shell expands "*/".
QStringList foldersIn(const QString &folder)
{
    QStringList found;
    for (const QString &name : namesIn(folder, mostEntries).value_or(QStringList())) {
        if (!name.startsWith(QLatin1Char('.')) &&
            QFileInfo(folder + QLatin1Char('/') + name).isDir())
            found.append(name + QLatin1Char('/'));
    }
    // With the slash, as the shell sorts them.
    std::sort(found.begin(), found.end());
    return found;
}

/// The first word behind the first "Exec=", with quotes as they are.
QString execWord(const QByteArray &content)
{
    QString word;
    eachLine(content, [&word](const QByteArray &line, int) {
        const int equals = line.indexOf('=');
        const QByteArray key = line.left(equals);
        const bool isExec = key == "Exec" || (key.startsWith("Exec[") && key.endsWith(']'));
        if (equals < 0 || !isExec)
            return false;
        word = words(line.mid(equals + 1)).value(0);
        return true;
    });
    return word;
}

} // namespace

XdgMime::XdgMime(const OpenPlaces &places, const AssociationLists &lists)
    : m_places(places), m_lists(lists)
{
}

const AssociationList *XdgMime::list(const QString &path) const
{
    const auto found =
        std::find_if(m_lists.all().begin(), m_lists.all().end(),
                     [&path](const AssociationList &list) { return list.path == path; });
    return found == m_lists.all().end() ? nullptr : &*found;
}

bool XdgMime::canStart(const QString &path) const
{
    const QByteArray content =
        readFile(m_places.machine.located(path), largestEntry).content.value_or(QByteArray());
    const QString word = execWord(content);
    const auto isFound = [this](const QString &program) {
        return QFileInfo(m_places.machine.located(program)).isFile() && m_places.isProgram(program);
    };
    if (word.isEmpty() || word.contains(QLatin1Char('/')))
        return !word.isEmpty() && isFound(word);
    return std::any_of(
        m_places.programs.begin(), m_places.programs.end(),
        [&](const QString &folder) { return isFound(folder + QLatin1Char('/') + word); });
}

/// The file that stands for a name in one data directory: "a-b.desktop" is "a/b.desktop" as well.
QString XdgMime::entryPath(const QString &folder, const QString &name) const
{
    QStringList candidates;
    const QStringList rooms{folder + QStringLiteral("/applications/"),
                            folder + QStringLiteral("/applnk/")};
    if (name.contains(QLatin1Char('-'))) {
        const QString below = name.section(QLatin1Char('-'), 0, -2) + QLatin1Char('/') +
                              name.section(QLatin1Char('-'), 1);
        for (const QString &room : rooms)
            candidates.append(room + below);
    }
    for (const QString &room : rooms) {
        candidates.append(room + name);
        for (const QString &inner : foldersIn(m_places.machine.located(room)))
            candidates.append(room + inner + name);
    }
    const auto found =
        std::find_if(candidates.begin(), candidates.end(), [this](const QString &path) {
            return isReadable(m_places.machine.located(path));
        });
    return found == candidates.end() ? QString() : *found;
}

QString XdgMime::startable(const QString &name) const
{
    const auto known = m_startable.constFind(name);
    if (known != m_startable.constEnd())
        return *known;
    QString path;
    const QString base = QFileInfo(QDir::cleanPath(name)).fileName();
    for (const QString &folder : m_places.data) {
        path = base.isEmpty() ? QString() : entryPath(folder, base);
        if (!path.isEmpty())
            break;
    }
    return *m_startable.insert(name, !path.isEmpty() && canStart(path) ? path : QString());
}

OpenChoice XdgMime::fromDefaults(const AssociationList &list, const QString &type) const
{
    OpenChoice choice;
    const QByteArray prefix = type.toUtf8() + '=';
    bool isInGroup = false;
    if (!list.content.contains(prefix))
        return choice;
    eachLine(list.content, [&](const QByteArray &line, int number) {
        if (line.startsWith('[')) {
            isInGroup = line.startsWith("[Default Applications]");
            return false;
        }
        if (!isInGroup || !line.startsWith(prefix))
            return false;
        const QString entry = QString::fromUtf8(before(line.mid(prefix.size()), ';'));
        const QString path = entry.isEmpty() ? QString() : startable(entry);
        if (!path.isEmpty())
            choice = {entry, path, type, {list.path, number, 0}};
        return true;
    });
    return choice;
}

std::optional<XdgMime::CacheLine> XdgMime::cacheLine(const QString &path, const QString &type) const
{
    const AssociationList *known = list(path);
    const QByteArray content =
        known != nullptr
            ? known->content
            : readFile(m_places.machine.located(path), largestCache).content.value_or(QByteArray());
    const QByteArray wanted = type.toUtf8();
    int place = content.contains('\0') ? -1 : placeBehindType(content, wanted, '=');
    while (place >= 0) {
        const int start = content.lastIndexOf('\n', place) + 1;
        const int feed = content.indexOf('\n', place);
        const int end = feed < 0 ? content.size() : feed;
        const QByteArray line = content.mid(start, end - start);
        // grep prints no line that is not text.
        if (decoded(line)) {
            const int number =
                1 + static_cast<int>(std::count(content.begin(), content.begin() + start, '\n'));
            return CacheLine{before(before(line.mid(line.indexOf('=') + 1), '='), ';'),
                             {path, number, 0}};
        }
        place = placeBehindType(content, wanted, '=', end);
    }
    return std::nullopt;
}

/// The first line of both lists counts, whether it names an entry or not.
std::optional<XdgMime::CacheLine> XdgMime::firstCacheLine(const QString &start,
                                                          const QString &type) const
{
    const auto line = cacheLine(start + QStringLiteral("defaults.list"), type);
    return line ? line : cacheLine(start + QStringLiteral("mimeinfo.cache"), type);
}

void XdgMime::search(const QString &folder, int depth) const
{
    const QString located = m_places.machine.located(folder);
    for (const QString &name : namesIn(located, mostEntries).value_or(QStringList())) {
        if (!name.endsWith(QLatin1String(".desktop")) || name.startsWith(QLatin1Char('.')) ||
            m_searched.size() >= mostEntries)
            continue;
        const QString path = folder + QLatin1Char('/') + name;
        Searched entry{path, {}, 0};
        QByteArray preference = "0";
        eachLine(readFile(located + QLatin1Char('/') + name, largestEntry)
                     .content.value_or(QByteArray()),
                 [&](const QByteArray &line, int) {
                     if (line.contains("InitialPreference="))
                         preference += line.split('=').value(1).trimmed();
                     if (line.contains('/') && line.contains(';'))
                         entry.lines += line + '\n';
                     return false;
                 });
        bool isNumber = false;
        entry.preference = preference.toInt(&isNumber);
        if (isNumber)
            m_searched.append(entry);
    }
    for (const QString &name : depth < deepest ? foldersIn(located) : QStringList())
        search(folder + QLatin1Char('/') + name.chopped(1), depth + 1);
}

OpenChoice XdgMime::fromEntries(const QString &type) const
{
    if (!m_isSearched) {
        for (const QString &folder : m_places.data)
            search(folder + QStringLiteral("/applications"), 0);
    }
    m_isSearched = true;
    const QByteArray wanted = type.toUtf8();
    const Searched *best = nullptr;
    for (const Searched &entry : qAsConst(m_searched)) {
        if ((best == nullptr || entry.preference > best->preference) &&
            placeBehindType(entry.lines, wanted, ';') >= 0)
            best = &entry;
    }
    if (best == nullptr)
        return {};
    return {best->path.section(QLatin1Char('/'), -1), best->path, type, {best->path, 0, 0}};
}

OpenChoice XdgMime::choice(const QString &type) const
{
    using Kind = AssociationList::Kind;
    for (const AssociationList &list : m_lists.all()) {
        const bool isAsked = list.kind == Kind::ForDesktop || list.kind == Kind::Plain;
        OpenChoice choice = isAsked ? fromDefaults(list, type) : OpenChoice();
        if (!choice.entry.isEmpty())
            return choice;
    }
    QStringList prefixes{m_places.menuPrefix, QString()};
    prefixes.removeDuplicates();
    for (const QString &folder : m_places.data) {
        for (const QString &prefix : qAsConst(prefixes)) {
            const auto line =
                firstCacheLine(folder + QStringLiteral("/applications/") + prefix, type);
            // The script tests the value and then prints its words.
            if (line && !line->value.isEmpty())
                return {words(line->value).join(QLatin1Char(' ')), {}, type, line->where};
        }
    }
    return fromEntries(type);
}

} // namespace doctor
