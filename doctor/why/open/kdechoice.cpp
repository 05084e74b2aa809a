#include "doctor/why/open/kdechoice.h"

#include <QSet>

namespace doctor {

namespace {

/// "kde/app.desktop" and "kde-app.desktop" are one entry.
QString nameOf(const QString &entry)
{
    return entry.trimmed().replace(QLatin1Char('/'), QLatin1Char('-'));
}

bool counts(const DesktopEntry &entry)
{
    return entry.state == EntryState::Works && !entry.isHidden && entry.isShown;
}

class Search
{
public:
    Search(const AssociationLists &lists, const DesktopEntries &entries, const QString &type)
        : m_lists(lists), m_entries(entries), m_type(type)
    {
    }

    OpenChoice choice();

private:
    const ListLine *line(const AssociationList &list, ListGroup group) const;
    void look(const AssociationList &list, ListGroup group);

    const AssociationLists &m_lists;
    const DesktopEntries &m_entries;
    QString m_type;
    QSet<QString> m_removed;
    OpenChoice m_choice;
};

const ListLine *Search::line(const AssociationList &list, ListGroup group) const
{
    const auto lines = list.lines.constFind(m_type);
    if (lines == list.lines.constEnd())
        return nullptr;
    for (const ListLine &each : *lines) {
        if (each.group == group && each.entries)
            return &each;
    }
    return nullptr;
}

void Search::look(const AssociationList &list, ListGroup group)
{
    const ListLine *found = line(list, group);
    for (const QString &each : found != nullptr ? *found->entries : QStringList()) {
        const QString name = nameOf(each);
        const DesktopEntry &entry = m_entries.entry(name);
        if (m_choice.entry.isEmpty() && !m_removed.contains(name) && counts(entry))
            m_choice = {name, entry.path, m_type, {list.path, found->line, 0}};
    }
}

OpenChoice Search::choice()
{
    using Kind = AssociationList::Kind;
    for (const AssociationList &list : m_lists.all()) {
        if (list.kind != Kind::ForDesktop && list.kind != Kind::Plain)
            continue;
        look(list, ListGroup::Default);
        const ListLine *removed = line(list, ListGroup::Removed);
        for (const QString &name : removed != nullptr ? *removed->entries : QStringList())
            m_removed.insert(nameOf(name));
        look(list, ListGroup::Added);
    }
    for (const AssociationList &list : m_lists.all()) {
        if (list.kind == Kind::Cache)
            look(list, ListGroup::Cache);
    }
    return m_choice;
}

} // namespace

OpenChoice kdeChoice(const AssociationLists &lists, const DesktopEntries &entries,
                     const QStringList &types)
{
    OpenChoice choice;
    for (const QString &type : types) {
        choice = Search(lists, entries, type).choice();
        if (!choice.entry.isEmpty())
            break;
    }
    return choice;
}

} // namespace doctor
