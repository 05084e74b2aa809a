#pragma once

#include <QByteArray>
#include <QList>

namespace doctor {

/// A mount by its number, with its names as the kernel has them.
struct NumberedMount
{
    QByteArray point;
    QByteArray type;
    QList<QByteArray> options;
    /// Those of the whole file system, which all its mounts share.
    QList<QByteArray> fileSystemOptions;
};

/// The mount with that number, as statx(2) gives it; the point is empty if it is not found.
NumberedMount mountNumbered(quint64 number);

} // namespace doctor
