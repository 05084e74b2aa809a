#pragma once

#include <QString>

#include <optional>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/lists.h"

namespace doctor {

/// The choice of "xdg-mime query default", which "xdg-open" asks on desktops that it does not know.
/// The script of xdg-utils 1.1.3 reads lists by lines, not as key files: of a line only the first
/// entry counts, removals and more general types do not, and what a cache names need not exist.
class XdgMime
{
public:
    XdgMime(const OpenPlaces &places, const AssociationLists &lists);

    OpenChoice choice(const QString &type) const;

private:
    struct Searched
    {
        QString path;
        /// The lines that the script can take for a list of types.
        QByteArray lines;
        int preference = 0;
    };
    struct CacheLine
    {
        QByteArray value;
        Place where;
    };

    OpenChoice fromDefaults(const AssociationList &list, const QString &type) const;
    /// Nothing if there is no line for the type.
    std::optional<CacheLine> cacheLine(const QString &path, const QString &type) const;
    std::optional<CacheLine> firstCacheLine(const QString &start, const QString &type) const;
    OpenChoice fromEntries(const QString &type) const;
    /// The desktop entry that the script finds by name, and only if it can start its program.
    QString startable(const QString &name) const;
    QString entryPath(const QString &folder, const QString &name) const;
    bool canStart(const QString &path) const;
    void search(const QString &folder, int depth) const;
    const AssociationList *list(const QString &path) const;

    OpenPlaces m_places;
    const AssociationLists &m_lists;
    mutable QHash<QString, QString> m_startable;
    /// All desktop entries, read when the lists say nothing.
    mutable QVector<Searched> m_searched;
    mutable bool m_isSearched = false;
};

} // namespace doctor
