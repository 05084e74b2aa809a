#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace doctor {

/// A change of one file as "diff -u" shows it, three lines around each place. A content of nothing
/// is a file that is not there. Empty if nothing changes; one sentence if a content is not text.
QByteArray unifiedDiff(const std::optional<QByteArray> &before,
                       const std::optional<QByteArray> &after, const QString &path);

} // namespace doctor
