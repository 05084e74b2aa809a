#include "doctor/why/open/kdechoice.h"

#include <algorithm>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestEntry = 1 << 20;
constexpr char mainGroup[] = "Desktop Entry";
/// What the least important list gives, and what each further one gives more.
constexpr int listPreference = 1000;
constexpr int listStep = 50;
constexpr int defaultStep = 25;

struct ConfigLine
{
    QByteArray value;
    int line = 0;
};
/// The groups of a file, with the keys of each; of equal keys the last one counts.
using Config = QHash<QByteArray, QMap<QByteArray, ConfigLine>>;

/// As KConfig reads a file: what is no entry is passed over.
Config parsed(const QByteArray &content)
{
    Config config;
    QByteArray group;
    int number = 0;
    for (const QByteArray &raw : content.split('\n')) {
        ++number;
        const QByteArray line = raw.trimmed();
        const int equals = line.indexOf('=');
        if (line.startsWith('[') && line.indexOf(']') > 0)
            group = line.mid(1, line.indexOf(']') - 1);
        else if (!line.startsWith('#') && equals > 0)
            config[group].insert(line.left(equals).trimmed(),
                                 {line.mid(equals + 1).trimmed(), number});
    }
    return config;
}

/// As KConfigGroup::readXdgListEntry().
QStringList listOf(const QByteArray &value)
{
    QStringList list;
    QString part;
    bool isQuoted = false;
    for (const QChar character : QString::fromUtf8(value)) {
        if (isQuoted) {
            part += character == QLatin1Char('s') ? QLatin1Char(' ') : character;
            isQuoted = false;
        } else if (character == QLatin1Char('\\')) {
            isQuoted = true;
        } else if (character == QLatin1Char(';')) {
            list.append(part);
            part.clear();
        } else {
            part += character;
        }
    }
    if (!part.isEmpty())
        list.append(part);
    return list;
}

bool isTrue(const QByteArray &value)
{
    const QByteArray word = value.toLower();
    return word == "true" || word == "on" || word == "yes" || word == "1";
}

bool hasAny(const QStringList &names, const QStringList &wanted)
{
    return std::any_of(names.begin(), names.end(),
                       [&wanted](const QString &name) { return wanted.contains(name); });
}

} // namespace

KdeChoices::KdeChoices(const OpenPlaces &places, const AssociationLists &lists,
                       const DesktopEntries &entries, const MimeTypes &types)
    : m_types(types)
{
    readEntries(places, entries);
    for (int number = 0; number < m_entries.size(); ++number) {
        const Entry &entry = m_entries.at(number);
        for (const QString &type : entry.types) {
            QVector<Offer> &offers = m_offers[types.unaliased(type)].offers;
            // A type may be named twice.
            if (offers.isEmpty() || offers.constLast().entry != number)
                offers.append({number, entry.preference, 0, {entry.path, 0, 0}});
        }
    }
    QVector<const AssociationList *> read;
    for (const AssociationList &list : lists.all()) {
        const bool isRead = list.kind == AssociationList::Kind::ForDesktop ||
                            list.kind == AssociationList::Kind::Plain;
        if (isRead && list.isThere)
            read.prepend(&list);
    }
    int preference = listPreference;
    for (const AssociationList *list : qAsConst(read)) {
        readList(*list, preference);
        preference += listStep;
    }
}

