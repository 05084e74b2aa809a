#pragma once

#include "doctor/format/checkdefinition.h"
#include "doctor/format/mistake.h"

namespace doctor {

/// The checks of a file, and what is wrong with it. A file with a mistake has no checks.
struct CheckFile
{
    QVector<CheckDefinition> checks;
    QVector<Mistake> mistakes;
};

constexpr qint64 largestCheckFile = 1024 * 1024;

/// Reads a check, or {"checks": […]}.
CheckFile readChecks(const QByteArray &content, const QString &path);

/// Same for a file; one that is too large, not a regular file or not readable is a mistake in
/// line 1.
CheckFile readCheckFile(const QString &path);

} // namespace doctor
