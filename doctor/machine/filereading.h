#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace doctor {

/// What a file holds, or why it cannot be read.
struct FileContent
{
    std::optional<QByteArray> content;
    QString problem;
};

/// Reads a regular file of at most @p largest bytes without changing its time of access where the
/// kernel allows that. Never waits: pipes, devices and sockets are refused.
FileContent readFile(const QString &path, qint64 largest);

/// Same for a part of a file; shorter where the file ends.
FileContent readPart(const QString &path, qint64 offset, qint64 length);

/// The names in a directory, sorted, without "." and ".."; nothing if it cannot be read.
std::optional<QStringList> namesIn(const QString &directory, int most);

} // namespace doctor
