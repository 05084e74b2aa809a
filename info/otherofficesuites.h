#pragma once

#include <QStringList>

namespace OfficeAssiant {

/// A line for each desktop entry of another office suite in @p directory, which ends with a
/// slash: its name, its Chinese name, both padded to ten columns, and its command.
QStringList otherOfficeSuites(const QString &directory);

} // namespace OfficeAssiant
