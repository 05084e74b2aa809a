#include "doctor/journal/tree/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace doctor {

namespace {

constexpr int directoryFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

int asError(long result)
{
    return result < 0 ? errno : 0;
}

} // namespace

int openSpot(const QByteArray &path, Spot &spot)
{
    QList<QByteArray> names = path.split('/');
    if (names.size() < 2 || !names.takeFirst().isEmpty())
        return EINVAL;
    spot.name = names.takeLast();
    Descriptor directory(::open("/", directoryFlags));
    for (const QByteArray &name : qAsConst(names)) {
        directory = Descriptor(::openat(directory.number(), name.constData(), directoryFlags));
        if (!directory.isOpen())
            return errno;
    }
    // Opened again with the right to read, which fsync() needs; the directory itself is certain
    // now.
    spot.directory = Descriptor(
        ::openat(directory.number(), ".", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!spot.directory.isOpen() && errno == EACCES)
        spot.directory = std::move(directory);
    return spot.directory.isOpen() ? 0 : errno;
}

int writeAll(int descriptor, const QByteArray &bytes)
{
    for (int written = 0; written < bytes.size();) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + written, std::size_t(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += int(std::max<ssize_t>(count, 0));
    }
    return 0;
}

int readAll(int descriptor, int most, QByteArray &bytes)
{
    bytes.clear();
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return errno;
    if (status.st_size > most)
        return EFBIG;
    bytes.reserve(int(status.st_size) + 1);
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return asError(count);
        if (bytes.size() + count > most)
            return EFBIG;
        bytes.append(buffer, int(count));
    }
}

int removeEntry(int directory, const QByteArray &name)
{
    if (::unlinkat(directory, name.constData(), 0) == 0 ||
        (errno == EISDIR && ::unlinkat(directory, name.constData(), AT_REMOVEDIR) == 0))
        return 0;
    const int error = errno;
    struct stat status = {};
    // A disk that can only be read says so even where there is nothing to remove.
    const bool isThere =
        ::fstatat(directory, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 ||
        errno != ENOENT;
    return isThere ? error : 0;
}

int renameNew(int fromDirectory, const QByteArray &from, int toDirectory, const QByteArray &to)
{
    if (::renameat2(fromDirectory, from.constData(), toDirectory, to.constData(),
                    RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Some network file systems cannot tell; the moment between the two calls is left there.
    struct stat status = {};
    if (::fstatat(toDirectory, to.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return asError(::renameat(fromDirectory, from.constData(), toDirectory, to.constData()));
}

int syncDescriptor(int descriptor)
{
    // A descriptor made with O_PATH, of a directory without the right to read, cannot be synced;
    // some file systems cannot sync directories.
    if (::fsync(descriptor) == 0 || errno == EBADF || errno == EINVAL)
        return 0;
    return errno;
}

} // namespace doctor
