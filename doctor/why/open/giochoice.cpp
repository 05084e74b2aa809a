#include "doctor/why/open/giochoice.h"

#include <QSet>

namespace doctor {

namespace {

/// Entries of one kind, as places in the statements, each name once.
struct Named
{
    QVector<int> indexes;
    QSet<QString> names;
    /// Whether a line of the kind was read, perhaps one without entries.
    bool isBegun = false;

    bool has(const QString &name) const { return names.contains(name); }
    void add(int index, const QString &name)
    {
        indexes.append(index);
        names.insert(name);
    }
};

/// What the lists of one directory say of a type.
struct Tweaks
{
    Named defaults;
    Named additions;
    Named removals;
};

class Search
{
public:
    Search(const AssociationLists &lists, const DesktopEntries &entries)
        : m_lists(lists), m_entries(entries)
    {
    }

    void consider(const QString &type);
    bool isOver() const { return !result.choice.entry.isEmpty(); }

    GioChoice result;

private:
    Tweaks tweaksOf(const AssociationLists::Folder &folder, const QString &type);
    void addLine(const AssociationList &list, const QString &type, const ListLine &line,
                 Tweaks &tweaks);
    void lookUp(const Tweaks &tweaks, int dataFolder);
    void take();
    Statement &at(int index) { return result.statements[index]; }

    const AssociationLists &m_lists;
    const DesktopEntries &m_entries;
    /// What is in the running for the type.
    Named m_hits;
    /// Removed entries stay out for the more general types as well.
    Named m_removed;
};

void Search::addLine(const AssociationList &list, const QString &type, const ListLine &line,
                     Tweaks &tweaks)
{
    const bool isRemoval = line.group == ListGroup::Removed;
    Named &target = line.group == ListGroup::Default ? tweaks.defaults
                    : isRemoval                      ? tweaks.removals
                                                     : tweaks.additions;
    const Named &opposite = isRemoval ? tweaks.additions : tweaks.removals;
    // GLib takes a directory's first line of a kind as it is.
    const bool isFirst = !target.isBegun;
    for (const QString &entry : *line.entries) {
        Statement statement{type, line.group, {list.path, line.line, 0}, entry, Fate::Later};
        const bool isOpposed = !isFirst && line.group != ListGroup::Default && opposite.has(entry);
        if (!list.takes(line.group))
            statement.fate = Fate::NotObeyed;
        else if (isOpposed)
            statement.fate = isRemoval ? Fate::RemovesLate : Fate::Removed;
        else if (target.has(entry))
            statement.fate = isRemoval ? Fate::Removes : Fate::Repeated;
        else
            target.add(result.statements.size(), entry);
        result.statements.append(statement);
    }
    target.isBegun = target.isBegun || list.takes(line.group);
}

Tweaks Search::tweaksOf(const AssociationLists::Folder &folder, const QString &type)
{
    constexpr ListGroup order[] = {ListGroup::Cache, ListGroup::Added, ListGroup::Removed,
                                   ListGroup::Default};
    Tweaks tweaks;
    for (int number = folder.first; number < folder.first + folder.count; ++number) {
        const AssociationList &list = m_lists.all().at(number);
        const auto lines = list.lines.constFind(type);
        if (lines == list.lines.constEnd())
            continue;
        for (const ListGroup group : order) {
            for (const ListLine &line : *lines) {
                if (line.group == group && line.entries)
                    addLine(list, type, line, tweaks);
            }
        }
    }
    return tweaks;
}

/// Adds what is associated, but not as a default, to the hits.
void Search::lookUp(const Tweaks &tweaks, int dataFolder)
{
    for (const int index : tweaks.additions.indexes) {
        Statement &statement = at(index);
        if (m_entries.isMasked(statement.entry, dataFolder))
            statement.fate = Fate::Masked;
        else if (m_removed.has(statement.entry))
            statement.fate = Fate::Removed;
        else if (m_hits.has(statement.entry))
            statement.fate = Fate::Repeated;
        else
            m_hits.add(index, at(index).entry);
    }
    for (const int index : tweaks.removals.indexes) {
        Statement &statement = at(index);
        statement.fate = Fate::Removes;
        if (m_entries.isMasked(statement.entry, dataFolder))
            statement.fate = Fate::Masked;
        else if (m_hits.has(statement.entry))
            statement.fate = Fate::RemovesLate;
        else
            m_removed.add(index, statement.entry);
    }
}

void Search::take()
{
    for (const int index : qAsConst(m_hits.indexes)) {
        Statement &statement = at(index);
        const DesktopEntry &entry = m_entries.entry(statement.entry);
        if (entry.state != EntryState::Works) {
            statement.fate = Fate::Fails;
        } else if (!isOver()) {
            statement.fate = Fate::Decides;
            result.choice = {statement.entry, entry.path, statement.type, statement.where};
        }
    }
}

void Search::consider(const QString &type)
{
    QVector<Tweaks> folders;
    for (const AssociationLists::Folder &folder : m_lists.folders())
        folders.append(tweaksOf(folder, type));
    m_hits = {};
    for (const Tweaks &tweaks : qAsConst(folders)) {
        for (const int index : tweaks.defaults.indexes) {
            if (m_hits.has(at(index).entry))
                at(index).fate = Fate::Repeated;
            else
                m_hits.add(index, at(index).entry);
        }
    }
    for (int number = 0; number < folders.size(); ++number)
        lookUp(folders.at(number), m_lists.folders().at(number).dataFolder);
    take();
}

} // namespace

GioChoice gioChoice(const AssociationLists &lists, const DesktopEntries &entries,
                    const QStringList &types)
{
    Search search(lists, entries);
    for (const QString &type : types) {
        search.consider(type);
        if (search.isOver())
            break;
    }
    return search.result;
}

} // namespace doctor
