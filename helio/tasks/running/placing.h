#pragma once

#include <QByteArray>
#include <QString>

namespace helio {

/// Replaces what stands at @p target by a copy of @p source, and reads it back. A new file is for
/// the user alone. What stood there stays if that fails, unless only the file itself could be
/// written and not its directory.
/// @return why it is not there, for people; empty if it is
QString placed(const QString &source, const QString &target);
/// Same for a content.
QString written(const QByteArray &content, const QString &target);

} // namespace helio
