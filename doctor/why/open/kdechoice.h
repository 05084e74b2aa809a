#pragma once

#include <QHash>
#include <QVector>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/lists.h"
#include "doctor/why/open/mimetypes.h"

namespace doctor {

/// The choice of KDE Frameworks 5.103, as kbuildsycoca5 makes its cache of offers: by the entries'
/// own types and InitialPreference, which lists raise or take out. It reads neither mimeinfo.cache
/// nor defaults.list, knows no alias in what a list removes, and takes a program for there
/// without a look, but for TryExec.
class KdeChoices
{
public:
    KdeChoices(const OpenPlaces &places, const AssociationLists &lists,
               const DesktopEntries &entries, const MimeTypes &types);

    OpenChoice choice(const QString &type) const;

private:
    struct Entry
    {
        QString name;
        QString path;
        QStringList types;
        int preference = 1;
        /// Whether it is for this desktop.
        bool isShown = true;
    };
    struct Offer
    {
        int entry = 0;
        int preference = 0;
        /// 0 for the type itself; more general types come later.
        int level = 0;
        Place where;
    };
    struct Offers
    {
        QVector<Offer> offers;
        QVector<int> removed;
    };

    void readEntries(const OpenPlaces &places, const DesktopEntries &entries);
    void readList(const AssociationList &list, int preference);
    /// By its name, or by that of its file alone; -1 for none.
    int entryNamed(const QString &name) const;
    static void add(Offers &offers, const Offer &offer);
    /// With those of more general types.
    Offers offersFor(const QString &type, QStringList &visited) const;

    const MimeTypes &m_types;
    QVector<Entry> m_entries;
    /// By their names, and by those of their files alone.
    QHash<QString, int> m_names;
    QHash<QString, int> m_files;
    QHash<QString, Offers> m_offers;
};

} // namespace doctor
