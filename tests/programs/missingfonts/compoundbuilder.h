#pragma once

#include <vector>

#include <QByteArray>
#include <QPair>
#include <QString>

namespace testsupport {

using CompoundStreams = std::vector<QPair<QString, QByteArray>>;

/// A file system of the older document formats (OLE2) with these streams in its root; those of less
/// than 4096 bytes go into the stream for small ones. "Storage/Stream" stands in a storage below.
QByteArray compoundFile(const CompoundStreams &streams);

} // namespace testsupport
