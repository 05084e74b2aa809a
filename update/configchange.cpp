#include "update/configchange.h"

#include <QStringList>

namespace OfficeAssiant {

namespace {

constexpr QLatin1Char keyValueSeparator('$');

} // namespace

std::optional<ConfigChange> parseConfigChange(const QString &keyValue)
{
    const QStringList parts = keyValue.split(keyValueSeparator);
    if (parts.size() != 2)
        return std::nullopt;
    return ConfigChange{parts.at(0), parts.at(1)};
}

} // namespace OfficeAssiant
