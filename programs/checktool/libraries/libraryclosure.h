#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

#include "programs/checktool/libraries/elffile.h"
#include "programs/checktool/libraries/librarysearch.h"

namespace standin {

/// The libraries that files need, with what those need in turn, found as the dynamic loader finds
/// them. Files added later are taken to be loaded into the same program.
class LibraryClosure
{
public:
    explicit LibraryClosure(const LibrarySearch &search) : m_search(search) {}

    /// Adds a file with all that it needs; gives what the file itself says.
    ElfFile add(const QString &path);

    /// Names of libraries that are nowhere, each with the files that want it.
    const QMap<QString, QStringList> &missing() const { return m_missing; }

    /// Paths of libraries that cannot be loaded, each with the files that want it.
    const QMap<QString, QStringList> &broken() const { return m_broken; }

    /// Libraries there only for another kind of processor, with the files that want them.
    const QMap<QString, QStringList> &foreign() const { return m_foreign; }

    /// "version of library path" that the library found does not have, with those that want it.
    struct MissingVersion
    {
        QString version;
        QString library;
        QString wanter;
    };
    const QList<MissingVersion> &missingVersions() const { return m_missingVersions; }

    /// What keeps the files from being loaded: names of libraries that are missing or foreign, and
    /// paths of those that are broken or lack a version.
    QStringList unusable() const;

    /// The paths of all files that were added or found.
    QStringList paths() const { return m_files.keys(); }

private:
    struct Loaded
    {
        ElfFile file;
        QStringList inheritedSearch;
    };

    void load(const QString &path, const ElfFile &file, const QStringList &inheritedSearch);
    void find(const QString &name, const QString &wanter);
    QStringList candidates(const QString &name, const QString &wanter) const;
    void compareVersions(const QString &name, const QString &wanter);

    LibrarySearch m_search;
    QMap<QString, Loaded> m_files;
    QHash<QString, QString> m_pathsByName;
    QStringList m_programSearch;
    QMap<QString, QStringList> m_missing;
    QMap<QString, QStringList> m_broken;
    QMap<QString, QStringList> m_foreign;
    QList<MissingVersion> m_missingVersions;
};

} // namespace standin
