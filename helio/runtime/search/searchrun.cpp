#include "helio/runtime/search/searchrun.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <utility>

#include "helio/runtime/search/directorywalk.h"
#include "helio/runtime/search/searchlocations.h"

namespace helio {

namespace {

constexpr int refreshCheckMs = 10;
constexpr int longestCatchUpMs = 25000;
constexpr std::chrono::seconds longestRefreshStart(5);
// One that had started before, and one of our own.
constexpr int mostAwaitedRefreshes = 2;

QString withoutLinks(const QString &directory)
{
    const QString path = QFileInfo(directory).canonicalFilePath();
    return path.isEmpty() ? directory : path;
}

/// The beginning of every path below a directory.
QByteArray prefixOf(const QString &directory)
{
    const QByteArray path = QFile::encodeName(directory);
    return path.isEmpty() || path.endsWith('/') ? path : path + '/';
}

} // namespace

SearchRun::SearchRun(const NamePattern &pattern, const QString &directory,
                     std::shared_ptr<HitQueue> hits, std::shared_future<void> refreshStart)
    : m_pattern(pattern),
      m_directory(directory.isEmpty() ? directory : withoutLinks(directory)),
      m_requiredPrefix(prefixOf(m_directory)),
      m_hits(std::move(hits)),
      m_refreshStart(std::move(refreshStart))
{
}

void SearchRun::run()
{
    if (m_pattern.canMatch()) {
        for (const Area &area : areas())
            search(area);
        const QDeadlineTimer deadline(longestCatchUpMs);
        for (const AskedDatabase &asked : m_askedDatabases)
            catchUp(asked, deadline);
    }
    m_hits->end();
}

std::vector<SearchRun::Area> SearchRun::areas() const
{
    std::vector<Area> areas;
    const QStringList roots = searchRoots();
    for (const QString &root : roots) {
        if (m_directory.isEmpty())
            areas.push_back({FileDatabase(root), root});
        else if (m_directory == root || liesBelow(m_directory, root))
            return {{FileDatabase(root), m_directory}};
    }
    if (!m_directory.isEmpty())
        areas.push_back({{}, m_directory});
    return areas;
}

void SearchRun::search(const Area &area)
{
    const auto version = area.database ? area.database->version() : std::nullopt;
    if (!version) {
        walk(area.directory);
        return;
    }
    switch (ask(*area.database)) {
    case DatabaseQuery::Outcome::Complete:
        m_askedDatabases.push_back({*area.database, *version, area.directory});
        break;
    case DatabaseQuery::Outcome::Failed:
        // A damaged database is replaced by a refresh.
        if (DatabaseQuery::isAvailable())
            area.database->startRefresh();
        walk(area.directory);
        break;
    case DatabaseQuery::Outcome::Stopped:
        break;
    }
}

void SearchRun::walk(const QString &directory)
{
    const DirectoryWalk walk(
        m_pattern, [this] { return m_hits->isStopped(); },
        [this](FoundFiles &&files) {
            files.erase(std::remove_if(files.begin(), files.end(),
                                       [this](const FoundFile &file) {
                                           return m_reported.contains(file.path);
                                       }),
                        files.end());
            m_hits->put(std::move(files));
        });
    rememberReported();
    walk.run(QFile::encodeName(directory));
}

DatabaseQuery::Outcome SearchRun::ask(const FileDatabase &database)
{
    rememberReported();
    ExistenceCheck check;
    const DatabaseQuery query(
        m_pattern, [this] { return m_hits->isStopped(); },
        [this, &check](const std::vector<std::string_view> &paths) {
            reportExisting(paths, check);
        });
    return query.run(database.path());
}

void SearchRun::catchUp(const AskedDatabase &asked, const QDeadlineTimer &deadline)
{
    if (m_refreshStart.valid())
        m_refreshStart.wait_for(longestRefreshStart);
    const FileDatabase &database = asked.database;
    for (int round = 0; round < mostAwaitedRefreshes; ++round) {
        if (!database.isRefreshing() && !database.isStale())
            break;
        if (!database.startRefresh() || !waitForRefresh(database, deadline))
            break;
    }
    if (database.version() != asked.version)
        ask(database);
    // No refresh has brought it up to date, so it may miss new files.
    if (database.isStale() && !database.isRefreshing())
        walk(asked.directory);
}

bool SearchRun::waitForRefresh(const FileDatabase &database, const QDeadlineTimer &deadline)
{
    while (database.isRefreshing()) {
        if (deadline.hasExpired() || m_hits->isStoppedWithin(refreshCheckMs))
            return false;
    }
    return true;
}

void SearchRun::reportExisting(const std::vector<std::string_view> &paths, ExistenceCheck &check)
{
    FoundFiles existing;
    for (const std::string_view &text : paths) {
        if (m_hits->isStopped())
            return;
        const QByteArray path(text.data(), static_cast<int>(text.size()));
        if (!path.startsWith(m_requiredPrefix) || m_reported.contains(path))
            continue;
        const ExistenceCheck::Kind kind = check.kindOf(text);
        if (kind != ExistenceCheck::Kind::Missing)
            existing.push_back({path, kind == ExistenceCheck::Kind::Folder});
    }
    m_answered.insert(m_answered.end(), existing.begin(), existing.end());
    m_hits->put(std::move(existing));
}

void SearchRun::rememberReported()
{
    for (const FoundFile &file : m_answered)
        m_reported.insert(file.path);
    m_answered.clear();
}

} // namespace helio
