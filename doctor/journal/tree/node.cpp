#include "doctor/journal/tree/node.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <sys/xattr.h>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 nanosecondsPerSecond = 1000000000;
/// Largest list and value that Linux keeps.
constexpr std::size_t largestAttribute = 65536;

qint64 inNanoseconds(const timespec &time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

timespec asTimespec(qint64 time)
{
    const qint64 rest = (time % nanosecondsPerSecond + nanosecondsPerSecond) % nanosecondsPerSecond;
    return {time_t((time - rest) / nanosecondsPerSecond), long(rest)};
}

/// The kernel computes these from the content.
bool isComputed(const QByteArray &name)
{
    return name == "security.ima" || name == "security.evm";
}

/// @return 0 or an errno; no attributes where the file system has none
int readAttributes(const QByteArray &file, Node::Attributes &attributes)
{
    std::vector<char> buffer(largestAttribute);
    const ssize_t size = ::listxattr(file.constData(), buffer.data(), largestAttribute);
    if (size < 0)
        return errno == ENOTSUP ? 0 : errno;
    const QList<QByteArray> names = QByteArray(buffer.data(), int(size)).split('\0');
    for (const QByteArray &name : names) {
        if (name.isEmpty() || isComputed(name))
            continue;
        const ssize_t length =
            ::getxattr(file.constData(), name.constData(), buffer.data(), largestAttribute);
        if (length >= 0)
            attributes.insert(name, QByteArray(buffer.data(), int(length)));
        else if (errno != ENODATA)
            return errno;
    }
    return 0;
}

int writeAttributes(const QByteArray &file, const Node::Attributes &attributes)
{
    Node::Attributes present;
    if (const int error = readAttributes(file, present))
        return error;
    for (auto it = present.cbegin(); it != present.cend(); ++it) {
        // A new file has the label that the system's policy gives it.
        if (!attributes.contains(it.key()) && !it.key().startsWith("security.") &&
            ::removexattr(file.constData(), it.key().constData()) != 0)
            return errno;
    }
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it) {
        const auto length = std::size_t(it->size());
        if (present.value(it.key()) == *it && present.contains(it.key()))
            continue;
        if (::setxattr(file.constData(), it.key().constData(), it->constData(), length, 0) != 0)
            return errno;
    }
    return 0;
}

int readContent(int descriptor, Seen &seen)
{
    QByteArray bytes;
    if (seen.node.kind == Node::Kind::Link) {
        bytes.resize(PATH_MAX);
        const ssize_t size = ::readlinkat(descriptor, "", bytes.data(), std::size_t(bytes.size()));
        if (size < 0)
            return errno;
        bytes.truncate(int(size));
        seen.node.content = Content(bytes);
        return 0;
    }
    const QByteArray path = descriptorPath(descriptor);
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(::open(path.constData(), flags | O_NOATIME));
    if (!file.isOpen() && errno == EPERM)
        file = Descriptor(::open(path.constData(), flags));
    if (!file.isOpen())
        return errno;
    if (const int error = readAll(file.number(), largestFile, bytes))
        return error;
    seen.node.content = Content(bytes);
    struct stat after = {};
    if (::fstat(file.number(), &after) != 0)
        return errno;
    return isUntouched(after, seen.status) ? 0 : EBUSY;
}

template<typename Value>
bool areAlike(const std::optional<Value> &value, const std::optional<Value> &other)
{
    return !value || !other || *value == *other;
}

bool areAlike(const std::optional<Content> &content, const std::optional<Content> &other)
{
    return !content || !other || content->hash == other->hash;
}

/// Whether the beginning of @p to was written over @p from.
bool isHalfWritten(const QByteArray &bytes, const QByteArray &from, const QByteArray &to)
{
    const auto written = std::mismatch(bytes.begin(), bytes.end(), to.begin(), to.end()).first;
    const int position = int(written - bytes.begin());
    return bytes.mid(position) == from.mid(position);
}

bool areAttributesBetween(const Node::Attributes &attributes, const Node::Attributes &from,
                          const Node::Attributes &to)
{
    const QList<QByteArray> names = attributes.keys() + from.keys() + to.keys();
    return std::all_of(names.begin(), names.end(), [&](const QByteArray &name) {
        const auto at = [&name](const Node::Attributes &of) {
            return std::make_pair(of.contains(name), of.value(name));
        };
        return at(attributes) == at(from) || at(attributes) == at(to);
    });
}

} // namespace

Content::Content(const QByteArray &content)
    : hash(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex()), bytes(content)
{
}

