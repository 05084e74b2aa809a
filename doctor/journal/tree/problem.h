#pragma once

#include <QString>

#include <optional>

namespace doctor {

/// Why something was not done, a sentence for people; nothing if it was.
using Problem = std::optional<QString>;

/// The sentence for an errno of working on @p path.
QString systemProblem(int error, const QString &path);

} // namespace doctor
