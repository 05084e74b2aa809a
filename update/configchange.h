#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// A value to store in the updater's configuration.
struct ConfigChange
{
    QString key;
    QString value;
};

/// Parses "key$value"; nothing unless there is exactly one dollar sign.
std::optional<ConfigChange> parseConfigChange(const QString &keyValue);

} // namespace OfficeAssiant