void KdeChoices::readEntries(const OpenPlaces &places, const DesktopEntries &entries)
{
    for (int folder = 0; folder < places.data.size(); ++folder) {
        const QHash<QString, QString> &names = entries.names(folder);
        QStringList sorted = names.keys();
        sorted.sort();
        for (const QString &name : qAsConst(sorted)) {
            if (m_names.contains(name))
                continue;
            const FileContent file =
                readFile(places.machine.located(names.value(name)), largestEntry);
            const auto group = parsed(file.content.value_or(QByteArray())).value(mainGroup);
            const QByteArray tried = group.value("TryExec").value;
            if (group.value("Type").value != "Application" || isTrue(group.value("Hidden").value) ||
                (!tried.isEmpty() && !places.hasProgram(QString::fromUtf8(tried))) ||
                group.value("Exec").value.isEmpty())
                continue;
            Entry entry{name, names.value(name), listOf(group.value("MimeType").value), 1, true};
            bool isNumber = false;
            const int preference = group.value("InitialPreference").value.toInt(&isNumber);
            entry.preference = isNumber ? preference : 1;
            const QStringList only = listOf(group.value("OnlyShowIn").value);
            entry.isShown = only.isEmpty()
                                ? !hasAny(listOf(group.value("NotShowIn").value), places.desktops)
                                : hasAny(only, places.desktops);
            m_names.insert(name, m_entries.size());
            const QString fileName = entry.path.section(QLatin1Char('/'), -1);
            if (!m_files.contains(fileName))
                m_files.insert(fileName, m_entries.size());
            m_entries.append(entry);
        }
    }
}

int KdeChoices::entryNamed(const QString &name) const
{
    return m_names.value(name, m_files.value(name.section(QLatin1Char('/'), -1), -1));
}

void KdeChoices::readList(const AssociationList &list, int preference)
{
    const Config config = parsed(list.content);
    const auto addGroup = [&](const char *group, int highest) {
        const auto lines = config.value(group);
        for (auto line = lines.begin(); line != lines.end(); ++line) {
            Offers &offers = m_offers[m_types.unaliased(QString::fromUtf8(line.key()))];
            int next = highest;
            for (const QString &name : listOf(line->value)) {
                const int entry = entryNamed(name);
                if (entry >= 0)
                    add(offers, {entry, next--, 0, {list.path, line->line, 0}});
            }
        }
    };
    if (list.kind == AssociationList::Kind::Plain) {
        addGroup("Added Associations", preference);
        const auto removed = config.value("Removed Associations");
        for (auto line = removed.begin(); line != removed.end(); ++line) {
            Offers &offers = m_offers[QString::fromUtf8(line.key())];
            for (const QString &name : listOf(line->value)) {
                const int entry = entryNamed(name);
                offers.removed.append(entry);
                offers.offers.erase(
                    std::remove_if(offers.offers.begin(), offers.offers.end(),
                                   [entry](const Offer &each) { return each.entry == entry; }),
                    offers.offers.end());
            }
        }
    }
    addGroup("Default Applications", preference + defaultStep);
}

void KdeChoices::add(Offers &offers, const Offer &offer)
{
    const auto same = std::find_if(offers.offers.begin(), offers.offers.end(),
                                   [&](const Offer &each) { return each.entry == offer.entry; });
    if (same == offers.offers.end()) {
        offers.offers.append(offer);
    } else if (same->preference < offer.preference) {
        same->preference = offer.preference;
        same->where = offer.where;
    }
}

KdeChoices::Offers KdeChoices::offersFor(const QString &type, QStringList &visited) const
{
    visited.append(type);
    Offers all = m_offers.value(type);
    int level = 0;
    for (const QString &parent : m_types.parents(type)) {
        ++level;
        if (visited.contains(parent))
            continue;
        for (Offer offer : offersFor(parent, visited).offers) {
            offer.level = level;
            if (!all.removed.contains(offer.entry))
                add(all, offer);
        }
    }
    return all;
}

OpenChoice KdeChoices::choice(const QString &type) const
{
    QStringList visited;
    const QVector<Offer> offers = offersFor(m_types.unaliased(type), visited).offers;
    const Offer *best = nullptr;
    for (const Offer &offer : offers) {
        const bool isBetter = !best || offer.level < best->level ||
                              (offer.level == best->level && offer.preference > best->preference);
        if (isBetter && m_entries.at(offer.entry).isShown)
            best = &offer;
    }
    if (!best)
        return {};
    const Entry &entry = m_entries.at(best->entry);
    return {entry.name, entry.path, type, best->where};
}

} // namespace doctor