Problem lookAt(int directory, const QByteArray &name, const QString &path, Depth depth, Seen &seen)
{
    seen = Seen();
    const Descriptor entry(::openat(directory, name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!entry.isOpen())
        return errno == ENOENT ? Problem() : systemProblem(errno, path);
    if (::fstat(entry.number(), &seen.status) != 0)
        return systemProblem(errno, path);
    Node &node = seen.node;
    if (S_ISREG(seen.status.st_mode))
        node.kind = Node::Kind::File;
    else if (S_ISDIR(seen.status.st_mode))
        node.kind = Node::Kind::Directory;
    else if (S_ISLNK(seen.status.st_mode))
        node.kind = Node::Kind::Link;
    else
        return texts::tr("%1 is neither a file nor a directory nor a link.").arg(path);
    if (node.kind != Node::Kind::Link)
        node.mode = seen.status.st_mode & 07777;
    node.owner = seen.status.st_uid;
    node.group = seen.status.st_gid;
    if (depth == Depth::Rights)
        return {};

    node.times = Times{inNanoseconds(seen.status.st_atim), inNanoseconds(seen.status.st_mtim)};
    int error = node.kind == Node::Kind::Directory ? 0 : readContent(entry.number(), seen);
    if (error == EFBIG)
        return texts::tr("%1 is too large to be kept for undo.").arg(path);
    if (error == EBUSY)
        return texts::tr("%1 is being written to by another program.").arg(path);
    if (error == 0 && node.kind != Node::Kind::Link) {
        node.attributes.emplace();
        error = readAttributes(descriptorPath(entry.number()), *node.attributes);
    }
    return error == 0 ? Problem() : systemProblem(error, path);
}

bool areSame(const Node &node, const Node &other)
{
    return node.kind == other.kind && areAlike(node.content, other.content) &&
           areAlike(node.mode, other.mode) && areAlike(node.owner, other.owner) &&
           areAlike(node.group, other.group) && areAlike(node.attributes, other.attributes);
}

bool isBetween(const Node &node, const Node &from, const Node &to)
{
    if (areSame(node, from) || areSame(node, to))
        return true;
    if (node.kind != from.kind || node.kind != to.kind)
        return false;
    const auto isEither = [](const auto &value, const auto &one, const auto &other) {
        return areAlike(value, one) || areAlike(value, other);
    };
    // Between a new owner and the new mode, the kernel has taken the special bits away.
    const auto plain = [](const std::optional<mode_t> &mode) {
        return mode ? std::make_optional(*mode & 01777) : mode;
    };
    const bool isContentBetween =
        isEither(node.content, from.content, to.content) ||
        isHalfWritten(node.content->bytes, from.content->bytes, to.content->bytes);
    const bool areRightsBetween = isEither(plain(node.mode), plain(from.mode), plain(to.mode)) &&
                                  isEither(node.owner, from.owner, to.owner) &&
                                  isEither(node.group, from.group, to.group);
    const bool knowAttributes = node.attributes && from.attributes && to.attributes;
    return isContentBetween && areRightsBetween &&
           (!knowAttributes ||
            areAttributesBetween(*node.attributes, *from.attributes, *to.attributes));
}

bool isUntouched(const struct stat &status, const struct stat &earlier)
{
    return status.st_dev == earlier.st_dev && status.st_ino == earlier.st_ino &&
           status.st_size == earlier.st_size &&
           inNanoseconds(status.st_mtim) == inNanoseconds(earlier.st_mtim);
}

Problem dress(int descriptor, const Node &node, const QString &path)
{
    const QByteArray file = descriptorPath(descriptor);
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return systemProblem(errno, path);
    const uid_t owner = node.owner.value_or(status.st_uid);
    const gid_t group = node.group.value_or(status.st_gid);
    const bool isOwned = owner == status.st_uid && group == status.st_gid;
    if (!isOwned && ::fchownat(descriptor, "", owner, group, AT_EMPTY_PATH) != 0) {
        if (errno == EPERM)
            return texts::tr("Only the administrator can let %1 belong to its owner and group.")
                .arg(path);
        return systemProblem(errno, path);
    }
    if (node.attributes) {
        if (const int error = writeAttributes(file, *node.attributes))
            return systemProblem(error, path);
    }
    if (node.mode && ::chmod(file.constData(), *node.mode) != 0)
        return systemProblem(errno, path);
    if (node.times) {
        const std::array<timespec, 2> times = {asTimespec(node.times->accessed),
                                               asTimespec(node.times->modified)};
        if (::utimensat(AT_FDCWD, file.constData(), times.data(), 0) != 0)
            return systemProblem(errno, path);
    }
    if (::fstat(descriptor, &status) != 0)
        return systemProblem(errno, path);
    // Without an error, chmod() leaves out set-group-ID for who is not in the group.
    if (node.mode && (status.st_mode & 07777) != *node.mode)
        return texts::tr("Only the administrator can give %1 these rights.").arg(path);
    return {};
}

} // namespace doctor
