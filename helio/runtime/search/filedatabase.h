#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace helio {

class Descriptor;

/// The database of the names below a directory: made by plocate's updatedb, readable by the user
/// alone and shared by the user's processes. All of its state is in the file system: a refresh
/// locks the file beside it, whose modification time is the start of the last refresh.
class FileDatabase
{
public:
    /// Identifies the content of the database; every refresh changes it.
    using Version = std::pair<quint64, qint64>;

    explicit FileDatabase(const QString &root);

    /// Whether all programs that a refresh needs are installed.
    static bool isRefreshable();

    QString path() const;

    /// Nothing if there is no database.
    std::optional<Version> version() const;

    /// Whether any process is refreshing it.
    bool isRefreshing() const;

    /// Whether a file made a minute ago may be missing from it.
    bool isStale() const;

    /// Starts a process at idle priority that makes the database or brings it up to date. Does
    /// nothing while a refresh is running. False if the process cannot be started.
    bool startRefresh() const;

private:
    QString lockPath() const;
    bool startRefreshProgram(const Descriptor &lock) const;

    QString m_root;
    QString m_directory;
    QString m_name;
};

} // namespace helio
