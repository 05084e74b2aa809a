#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include <array>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "doctor/journal/journal.h"
#include "doctor/model/plan.h"

/// A directory to repair, a journal beside it, and the changes of plans.
class RepairTree
{
public:
    /// In memory, where that keeps extended attributes too: what fsync() costs is not what is
    /// tested.
    explicit RepairTree(const QString &place = base())
        : m_directory(place + QLatin1String("/repairtree-XXXXXX"))
    {
        if (!QDir().mkpath(path()))
            qFatal("no directory to repair");
    }

    QString path(const QString &name = {}) const
    {
        const QString tree = m_directory.filePath(QStringLiteral("tree"));
        return name.isEmpty() ? tree : tree + QLatin1Char('/') + name;
    }
    QString journalPath() const { return m_directory.filePath(QStringLiteral("state/repairs")); }

    /// Makes the file with its directories; it was changed last long ago.
    QString write(const QString &name, const QByteArray &content, mode_t mode = 0644) const
    {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).path());
        overwrite(name, content);
        ::chmod(QFile::encodeName(file).constData(), mode);
        makeOld(file);
        return file;
    }

    QString link(const QString &name, const QByteArray &target) const
    {
        const QString file = path(name);
        if (::symlink(target.constData(), QFile::encodeName(file).constData()) != 0)
            qFatal("no link for a test");
        makeOld(file);
        return file;
    }

    /// As a user's program saves: in place.
    void overwrite(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file for a test");
    }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }

    /// Everything that a repair must give back; names that point to one file are told from copies.
    QMap<QString, QByteArray> snapshot(bool withTimes = true) const
    {
        QMap<QString, QByteArray> entries;
        addTo(entries, path(), withTimes);
        return entries;
    }

    /// Where two snapshots differ, for the message of a test.
    static QByteArray difference(const QMap<QString, QByteArray> &snapshot,
                                 const QMap<QString, QByteArray> &expected)
    {
        QByteArray text;
        for (const QString &name : snapshot.keys() + expected.keys())
            if (snapshot.value(name) != expected.value(name))
                text += "\n" + name.toUtf8() + ": " + snapshot.value(name) + "\n  instead of " +
                        expected.value(name);
        return text;
    }

    static QString base()
    {
        const QString memory = QStringLiteral("/dev/shm");
        return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    }

private:
    static void makeOld(const QString &file)
    {
        const std::array<timespec, 2> times = {timespec{1000000000, 123456789},
                                               timespec{1100000000, 987654321}};
        ::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times.data(),
                    AT_SYMLINK_NOFOLLOW);
    }

    void addTo(QMap<QString, QByteArray> &entries, const QString &directory, bool withTimes) const
    {
        const QFileInfoList found = QDir(directory).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : found) {
            entries.insert(entry.filePath().mid(path().size() + 1),
                           description(entry.filePath(), withTimes));
            if (entry.isDir() && !entry.isSymLink())
                addTo(entries, entry.filePath(), withTimes);
        }
    }

    static QByteArray description(const QString &file, bool withTimes)
    {
        const QByteArray name = QFile::encodeName(file);
        struct stat status = {};
        ::lstat(name.constData(), &status);
        QByteArray text = QByteArray::number(status.st_mode, 8) + ' ' +
                          QByteArray::number(status.st_uid) + ':' +
                          QByteArray::number(status.st_gid);
        if (!S_ISDIR(status.st_mode)) {
            text += " links " + QByteArray::number(qint64(status.st_nlink));
            if (withTimes)
                text += " at " + QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' +
                        QByteArray::number(qint64(status.st_mtim.tv_nsec));
        }
        std::array<char, 1024> value{};
        if (S_ISLNK(status.st_mode)) {
            const ssize_t size = ::readlink(name.constData(), value.data(), value.size());
            return text + " to " + QByteArray(value.data(), int(size));
        }
        for (const char *attribute : {"user.note", "user.other", "system.posix_acl_access"}) {
            const ssize_t size =
                ::getxattr(name.constData(), attribute, value.data(), value.size());
            if (size >= 0)
                text +=
                    ' ' + QByteArray(attribute) + '=' + QByteArray(value.data(), int(size)).toHex();
        }
        QFile content(file);
        if (S_ISREG(status.st_mode) && content.open(QIODevice::ReadOnly))
            text += " [" + content.readAll() + ']';
        return text;
    }

    QTemporaryDir m_directory;
};

namespace changes {

using doctor::Change;

inline Change rewrite(const QString &path, const QByteArray &before, const QByteArray &after)
{
    Change change;
    change.path = path;
    change.before = before;
    change.after = after;
    return change;
}

inline Change create(const QString &path, const QByteArray &content)
{
    Change change;
    change.kind = Change::Kind::Create;
    change.path = path;
    change.after = content;
    return change;
}

inline Change createDirectory(const QString &path)
{
    Change change;
    change.kind = Change::Kind::Create;
    change.entry = Change::Entry::Directory;
    change.path = path;
    return change;
}

inline Change createLink(const QString &path, const QString &target)
{
    Change change;
    change.kind = Change::Kind::Create;
    change.entry = Change::Entry::Link;
    change.path = path;
    change.target = target;
    return change;
}

inline Change remove(const QString &path, Change::Entry entry = Change::Entry::File)
{
    Change change;
    change.kind = Change::Kind::Remove;
    change.entry = entry;
    change.path = path;
    return change;
}

inline Change move(const QString &path, const QString &target)
{
    Change change;
    change.kind = Change::Kind::Move;
    change.path = path;
    change.target = target;
    return change;
}

inline Change mode(const QString &path, mode_t mode)
{
    Change change;
    change.kind = Change::Kind::Rights;
    change.path = path;
    change.mode = mode;
    return change;
}

inline doctor::Plan plan(const QVector<Change> &all)
{
    doctor::Plan plan;
    plan.check = QStringLiteral("settings.broken");
    plan.repair = QStringLiteral("settings.reset");
    plan.changes = all;
    return plan;
}

} // namespace changes
