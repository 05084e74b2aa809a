#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace helio {

class Descriptor;

/// The database of the names below a directory: kept with plocate's updatedb, private to the
/// user and shared by the user's processes. What is known of it stands in the file system alone:
/// a refresh holds the lock on the file beside it, which is as old as the refresh that was
/// started last.
class FileDatabase
{
public:
    /// Identifies a state of the database; each refresh gives it another.
    using Version = std::pair<quint64, qint64>;

    explicit FileDatabase(const QString &root);

    /// Whether the programs are there that a refresh needs.
    static bool isRefreshable();

    QString path() const;

    /// Nothing when there is no database.
    std::optional<Version> version() const;

    /// Whether any process refreshes it.
    bool isRefreshing() const;

    /// Whether a file made a minute ago may be missing.
    bool isStale() const;

    /// Makes the database or brings it up to date, in a process of its own at idle priority. Only
    /// starts it; does nothing while a refresh is under way. False when it cannot be started.
    bool startRefresh() const;

private:
    QString lockPath() const;
    bool startRefreshProgram(const Descriptor &lock) const;

    QString m_root;
    QString m_directory;
    QString m_name;
};

} // namespace helio
