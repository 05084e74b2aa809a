#pragma once

#include <QByteArray>
#include <QMap>

#include <optional>

#include <sys/stat.h>
#include <sys/types.h>

#include "doctor/journal/tree/files.h"
#include "doctor/journal/tree/problem.h"

namespace doctor {

/// Bytes of a file, or what a link points to. Read from the journal, it has only its hash until the
/// bytes are needed.
struct Content
{
    Content() = default;
    explicit Content(const QByteArray &content);

    /// SHA-256 as hexadecimal digits.
    QByteArray hash;
    QByteArray bytes;
};

/// As utimensat(2) has them, in nanoseconds.
struct Times
{
    qint64 accessed = 0;
    qint64 modified = 0;
};

/// What a directory entry is. What is not known or does not matter is left out: a new file has the
/// owner that the system gives it.
struct Node
{
    enum class Kind {
        Absent,
        File,
        Directory,
        Link
    };
    using Attributes = QMap<QByteArray, QByteArray>;

    Kind kind = Kind::Absent;
    std::optional<Content> content;
    std::optional<mode_t> mode;
    std::optional<uid_t> owner;
    std::optional<gid_t> group;
    /// Extended attributes, access control lists among them.
    std::optional<Attributes> attributes;
    std::optional<Times> times;
};

/// A node as it was read, with what tells whether it is still the same.
struct Seen
{
    Node node;
    struct stat status = {};
};

/// How much of a node is read: its rights can be seen where its content cannot be read.
enum class Depth {
    Rights,
    Everything
};

/// Reads the entry @p name; @p path is for the sentence of a failure.
Problem lookAt(int directory, const QByteArray &name, const QString &path, Depth depth, Seen &seen);

/// Whether what both know is the same, times left out.
bool areSame(const Node &node, const Node &other);
/// Whether @p node is what is left when turning @p from into @p to was stopped at any point.
bool isBetween(const Node &node, const Node &from, const Node &to);
/// Whether nobody has written to the file since; a new name of it does not count.
bool isUntouched(const struct stat &status, const struct stat &earlier);

/// Gives an open file or directory the rights, attributes and times of @p node, and reads them
/// back.
Problem dress(int descriptor, const Node &node, const QString &path);

} // namespace doctor
