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

/// One search, from start to end, in a thread of its own.
///
/// Asks each root's database; walks the directories where there is none or it cannot be read. If a
/// refresh is running or due, waits for its end and asks the database again for new hits.
class SearchRun
{
public:
    /// Searches below @p directory; below all roots if that is empty. @p refreshStart becomes ready
    /// when the last requested refresh has been started; it may be invalid.
    SearchRun(const NamePattern &pattern, const QString &directory, std::shared_ptr<HitQueue> hits,
              std::shared_future<void> refreshStart);

    void run();

private:
    /// A directory to search, and the database that covers it, if any.
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
    void reportExisting(const std::vector<std::string_view> &paths, ExistenceCheck &check);
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
