#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

#include "doctor/model/finding.h"
#include "doctor/why/open/mimetypes.h"
#include "doctor/why/open/places.h"

namespace doctor {

/// What a line of an association list says of a type.
enum class ListGroup {
    Default,
    Added,
    Removed,
    Cache ///< the entry itself says that it opens the type
};

struct ListLine
{
    ListGroup group = ListGroup::Default;
    /// The type as it is written, perhaps an alias.
    QString key;
    /// Nothing for a value that GLib refuses.
    std::optional<QStringList> entries;
    int line = 0;
};

/// mimeapps.list, one that is for a desktop only, or one of those that only GLib and xdg-mime read.
struct AssociationList
{
    enum class Kind {
        ForDesktop,
        Plain,
        Defaults,
        Cache
    };

    QString path;
    Kind kind = Kind::Plain;
    /// Of OpenPlaces::data; -1 for lists among the configuration.
    int dataFolder = -1;
    bool isThere = false;
    /// Why nothing of it was read; for people.
    QString problem;
    /// Nobody can say what the tools make of it: it is no file, or too large to be read here.
    bool isUndecided = false;
    /// The line for which GLib refuses the list; 0 if it takes it.
    int brokenLine = 0;
    QByteArray content;
    /// By type, those of its aliases among them.
    QHash<QString, QVector<ListLine>> lines;

    /// Whether GLib obeys this group in such a file.
    bool takes(ListGroup group) const;
};

/// All lists of a session, also those that are not there, in the order in which they count.
class AssociationLists
{
public:
    AssociationLists(const OpenPlaces &places, const MimeTypes &types);

    const QVector<AssociationList> &all() const { return m_lists; }
    /// The lists of one directory: the place of the first one in all(), and how many.
    struct Folder
    {
        int first = 0;
        int count = 0;
        int dataFolder = -1;
    };
    const QVector<Folder> &folders() const { return m_folders; }

private:
    void addFolder(const OpenPlaces &places, const MimeTypes &types, const QString &folder,
                   int dataFolder);

    QVector<AssociationList> m_lists;
    QVector<Folder> m_folders;
};

/// What a tool opens a type with.
struct OpenChoice
{
    /// The desktop entry's name and, where the tool finds it, its file; empty if there is none.
    QString entry;
    QString path;
    /// The type for which it was found, the asked one or a more general one.
    QString type;
    /// The line that decides, or the desktop entry that was found without one.
    Place where;
};

} // namespace doctor
