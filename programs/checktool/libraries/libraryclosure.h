#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

#include "programs/checktool/libraries/elffile.h"
#include "programs/checktool/libraries/librarysearch.h"

namespace programs {

/// The libraries that files need, directly or through other libraries, found by the rules of the
/// dynamic loader. All added files count as loaded into the same program.
class LibraryClosure
{
public:
    explicit LibraryClosure(const LibrarySearch &search) : m_search(search) {}

    /// Adds a file and all that it needs. Returns the file itself.
    ElfFile add(const QString &path);

    /// Names of libraries that were not found, each with the files that need it.
    const QMap<QString, QStringList> &missing() const { return m_missing; }

    /// Paths of libraries that cannot be loaded, each with the files that need it.
    const QMap<QString, QStringList> &broken() const { return m_broken; }

    /// Libraries found only for another processor, each with the files that need it.
    const QMap<QString, QStringList> &foreign() const { return m_foreign; }

    /// A version that the file "wanter" needs and the found library lacks.
    struct MissingVersion
    {
        QString version;
        QString library;
        QString wanter;
    };
    const QList<MissingVersion> &missingVersions() const { return m_missingVersions; }

    /// What keeps the files from being loaded: names of missing or foreign libraries, and paths of
    /// libraries that are broken or lack a version.
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

} // namespace programs
