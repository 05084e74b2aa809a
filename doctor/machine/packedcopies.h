#pragma once

#include <QByteArray>
#include <QVector>

namespace doctor {

/// The copies of one file that LibreOffice keeps in its profile's "pack" directory, the newest
/// first, without those that are damaged or larger than @p largest bytes. Empty for other content.
QVector<QByteArray> packedCopies(const QByteArray &pack, int largest);

} // namespace doctor
