#include "doctor/journal/store.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr char lockName[] = "lock";
constexpr char recordName[] = "record";
constexpr int largestRecord = 16 << 20;
constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// Empty if the directory cannot be read.
QList<QByteArray> entriesOf(int directory)
{
    QList<QByteArray> names;
    // A descriptor of its own: reading moves it.
    const int number = ::openat(directory, ".", directoryFlags);
    DIR *const opened = number < 0 ? nullptr : ::fdopendir(number);
    if (!opened)
        return names;
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(opened, &::closedir);
    while (const dirent *entry = ::readdir(stream.get())) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names.append(name);
    }
    return names;
}

QVector<Content *> contentsOf(Action &action)
{
    QVector<Content *> contents;
    for (TreeStep &step : action.steps) {
        for (Node *node : {&step.from, &step.to}) {
            if (node->content)
                contents.append(&*node->content);
        }
    }
    return contents;
}

/// @return 0 or an errno
int readFile(int directory, const QByteArray &name, int most, QByteArray &bytes)
{
    const Descriptor file(::openat(directory, name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    return file.isOpen() ? readAll(file.number(), most, bytes) : errno;
}

/// @param room bytes behind them that can be written later for sure, on file systems that promise
/// it
int writeFile(int directory, const QByteArray &name, int flags, const QByteArray &bytes,
              int room = 0)
{
    const Descriptor file(::openat(directory, name.constData(),
                                   O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC | flags, 0600));
    if (!file.isOpen())
        return errno;
    struct stat status = {};
    int error = writeAll(file.number(), bytes);
    if (error == 0 && room > 0 && ::fstat(file.number(), &status) == 0 &&
        ::fallocate(file.number(), FALLOC_FL_KEEP_SIZE, status.st_size, room) != 0 &&
        errno == ENOSPC)
        error = ENOSPC;
    return error != 0 ? error : syncDescriptor(file.number());
}

/// Makes the directory with those above it, each known to the one above after a loss of power.
int makeDirectories(const QByteArray &path)
{
    struct stat status = {};
    if (::stat(path.constData(), &status) == 0)
        return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
    const int slash = path.lastIndexOf('/');
    if (slash > 0) {
        if (const int error = makeDirectories(path.left(slash)))
            return error;
    }
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return errno;
    const Descriptor parent(::open(slash > 0 ? path.left(slash).constData() : "/", directoryFlags));
    return parent.isOpen() ? syncDescriptor(parent.number()) : 0;
}

} // namespace

Store::Store(const QString &path) : m_path(path) {}

Problem Store::makeDirectory()
{
    return problemOf(makeDirectories(QFile::encodeName(m_path)));
}

bool Store::open(Problem &problem)
{
    m_directory = Descriptor(::open(QFile::encodeName(m_path).constData(), directoryFlags));
    if (!m_directory.isOpen()) {
        if (errno != ENOENT)
            problem = problemOf(errno);
        return false;
    }
    struct stat status = {};
    if (::fstat(m_directory.number(), &status) != 0)
        problem = problemOf(errno);
    else if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        problem =
            texts::tr("The journal of repairs %1 can be changed by another user.").arg(m_path);
    return !problem;
}

Problem Store::lock()
{
    m_lock = Descriptor(
        ::openat(m_directory.number(), lockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!m_lock.isOpen())
        return problemOf(errno);
    if (::flock(m_lock.number(), LOCK_EX | LOCK_NB) == 0)
        return {};
    if (errno == EWOULDBLOCK)
        return texts::tr("Another repair is under way. Try again when it is done.");
    return problemOf(errno);
}

QVector<int> Store::numbers() const
{
    QVector<int> numbers;
    const QList<QByteArray> names = entriesOf(m_directory.number());
    for (const QByteArray &name : names) {
        const int number = name.toInt();
        if (number > 0 && QByteArray::number(number) == name)
            numbers.append(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::optional<Record> Store::read(int number) const
{
    const Descriptor entry = openEntry(number);
    QByteArray content;
    const int error =
        entry.isOpen() ? readFile(entry.number(), recordName, largestRecord, content) : errno;
    if (error == ENOENT)
        return {};
    std::optional<Record> record = parsedRecord(content);
    if (error != 0) {
        record.emplace();
        record->isDamaged = true;
    }
    if (record)
        record->number = number;
    return record;
}

Problem Store::load(int number, Action &action) const
{
    const Descriptor entry = openEntry(number);
    const QVector<Content *> contents = contentsOf(action);
    for (Content *content : contents) {
        QByteArray bytes;
        const int error =
            entry.isOpen() ? readFile(entry.number(), content->hash, largestFile, bytes) : errno;
        if (error != 0)
            return systemProblem(error, contentPath(number, *content));
        if (Content(bytes).hash != content->hash)
            return texts::tr("The backup %1 is damaged.").arg(contentPath(number, *content));
        content->bytes = bytes;
    }
    return {};
}

QString Store::contentPath(int number, const Content &content) const
{
    return m_path + QLatin1Char('/') + QString::number(number) + QLatin1Char('/') +
           QString::fromLatin1(content.hash);
}

qint64 Store::size(int number) const
{
    const Descriptor entry = openEntry(number);
    qint64 size = 0;
    const QList<QByteArray> names = entriesOf(entry.number());
    for (const QByteArray &name : names) {
        struct stat status = {};
        if (::fstatat(entry.number(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            size += status.st_size;
    }
    return size;
}

Problem Store::begin(Record &record, const Action &action)
{
    const bool isNew = record.number == 0;
    if (isNew) {
        const QVector<int> known = numbers();
        const int number = known.isEmpty() ? 1 : known.last() + 1;
        if (::mkdirat(m_directory.number(), QByteArray::number(number).constData(), 0700) != 0)
            return problemOf(errno);
        record.number = number;
    }
    const Descriptor entry = openEntry(record.number);
    Problem problem = entry.isOpen() ? writeBegin(entry, record, action) : problemOf(errno);
    if (!problem)
        problem = problemOf(syncDescriptor(m_directory.number()));
    if (problem && isNew) {
        // What cannot be removed was not begun either, and goes at the next start.
        remove(record.number);
        record.number = 0;
    }
    return problem;
}

Problem Store::writeBegin(const Descriptor &entry, const Record &record, const Action &action)
{
    Action written = action;
    QSet<QByteArray> saved;
    const QVector<Content *> contents = contentsOf(written);
    for (const Content *content : contents) {
        if (saved.contains(content->hash))
            continue;
        saved.insert(content->hash);
        QByteArray present;
        if (readFile(entry.number(), content->hash, largestFile, present) == 0 &&
            present == content->bytes)
            continue;
        if (const int error = writeFile(entry.number(), content->hash, O_TRUNC, content->bytes))
            return systemProblem(error, contentPath(record.number, *content));
    }
    const int error = writeFile(entry.number(), recordName, O_APPEND, beginLine(record, action),
                                roomForLines(action));
    return problemOf(error != 0 ? error : syncDescriptor(entry.number()));
}

Problem Store::add(int number, const QByteArray &line)
{
    const Descriptor entry = openEntry(number);
    return problemOf(entry.isOpen() ? writeFile(entry.number(), recordName, O_APPEND, line)
                                    : errno);
}

Problem Store::remove(int number)
{
    const Descriptor entry = openEntry(number);
    if (!entry.isOpen())
        return problemOf(errno);
    // The record first: contents without a record are known to be waste.
    int error = removeEntry(entry.number(), recordName);
    const QList<QByteArray> names = entriesOf(entry.number());
    for (const QByteArray &name : names) {
        if (error == 0)
            error = removeEntry(entry.number(), name);
    }
    return problemOf(error != 0 ? error
                                : removeEntry(m_directory.number(), QByteArray::number(number)));
}

Problem Store::problemOf(int error) const
{
    return error == 0 ? Problem() : systemProblem(error, m_path);
}

Descriptor Store::openEntry(int number) const
{
    return Descriptor(::openat(m_directory.number(), QByteArray::number(number).constData(),
                               directoryFlags | O_NOFOLLOW));
}

} // namespace doctor
