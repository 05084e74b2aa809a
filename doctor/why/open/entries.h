#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include "doctor/why/open/places.h"

namespace doctor {

/// Whether a desktop entry can be used, as GLib decides it.
enum class EntryState {
    Works,
    Missing,
    Unreadable,     ///< not to be read, or no key file
    NotApplication, ///< it does not begin with [Desktop Entry], or its type is another
    TryExecFails,
    ExecFails ///< its command line cannot be split, or its program is not there
};

struct DesktopEntry
{
    EntryState state = EntryState::Missing;
    QString path;
    /// What TryExec or Exec names.
    QString program;
    /// What MimeType names, as it is written.
    QStringList types;
    bool isHidden = false;
    bool hasNoDisplay = false;
    /// Whether OnlyShowIn and NotShowIn let this desktop show it.
    bool isShown = true;
};

/// The desktop entries of a session. Files are read when they are asked for, once.
class DesktopEntries
{
public:
    explicit DesktopEntries(const OpenPlaces &places);

    /// The entry of that name that GLib uses: the first one that works, or else the first one.
    const DesktopEntry &entry(const QString &name) const;
    /// Whether a data directory before this one has an entry of that name.
    bool isMasked(const QString &name, int dataFolder) const;
    /// The names of a data directory with their files. "kde/app.desktop" is "kde-app.desktop".
    const QHash<QString, QString> &names(int dataFolder) const { return m_folders.at(dataFolder); }
    /// The names of all data directories that begin so, in order.
    QStringList namesWith(const QString &beginning) const;
    /// Whether there were more entries, or deeper ones, than are looked at.
    bool isIncomplete() const { return m_isIncomplete; }

private:
    void addFolder(const QString &folder, const QString &prefix, int depth,
                   QHash<QString, QString> &names);
    DesktopEntry read(const QString &path) const;

    OpenPlaces m_places;
    QVector<QHash<QString, QString>> m_folders;
    bool m_isIncomplete = false;
    mutable QHash<QString, DesktopEntry> m_entries;
};

/// Why a desktop entry cannot be used; empty if it can.
QString entryProblem(const DesktopEntry &entry);

/// The program that a command line starts, without quotes; empty where GLib cannot split it.
QString programOf(const QString &commandLine);

} // namespace doctor
