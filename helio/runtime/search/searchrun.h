#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QSet>
#include <QString>

#include <future>
#include <memory>
#include <vector>

#include "helio/runtime/search/databasequery.h"
#include "helio/runtime/search/existencecheck.h"
#include "helio/runtime/search/filedatabase.h"
#include "helio/runtime/search/hitqueue.h"
#include "helio/runtime/search/namepattern.h"

namespace helio {

/// One search, from its first hit to its end, on a thread of its own.
///
/// Each root's database is asked. Where there is none, or it cannot be read, the directories are
/// looked through. When a refresh of a database is under way or due, its end is awaited and the
/// database asked again for what was not reported yet.
class SearchRun
{
public:
    /// @p directory limits the search to what lies below it; empty searches all roots.
    /// @p refreshStart tells when the refresh that was asked for last has been started; it may be
    /// invalid.
    SearchRun(const NamePattern &pattern, const QString &directory, std::shared_ptr<HitQueue> hits,
              std::shared_future<void> refreshStart);

    void run();

private:
    /// A directory to search from: with its database or, failing that, without.
    struct Area
    {
        std::optional<FileDatabase> database;
        QString directory;
    };

    struct AskedDatabase
    {
        FileDatabase database;
        FileDatabase::Version version;
        QString directory;
    };

    std::vector<Area> areas() const;
    void search(const Area &area);
    void walk(const QString &directory);
    DatabaseQuery::Outcome ask(const FileDatabase &database);
    void catchUp(const AskedDatabase &asked, const QDeadlineTimer &deadline);
    bool waitForRefresh(const FileDatabase &database, const QDeadlineTimer &deadline);
    void reportExisting(const std::vector<std::string_view> &paths, ExistenceCheck *check);
    void rememberReported();

    NamePattern m_pattern;
    QString m_directory;
    QByteArray m_requiredPrefix;
    std::shared_ptr<HitQueue> m_hits;
    std::shared_future<void> m_refreshStart;
    std::vector<AskedDatabase> m_askedDatabases;
    FoundFiles m_answered;
    QSet<QByteArray> m_reported;
};

} // namespace helio
