#pragma once

#include <QString>
#include <QStringList>

#include "doctor/machine/deadline.h"
#include "doctor/machine/machine.h"

namespace doctor {

/// The paths that match a pattern, and why it cannot be used.
struct MatchedPaths
{
    QStringList paths;
    QString problem;
};

/// Writes @p text so that it stands for itself in a pattern.
QString escapedForPattern(const QString &text);

/// Whether @p pattern has no "*", "?" or "[" that stands for something else.
bool isPlainPath(const QString &pattern);

/// The existing paths that match an absolute pattern, sorted. "*", "?" and "[…]" match within one
/// name, "*" and "?" not a dot at its beginning; "\" takes the next character as it is. What lies
/// in a network mount, which might hang, does not match, nor what leads there through links in the
/// home; but for the mount in front of the first "*", "?" or "[" and that of the home. A plain path
/// is returned whether it exists or not. Refuses "..", control characters, and patterns that meet
/// too many names.
MatchedPaths matchedPaths(const Machine &machine, const QString &pattern, const Deadline &deadline);

/// Why @p path cannot be used: it is not absolute, contains "..", a control character or is too
/// long; empty if it can.
QString pathProblem(const QString &path);

} // namespace doctor
