#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>

#include "host/kfssearch.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/patience.h"

namespace testsupport {

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// A list with a single name.
inline QStringList list(const char *utf8)
{
    return {text(utf8)};
}

/// A test's own directory to search and cache directory. Refreshes run at normal priority: at idle
/// priority they would not get on while the machine is busy.
class SearchPlace
{
public:
    SearchPlace()
    {
        QDir(m_directory.path()).mkpath(QStringLiteral("files"));
        qputenv("HELIO_SEARCH_ROOTS", QFile::encodeName(root()));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(m_directory.filePath(QStringLiteral("cache"))));
        m_priorities.add(QStringLiteral("nice"), "shift 2\nexec \"$@\"");
        m_priorities.add(QStringLiteral("ionice"), "shift 3\nexec \"$@\"");
    }

    ~SearchPlace()
    {
        qunsetenv("HELIO_SEARCH_ROOTS");
        qunsetenv("XDG_CACHE_HOME");
        // QTemporaryDir cannot remove names that are not UTF-8.
        std::filesystem::remove_all(QFile::encodeName(m_directory.path()).toStdString());
    }

    /// Lets refreshes run at the priority that they ask for.
    void useRealPriorities() const
    {
        m_priorities.remove(QStringLiteral("nice"));
        m_priorities.remove(QStringLiteral("ionice"));
    }

    QString root() const { return m_directory.filePath(QStringLiteral("files")); }

    QString outside(const QString &name) const { return m_directory.filePath(name); }

    QString databaseDirectory() const
    {
        return QString::fromLocal8Bit(qgetenv("XDG_CACHE_HOME")) +
               QStringLiteral("/orvane-office-assistant");
    }

    /// Makes an empty file below the root, with its directories; returns its path.
    QString makeFile(const QByteArray &name) const
    {
        const QByteArray path = QFile::encodeName(root()) + '/' + name;
        QDir().mkpath(QFileInfo(QFile::decodeName(path)).path());
        FILE *file = std::fopen(path.constData(), "w");
        if (!file || std::fclose(file) != 0)
            qFatal("cannot make %s", path.constData());
        return QFile::decodeName(path);
    }

    /// The paths of the database files.
    QStringList databases() const
    {
        const QDir directory(databaseDirectory());
        QStringList paths;
        const QStringList names = directory.entryList({QStringLiteral("*.db")}, QDir::Files);
        for (const QString &name : names)
            paths.append(directory.filePath(name));
        return paths;
    }

    /// Whether a refresh holds the lock of a database.
    bool isRefreshing() const
    {
        const QDir directory(databaseDirectory());
        const QStringList names = directory.entryList({QStringLiteral("*.lock")}, QDir::Files);
        return std::any_of(names.begin(), names.end(), [&directory](const QString &name) {
            QFile file(directory.filePath(name));
            struct flock lock = {};
            lock.l_type = F_WRLCK;
            return file.open(QIODevice::ReadOnly) &&
                   ::fcntl(file.handle(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
        });
    }

    /// Waits until there is a database and no refresh is running.
    bool waitForDatabase() const
    {
        return QTest::qWaitFor([this] { return !databases().isEmpty() && !isRefreshing(); },
                               longestWaitMs);
    }

    /// Brings the database up to date; false if that takes too long.
    bool refresh() const
    {
        KFsSearch search;
        search.RunEverythingDaemon();
        return waitForDatabase();
    }

    /// Sets the times of the database and its last refresh back.
    void age(int seconds) const
    {
        const QDir directory(databaseDirectory());
        const QStringList names = directory.entryList(QDir::Files);
        for (const QString &name : names) {
            QFile file(directory.filePath(name));
            const QDateTime past = QDateTime::currentDateTime().addSecs(-seconds);
            if (!file.open(QIODevice::ReadWrite) ||
                !file.setFileTime(past, QFileDevice::FileModificationTime))
                qFatal("cannot age %s", qPrintable(file.fileName()));
        }
    }

private:
    QTemporaryDir m_directory;
    FakePrograms m_priorities;
};

} // namespace testsupport
